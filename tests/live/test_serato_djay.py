"""Serato and djay Pro, from the databases that they keep in the user's home."""

import os
import sqlite3
import struct
import time
import unittest

from session import Session
from standins import idleAs

NO_SESSION = ("No active media session found. Start playback in a supported DJ app, "
              "then try again.\n")
SERATO_TABLE = """CREATE TABLE history_entry(
  id INTEGER PRIMARY KEY, session_id, file_name, artist, name, album, genre, bpm REAL, key TEXT,
  length_sec, start_time, end_time, played, deck TEXT, app_name)"""
DJAY_TABLES = """
CREATE TABLE database2(rowid INTEGER PRIMARY KEY, collection TEXT, key TEXT, data BLOB);
CREATE TABLE secondaryIndex_mediaItemAnalyzedDataIndex(rowid INTEGER PRIMARY KEY, bpm REAL);"""
TITLE_ID = "0123456789abcdef0123456789abcdef"
EPOCH_2001 = 978307200


def text(value, key):
    return b"\x08" + value.encode() + b"\x00" + b"\x08" + key + b"\x00"


def archive(title, artist, started, duration, asFloat=False):
    """A history item as djay Pro stores it: its numbers are aligned, or take four bytes."""
    blob = b"TSAF" + struct.pack("<4I", 3, 3, 0, 9) + b"\x08ADCHistorySessionItem\x00"
    for key, value in ((b"startTime", started - EPOCH_2001), (b"duration", duration)):
        if asFloat and key == b"duration":
            blob += b"\x13" + b"\x00" * (-(len(blob) + 1) % 4) + struct.pack("<f", value)
        else:
            blob += b"\x30" + b"\x00" * (-(len(blob) + 1) % 8) + struct.pack("<d", value)
        blob += b"\x08" + key + b"\x00"
    blob += b"\x2b\x08ADCMediaItemTitleID\x00"
    return blob + text(title, b"title") + text(artist, b"artist") + text(TITLE_ID, b"uuid") + b"\x00"


class DatabasesTest(unittest.TestCase):
    def setUp(self):
        self.desktop = self.enterContext(Session(display=False, bus=False, alone=True))

    def database(self, *path):
        full = os.path.join(self.desktop.home, *path)
        os.makedirs(os.path.dirname(full), exist_ok=True)
        database = sqlite3.connect(full, isolation_level=None)
        self.addCleanup(database.close)
        return database

    def named(self):
        track = self.desktop.nowPlaying()
        return track and (track["title"], track["artist"], track["bpm"], track["key"],
                          track["source"])

    def testSeratoWhileItWrites(self):
        serato = self.database("Music", "_Serato_", "Library", "master.sqlite")
        serato.execute("PRAGMA journal_mode = WAL")
        serato.execute(SERATO_TABLE)
        insert = ("INSERT INTO history_entry(artist, name, album, genre, bpm, key, start_time,"
                  " end_time, played, app_name) VALUES (?,?,?,?,?,?,?,?,?,?)")
        row = ("Sigur Rós\0\0", "Svefn-g-englar\0", "Á", "Post", 124.5, "8A")
        app = "Serato DJ Pro"
        serato.execute(insert, ("Left", "Open", None, None, None, None, 100, -1, 1, app))
        self.assertIsNone(self.named())
        idleAs(self.desktop, app)
        self.assertEqual(self.named(), ("Open", "Left", 0, "", app))
        serato.execute(insert, row + (200, -1, 1, None))
        expected = ("Svefn-g-englar", "Sigur Rós", 124.5, "8A", "")
        self.assertEqual(self.named(), expected)
        serato.execute(insert, ("Ended", "Track", "", "", 1, "", 300, 301, 1, app))
        serato.execute(insert, ("Cued", "Track", "", "", 1, "", 300, -1, 0, app))
        # A writer in the midst of its work keeps nobody from reading what was there before.
        serato.execute("BEGIN IMMEDIATE")
        serato.execute("DELETE FROM history_entry")
        self.assertEqual(self.named(), expected)
        serato.execute("COMMIT")
        self.assertEqual(self.desktop.velmor("now").stderr, NO_SESSION)

    def testDjayWithinTheItemsTime(self):
        djay = self.database("Music", "djay", "djay Media Library.djayMediaLibrary",
                             "MediaLibrary.db")
        djay.executescript(DJAY_TABLES)
        djay.execute("INSERT INTO database2 VALUES (7, 'mediaItemAnalyzedData', ?, NULL)",
                     (TITLE_ID,))
        djay.execute("INSERT INTO secondaryIndex_mediaItemAnalyzedDataIndex VALUES (7, 127.98)")
        idleAs(self.desktop, "djay Pro")
        title, artist = "girl$ (東京 Extended Remix)", "Sigur Rós, Björk"
        item = (title, artist, 127.98, "", "djay Pro")
        for ago, duration, asFloat, expected in (
                (30, 307.879150390625, False, item), (30, 307.879150390625, True, item),
                (400, 307.879150390625, False, None), (-60, 300, False, None)):
            with self.subTest(ago=ago, asFloat=asFloat):
                blob = archive(title, artist, time.time() - ago, duration, asFloat)
                djay.execute("INSERT INTO database2(collection, data) VALUES"
                             " ('historySessionItems', ?)", (blob,))
                self.assertEqual(self.named(), expected)

    def testReadingLeavesNoTrace(self):
        serato = self.database("Music", "_Serato_", "Library", "master.sqlite")
        serato.execute("PRAGMA journal_mode = WAL")
        serato.execute(SERATO_TABLE)
        serato.execute("INSERT INTO history_entry(artist, name, start_time, end_time, played,"
                       " app_name) VALUES ('A', 'T', 1, -1, 1, 'Serato DJ')")
        # Closing takes the log away, as Serato does when it ends.
        serato.close()
        idleAs(self.desktop, "Serato DJ")
        folder = os.path.join(self.desktop.home, "Music", "_Serato_", "Library")
        before = {entry.name: entry.stat().st_mtime_ns for entry in os.scandir(folder)}
        self.assertEqual(list(before), ["master.sqlite"])
        self.assertEqual(self.named()[:2], ("T", "A"))
        after = {entry.name: entry.stat().st_mtime_ns for entry in os.scandir(folder)}
        self.assertEqual(after, before)


if __name__ == "__main__":
    unittest.main()
