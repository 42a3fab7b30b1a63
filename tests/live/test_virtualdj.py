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

    def writeList(self, name, *lines, age=0):
        """A list as VirtualDJ writes it, with a byte-order mark and CRLF."""
        folder = os.path.join(self.desktop.home, "Documents", "VirtualDJ", "History")
        os.makedirs(folder, exist_ok=True)
        path = os.path.join(folder, name)
        with open(path, "w", encoding="utf-8-sig", newline="") as file:
            file.write("".join(line + "\r\n" for line in lines))
        os.utime(path, (time.time() - age,) * 2)

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

    def testReadsTheHistoryWhenNoDeckIsHeard(self):
        self.start(None)
        self.assertEqual(self.desktop.named(), NO_SESSION)
        self.writeList("tracklist.txt", "12:36 : Sigur Rós - Ænima & Co")
        started = int(time.time()) - 100
        for clock, length, expected in (
                ("12:36", 241.622, ("Ænima & Co", "Sigur Rós", "VirtualDJ play history")),
                ("12:40", 241.622, ("A Song", "The Artist", "VirtualDJ play history")),
                ("12:40", 90, NO_SESSION)):
            entry = (f"#EXTVDJ:<time>{clock}</time><lastplaytime>{started}</lastplaytime>"
                     f"<songlength>{length}</songlength>")
            self.writeList("2026-11-22.m3u", entry, "F:\\Music\\The Artist - A Song.mp3")
            self.writeList("2026-11-21.m3u", entry, "/Music/Stale - List.mp3", age=86400)
            self.assertEqual(self.desktop.named("title", "artist", "detection"), expected, clock)


if __name__ == "__main__":
    unittest.main()
