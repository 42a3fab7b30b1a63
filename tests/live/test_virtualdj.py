"""VirtualDJ: its network control, found by process and port, and its history lists."""

import os
import time
import unittest

from session import Session, waitUntil
from standins import runScriptAs, writeState

NO_SESSION = ("No active media session found. Start playback in a supported DJ app, "
              "then try again.\n")
SONG = {"title": "Für Élise – “Edit” 100%", "artist": "Nick Cave & The Bad Seeds", "album": "A+B",
        "genre": "Drum & Bass", "bpm": "174.5", "key": "8A"}
TOKEN = "s3cr3t+/="


def writeHistory(desktop, started, line, path, tracklist=""):
    """A list as VirtualDJ writes it: with a byte-order mark, CRLF and raw ampersands."""
    folder = os.path.join(desktop.home, "Documents", "VirtualDJ", "History")
    os.makedirs(folder, exist_ok=True)
    old = ["#EXTVDJ:<time>10:00</time><lastplaytime>1700000000</lastplaytime>"
           "<songlength>200</songlength>", "/Music/Old - Song.mp3"]
    entry = [f"#EXTVDJ:<time>12:36</time><lastplaytime>{int(started)}</lastplaytime>"
             f"<filesize>9744561</filesize>{line}", path]
    for name, lines in (("2026-11-22.m3u", old + entry),
                        ("tracklist.txt", tracklist.splitlines())):
        with open(os.path.join(folder, name), "w", encoding="utf-8-sig", newline="") as file:
            file.write("".join(text + "\r\n" for text in lines))
    stale = os.path.join(folder, "2025-01-01.m3u")
    with open(stale, "w", encoding="utf-8") as file:
        file.write("\n".join([entry[0], "/Music/Stale - List.mp3"]))
    os.utime(stale, (1_700_000_000, 1_700_000_000))


class VirtualDJTest(unittest.TestCase):
    def setUp(self):
        self.desktop = self.enterContext(Session(display=False, bus=False, alone=True))

    def serve(self, song, token=""):
        state = writeState(self.desktop, "control", {"song": song, "token": token})
        return state

    def start(self, song, token=""):
        process = runScriptAs(self.desktop, "virtualdj", "virtualdj_service.py",
                              self.serve(song, token))
        waitUntil(lambda: "LISTEN" in self.desktop.run(
            ["lsof", "-nP", "-iTCP", "-sTCP:LISTEN", "-a", "-p", str(process.pid)]).stdout,
                  "the service listens")

    def testAsksTheNetworkControl(self):
        self.start(SONG)
        expected = {**SONG, "bpm": 174.5, "source": "VirtualDJ",
                    "detection": "VirtualDJ master-deck metadata"}
        self.assertEqual(self.desktop.nowPlaying(), expected)

        self.serve(SONG, TOKEN)
        self.assertIsNone(self.desktop.nowPlaying())
        self.assertIsNone(
            self.desktop.nowPlaying({"VIRTUALDJ_NETWORK_CONTROL_TOKEN": "another"}))
        self.assertEqual(
            self.desktop.nowPlaying({"VIRTUALDJ_NETWORK_CONTROL_TOKEN": TOKEN}), expected)

    def testReadsTheHistoryWhenNoDeckIsHeard(self):
        self.start(None)
        self.assertEqual(self.desktop.velmor("now").stderr, NO_SESSION)
        now = time.time()
        length = "<songlength>241.622</songlength>"
        listed = "12:36 : Artist & Co - T (Pt.2)\n12:36 : Sigur Rós - Ænima\n"
        named = ("Sigur Rós", "Ænima")
        for started, line, path, tracklist, expected in (
                (now - 100, length, "netsearch://dz715352532", listed, named),
                (now - 100, length, "/Music/The Artist - A Song.mp3", "", ("The Artist", "A Song")),
                (now - 100, length, "F:\\Music\\The Artist - A Song.mp3", "12:35 : X - Y",
                 ("The Artist", "A Song")),
                (now - 300, length, "/Music/The Artist - A Song.mp3", "", None),
                (now + 300, length, "/Music/The Artist - A Song.mp3", "", None),
                (now - 100, "", "/Music/The Artist - A Song.mp3", "", None),
                (now - 100, length, "/Music/no separator.mp3", "", None)):
            with self.subTest(path=path, line=line, started=started - now):
                writeHistory(self.desktop, started, line, path, tracklist)
                track = self.desktop.nowPlaying()
                self.assertEqual(track and (track["artist"], track["title"]), expected)
                if track:
                    self.assertEqual((track["source"], track["detection"]),
                                     ("VirtualDJ", "VirtualDJ play history"))


if __name__ == "__main__":
    unittest.main()
