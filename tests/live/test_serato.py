"""Serato, from the database that it keeps in the user's home, while it writes."""

import os
import sqlite3
import unittest

from session import NO_SESSION, Session
from standins import idleAs

TABLE = """CREATE TABLE history_entry(
  id INTEGER PRIMARY KEY, session_id, file_name, artist, name, album, genre, bpm REAL, key TEXT,
  length_sec, start_time, end_time, played, deck TEXT, app_name)"""
APP = "Serato DJ Pro"


class SeratoTest(unittest.TestCase):
    def testNamesTheTrackThatTheDatabaseHolds(self):
        desktop = self.enterContext(Session(display=False, bus=False, alone=True))
        folder = os.path.join(desktop.home, "Music", "_Serato_", "Library")
        os.makedirs(folder)
        serato = sqlite3.connect(os.path.join(folder, "master.sqlite"), isolation_level=None)
        self.addCleanup(serato.close)
        serato.execute("PRAGMA journal_mode = WAL")
        serato.execute(TABLE)
        serato.execute("INSERT INTO history_entry(artist, name, bpm, key, start_time, end_time,"
                       " played, app_name) VALUES (?, ?, 124.5, '8A', 200, -1, 1, ?)",
                       ("Sigur Rós\0\0", "Svefn-g-englar\0", APP))
        self.assertEqual(desktop.named(), NO_SESSION)
        idleAs(desktop, APP)
        fields = ("title", "artist", "bpm", "key", "source")
        expected = ("Svefn-g-englar", "Sigur Rós", 124.5, "8A", APP)
        self.assertEqual(desktop.named(*fields), expected)
        # A writer in the midst of its work keeps nobody from reading what was there before.
        serato.execute("BEGIN IMMEDIATE")
        serato.execute("DELETE FROM history_entry")
        self.assertEqual(desktop.named(*fields), expected)
        serato.execute("COMMIT")
        self.assertEqual(desktop.named(*fields), NO_SESSION)


if __name__ == "__main__":
    unittest.main()
