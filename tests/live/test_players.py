"""Spotify and Music, asked by script: players of these names on the session bus."""

import json
import os
import signal
import unittest

from session import Session, waitUntil
from standins import runScriptAs, writeState

NO_SESSION = ("No active media session found. Start playback in a supported DJ app, "
              "then try again.\n")
PAUSED = "media player is paused. Start playback and try again.\n"
SONG = {"xesam:title": "It's “Here” | Now", "xesam:artist": ["Sigur Rós", "Björk"],
        "xesam:album": "Ágætis byrjun"}


def without(member):
    return {key: value for key, value in SONG.items() if key != member}


class PlayersTest(unittest.TestCase):
    def setUp(self):
        self.desktop = self.enterContext(Session(display=False, alone=True))

    def play(self, name, status="Playing", metadata=None):
        state = {"status": status, "metadata": SONG if metadata is None else metadata}
        return writeState(self.desktop, name, state)

    def start(self, name, *state):
        path = self.play(name, *state)
        player = runScriptAs(self.desktop, name, "mpris_player.py", name.lower(), name, path)
        waitUntil(lambda: "mpris.MediaPlayer2." + name.lower() in self.desktop.run(
            ["gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path",
             "/org/freedesktop/DBus", "--method", "org.freedesktop.DBus.ListNames"]).stdout,
                  name + " is on the bus")
        return player

    def named(self):
        """The track in short, or the sentence that says why there is none."""
        result = self.desktop.velmor("now", "--json")
        if result.returncode != 0:
            return result.stderr
        track = json.loads(result.stdout)
        return (track["title"], track["artist"], track["album"], track["source"])

    def testEveryStateOfEachPlayer(self):
        song = ("It's “Here” | Now", "Sigur Rós, Björk", "Ágætis byrjun", "macOS media")
        # A track without an album is none for the script; the media session still has it.
        rest = song[:2] + ("",)
        for name, session in (("Spotify", "macOS media"), ("Music", "music")):
            player = self.start(name)
            for status, metadata, expected in (
                    ("Playing", SONG, song),
                    ("Paused", SONG, PAUSED),
                    ("Stopped", {}, NO_SESSION),
                    ("Playing", without("xesam:album"), rest + (session,)),
                    ("Playing", {**SONG, "xesam:album": ""}, rest + (session,)),
                    ("Playing", {}, NO_SESSION),
                    ("Playing", SONG, song)):
                with self.subTest(player=name, status=status, metadata=metadata):
                    self.play(name, status, metadata)
                    self.assertEqual(self.named(), expected)
            self.desktop.stop(player)

    def testSpotifyComesBeforeMusic(self):
        self.start("Music", "Playing", {**SONG, "xesam:title": "Second"})
        self.start("Spotify", "Playing", {**SONG, "xesam:title": "First"})
        self.assertEqual(self.named()[0], "First")
        self.play("Spotify", "Paused")
        self.assertEqual(self.named()[0], "Second")

    def testAHungPlayerIsPassedOver(self):
        hung = self.start("Spotify")
        self.start("Music", "Playing", {**SONG, "xesam:title": "Still heard"})
        os.kill(hung.pid, signal.SIGSTOP)
        self.assertEqual(self.named()[0], "Still heard")
        self.play("Music", "Stopped", {})
        self.assertEqual(self.named(), NO_SESSION)
        os.kill(hung.pid, signal.SIGCONT)
        self.assertEqual(self.named()[0], SONG["xesam:title"])

    def testAProcessWithoutASessionIsPassedOver(self):
        runScriptAs(self.desktop, "Spotify", "mpris_player.py", "another", "Another",
                    self.play("Spotify"))
        self.desktop.waitForTrack(title=SONG["xesam:title"], source="another")


if __name__ == "__main__":
    unittest.main()
