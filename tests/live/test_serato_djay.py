"""Serato and djay Pro, from the databases that they keep in the user's home."""

import os
import sqlite3
import struct
import time
import unittest

from session import NO_SESSION, Session
from standins import idleAs

SERATO_TABLE = """CREATE TABLE history_entry(
  id INTEGER PRIMARY KEY, session_id, file_name, artist, name, album, genre, bpm REAL, key TEXT,
  length_sec, start_time, end_time, played, deck TEXT, app_name)"""
DJAY_TABLES = """
CREATE TABLE database2(rowid INTEGER PRIMARY KEY, collection TEXT, key TEXT, data BLOB);
CREATE TABLE secondaryIndex_mediaItemAnalyzedDataIndex(rowid INTEGER PRIMARY KEY, bpm REAL);"""
TITLE_ID = "0123456789abcdef0123456789abcdef"
EPOCH_2001 = 978307200


def archive(title, artist, started, duration):
    """A history item as djay Pro stores it: its numbers are aligned."""
    blob = b"TSAF" + struct.pack("<4I", 3, 3, 0, 9) + b"\x08ADCHistorySessionItem\x00"
    for key, value in ((b"startTime", started - EPOCH_2001), (b"duration", duration)):
        blob += b"\x30" + b"\x00" * (-(len(blob) + 1) % 8) + struct.pack("<d", value)
        blob += b"\x08" + key + b"\x00"
    blob += b"\x2b\x08ADCMediaItemTitleID\x00"
    for text in (title, "title", artist, "artist", TITLE_ID, "uuid"):
        blob += b"\x08" + text.encode() + b"\x00"
    return blob + b"\x00"


class DatabasesTest(unittest.TestCase):
    def setUp(self):
        self.desktop = self.enterContext(Session(display=False, bus=False, alone=True))

    def database(self, *path):
        full = os.path.join(self.desktop.home, *path)
        os.makedirs(os.path.dirname(full))
        database = sqlite3.connect(full, isolation_level=None)
        self.addCleanup(database.close)
        return database

    def named(self):
        return self.desktop.named("title", "artist", "bpm", "key", "source")

    def testSeratoWhileItWrites(self):
        serato = self.database("Music", "_Serato_", "Library", "master.sqlite")
        serato.execute("PRAGMA journal_mode = WAL")
        serato.execute(SERATO_TABLE)
        app = "Serato DJ Pro"
        serato.execute("INSERT INTO history_entry(artist, name, bpm, key, start_time, end_time,"
                       " played, app_name) VALUES (?, ?, 124.5, '8A', 200, -1, 1, ?)",
                       ("Sigur Rós\0\0", "Svefn-g-englar\0", app))
        self.assertEqual(self.named(), NO_SESSION)
        idleAs(self.desktop, app)
        expected = ("Svefn-g-englar", "Sigur Rós", 124.5, "8A", app)
        self.assertEqual(self.named(), expected)
        # A writer in the midst of its work keeps nobody from reading what was there before.
        serato.execute("BEGIN IMMEDIATE")
        serato.execute("DELETE FROM history_entry")
        self.assertEqual(self.named(), expected)
        serato.execute("COMMIT")
        self.assertEqual(self.named(), NO_SESSION)

    def testDjayWithinTheItemsTime(self):
        djay = self.database("Music", "djay", "djay Media Library.djayMediaLibrary",
                             "MediaLibrary.db")
        djay.executescript(DJAY_TABLES)
        djay.execute("INSERT INTO database2 VALUES (7, 'mediaItemAnalyzedData', ?, NULL)",
                     (TITLE_ID,))
        djay.execute("INSERT INTO secondaryIndex_mediaItemAnalyzedDataIndex VALUES (7, 127.98)")
        idleAs(self.desktop, "djay Pro")
        title, artist = "girl$ (東京 Extended Remix)", "Sigur Rós, Björk"
        for ago, expected in ((30, (title, artist, 127.98, "", "djay Pro")), (400, NO_SESSION)):
            djay.execute("INSERT INTO database2(collection, data) VALUES"
                         " ('historySessionItems', ?)",
                         (archive(title, artist, time.time() - ago, 307.879150390625),))
            self.assertEqual(self.named(), expected)


if __name__ == "__main__":
    unittest.main()
