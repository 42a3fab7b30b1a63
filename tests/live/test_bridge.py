"""The bridge without a window: one transcript over commands of every kind that the page has."""

import json
import os
import re
import stat
import unittest

from model_provider import ModelProvider
from players import configure, playSong
from session import Session

ODD = "\"quoted\" back\\slash \u2028 </script> \u0001 \t 東京"


def message(identifier, method, *args):
    return json.dumps({"id": identifier, "method": method, "args": list(args)})


def parsed(script):
    """What a script of the bridge calls, and with which values."""
    call, values = re.fullmatch(r"window\.__velmor(\w+)\((.*)\);", script).groups()
    return (call, *json.loads(f"[{values}]"))


class BridgeTest(unittest.TestCase):
    def converse(self, desktop, lines, environment=None):
        ran = desktop.velmor("bridge", environment=environment, input="\n".join(lines))
        self.assertEqual((ran.returncode, ran.stderr), (0, ""))
        return [parsed(line) for line in ran.stdout.split("\n") if line]

    def testAnswersEveryKindOfCommand(self):
        with Session(display=False) as desktop:
            provider = desktop.enter(ModelProvider(version="99.0.1"))
            config = configure(desktop)
            track = playSong(desktop, title=ODD.replace("\u0001", ""), artist="A")
            changed = {**config, "theme": "red", "aiModel": ODD, "recommendationCount": 4}
            replies = self.converse(desktop, [
                message(ODD, "GetSettings"),
                message("2", "SaveSettings", changed),
                message("3", "GetSettings"),
                message("4", "SaveSettings", "x"),
                '{"id":"5","method":"GetState"}',
                message("7", "RestoreWindow"),
                message("8", "ShowAbout"),
                message("9", "BrowserOpenURL", "--help"),
                message("10", "CheckForUpdate"),
                message("11", "SuggestTracks"),
            ], {**provider.environment, "ESSENTIA_EXTRACTOR": "/bin/false"})
            # What is asked over the network comes when it is there.
            suggestion, update = (replies.pop(), replies.pop())
            if update[1] == "11":
                suggestion, update = update, suggestion
            self.assertEqual(replies, [
                ("Resolve", ODD, config),
                ("Resolve", "2", None),
                ("Resolve", "3", {**changed, "recommendationCount": 10}),
                ("Reject", "4", "Invalid arguments"),
                ("Resolve", "5", {"aiAvailable": True, "essentiaAvailable": True,
                                  "provider": "Tinker recommendations ready"}),
                ("Resolve", "7", None),
                ("Emit", "velmor:show-about", None),
                ("Resolve", "8", None),
                ("Resolve", "9", None),
            ])
            self.assertEqual((update[2]["latest"], update[2]["updateAvailable"]), ("99.0.1", True))
            self.assertEqual(suggestion[2]["currentTrack"]["song"], track["title"])
            self.assertEqual(len(suggestion[2]["recommendations"]), 10)
            path = os.path.join(desktop.home, ".config", "Velmor", "config.json")
            self.assertEqual(stat.S_IMODE(os.stat(path).st_mode), 0o600)
            self.assertEqual(os.listdir(os.path.dirname(path)), ["config.json"])


if __name__ == "__main__":
    unittest.main()
