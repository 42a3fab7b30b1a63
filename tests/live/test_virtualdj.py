"""VirtualDJ: its network control, found by process and port, and its history lists."""

import os
import time
import unittest

from session import NO_SESSION, Session, waitUntil
from standins import runScriptAs, writeState

SONG = {"title": "Für Élise – “Edit” 100%", "artist": "Nick Cave & The Bad Seeds", "album": "A+B",
        "genre": "Drum & Bass", "bpm": "174.5", "key": "8A"}
SERVICE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "virtualdj_service.py")
TOKEN = "s3cr3t+/="


class VirtualDJTest(unittest.TestCase):
    def setUp(self):
        self.desktop = self.enterContext(Session(display=False, bus=False, alone=True))

    def serve(self, song, token=""):
        return writeState(self.desktop, "control", {"song": song, "token": token})

    def start(self, song):
        process = runScriptAs(self.desktop, "virtualdj", SERVICE, self.serve(song))
        waitUntil(lambda: "LISTEN" in self.desktop.run(
            ["lsof", "-nP", "-iTCP", "-sTCP:LISTEN", "-a", "-p", str(process.pid)]).stdout,
                  "the service listens")

    def testAsksTheNetworkControl(self):
        self.start(SONG)
        expected = {**SONG, "bpm": 174.5, "source": "VirtualDJ",
                    "detection": "VirtualDJ master-deck metadata"}
        self.assertEqual(self.desktop.nowPlaying(), expected)
        self.serve(SONG, TOKEN)
        for given, named in (({}, None),
                             ({"VIRTUALDJ_NETWORK_CONTROL_TOKEN": "another"}, None),
                             ({"VIRTUALDJ_NETWORK_CONTROL_TOKEN": TOKEN}, expected)):
            self.assertEqual(self.desktop.nowPlaying(given), named)
        self.serve(None)
        self.assertEqual(self.desktop.named(), NO_SESSION)
        folder = os.path.join(self.desktop.home, "Documents", "VirtualDJ", "History")
        os.makedirs(folder)
        with open(os.path.join(folder, "today.m3u"), "w", encoding="utf-8-sig") as file:
            file.write(f"#EXTVDJ:<time>12:36</time><lastplaytime>{time.time() - 100:.0f}"
                       "</lastplaytime><songlength>241.622</songlength>\r\n"
                       "F:\\Music\\The Artist - A Song.mp3\r\n")
        self.assertEqual(self.desktop.named("title", "artist", "detection"),
                         ("A Song", "The Artist", "VirtualDJ play history"))


if __name__ == "__main__":
    unittest.main()
