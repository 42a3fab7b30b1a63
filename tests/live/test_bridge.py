"""The bridge without a window: one transcript over every command that the page has."""

import json
import os
import stat
import unittest

from players import Provider, configure, mpv, tagged
from session import Session, waitUntil

ODD = "\"quoted\" back\\slash \u2028 </script> \u0001 \t 東京"
NULL = "window.__velmorResolve({}, null);"


def message(identifier, method, *args):
    return json.dumps({"id": identifier, "method": method, "args": list(args)})


def resolved(identifier, value):
    """The reply without regard to the order of a record's keys, which means nothing."""
    return (identifier, value)


def parsed(script):
    prefix = "window.__velmorResolve("
    decoder = json.JSONDecoder()
    identifier, end = decoder.raw_decode(script[len(prefix):])
    value, _ = decoder.raw_decode(script[len(prefix) + end + 2:])
    return resolved(identifier, value)


class BridgeTest(unittest.TestCase):
    def converse(self, desktop, lines, environment=None):
        ran = desktop.run([os.path.abspath(os.environ["VELMOR"]), "bridge"], environment,
                          input="\n".join(lines))
        self.assertEqual((ran.returncode, ran.stderr), (0, ""))
        return [line for line in ran.stdout.split("\n") if line]

    def testAnswersEveryCommand(self):
        with Session(display=False) as desktop:
            provider = Provider(desktop, "--version", "99.0.1")
            config = configure(desktop)
            mpv(desktop, tagged(desktop, "song.flac", title=ODD.replace("\u0001", ""), artist="A"))
            track = desktop.waitForTrack(artist="A")
            changed = {**config, "theme": "red", "aiModel": ODD, "recommendationCount": 4}
            lines = [
                message(ODD, "GetSettings"),
                message("2", "SaveSettings", changed),
                message("3", "GetSettings"),
                message("4", "SaveSettings", "x"),
                message("5", "SaveSettings"),
                message("6", "GetAppInfo"),
                '{"id":"7","method":"GetState"}',
                message("8", "getState"),
                message("9", "StartAutoDetection"),
                message("10", "RestoreWindow"),
                message("11", "StartCompactDrag"),
                message("12", "EndCompactDrag"),
                message("13", "BringToFront"),
                message("14", "ShowAbout"),
                message("15", "WindowMinimise"),
                message("16", "BrowserOpenURL", 42),
                message("17", "BrowserOpenURL", "--help"),
                '{"id":18,"method":"Quit"}', '{"method":"Quit"}', "not JSON", "",
                message("19", "CheckForUpdate"),
                message("20", "SuggestTracks"),
            ]
            replies = self.converse(desktop, lines, provider.environment)
            exact = [
                NULL.format('"2"'),
                'window.__velmorReject("4", "Invalid arguments");',
                'window.__velmorReject("5", "Invalid arguments");',
                'window.__velmorReject("8", "Unknown method getState");',
                *(NULL.format(f'"{number}"') for number in (9, 10, 11, 12, 13)),
                'window.__velmorEmit("velmor:show-about", null);',
                NULL.format('"14"'), NULL.format('"15"'),
                'window.__velmorReject("16", "Invalid arguments");',
                NULL.format('"17"'),
            ]
            records = [reply for reply in replies if reply not in exact]
            self.assertEqual([reply for reply in replies if reply in exact], exact)
            first, stored, info, state, update, suggestion = sorted(
                map(parsed, records),
                key=lambda reply: int(reply[0]) if reply[0].isdigit() else 0)
            self.assertEqual(first, resolved(ODD, config))
            self.assertEqual(stored, resolved("3", {**changed, "recommendationCount": 10}))
            self.assertRegex(info[1]["version"], r"^\d+\.\d+\.\d+$")
            self.assertTrue(state[1]["aiAvailable"])
            self.assertEqual(state[1]["provider"], "Tinker recommendations ready")
            self.assertEqual((update[1]["latest"], update[1]["updateAvailable"]), ("99.0.1", True))
            self.assertEqual(suggestion[1]["currentTrack"]["song"], track["title"])
            self.assertEqual(len(suggestion[1]["recommendations"]), 10)
            path = os.path.join(desktop.home, ".config", "Velmor", "config.json")
            self.assertEqual(stat.S_IMODE(os.stat(path).st_mode), 0o600)
            self.assertEqual(os.listdir(os.path.dirname(path)), ["config.json"])

    def testQuitEndsItAtOnce(self):
        with Session(display=False, bus=False) as desktop:
            replies = self.converse(desktop, [message("1", "Quit"), message("2", "GetState")])
            self.assertEqual(replies[0], NULL.format('"1"'))

    def testWatchesWhatPlays(self):
        with Session(display=False) as desktop:
            configure(desktop, autoSuggestTracks=True)
            mpv(desktop, tagged(desktop, "song.flac", title="Watched", artist="A"))
            desktop.waitForTrack(title="Watched")
            reading, writing = os.pipe()
            program = desktop.start([os.path.abspath(os.environ["VELMOR"]), "bridge"],
                                    stdin=reading, log="bridge.log")
            os.write(writing, (message("1", "StartAutoDetection") + "\n").encode())
            waitUntil(lambda: 'window.__velmorEmit("velmor:track-changed", {' in
                      desktop.log("bridge"), "the track is announced")
            os.close(reading)
            os.close(writing)
            desktop.stop(program)


if __name__ == "__main__":
    unittest.main()
