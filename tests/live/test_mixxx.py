"""The real Mixxx: named by its window's title and its library, else by its set log."""

import time
import unittest

from mixxx import Mixxx
from session import Session, waitUntil

SHORT, LONG = 45, 400
"""Seconds: one to outlive, others to outlast what is done while they play."""
TRACKS = {
    "one": (LONG, {"title": "Kick At 128", "artist": "Guns N' Roses", "album": "Synth Album",
                   "genre": "Techno", "TBPM": "128", "TKEY": "Am"}),
    "two": (LONG, {"title": "Svefn-g-englar – Ænima 東京", "artist": "Sigur Rós",
                   "album": "Ágætis \"byrjun\""}),
    "three": (LONG, {"title": "Left | Right", "artist": "DJ A - DJ B"}),
    "short": (SHORT, {"title": "Last One", "artist": "Closing Act", "genre": "House"}),
}
NOTHING_PLAYS = "Mixxx"


def titleOf(name):
    tags = TRACKS[name][1]
    return f"{tags['artist']} - {tags['title']} | Mixxx"


class MixxxTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop = cls.enterClassContext(Session(sound=True, accessibility=True, alone=True))
        cls.mixxx = Mixxx(cls.desktop, TRACKS)
        # Without any bus there is no accessibility, and the window list has to do.
        cls.withoutBus = {"DBUS_SESSION_BUS_ADDRESS": "", "XDG_RUNTIME_DIR": cls.desktop.root}

    def tearDown(self):
        self.mixxx.stop()

    def assertNamed(self, name, environment=None, **more):
        tags = TRACKS[name][1]
        track = self.desktop.nowPlaying(environment)
        self.assertIsNotNone(track)
        expected = {"title": tags["title"], "artist": tags["artist"], "source": "Mixxx",
                    "detection": "Mixxx current-track metadata", "album": tags.get("album", ""),
                    "genre": tags.get("genre", ""), **more}
        self.assertEqual({field: track[field] for field in expected}, expected)

    def testNamesTheDeckThatIsHeard(self):
        self.mixxx.start("one", "two")
        self.mixxx.toggle(1, until=titleOf("one"))
        for environment in (None, self.withoutBus):
            self.assertNamed("one", environment, bpm=128, key="Am")
        self.mixxx.toggle(1, until=NOTHING_PLAYS)
        self.mixxx.toggle(2, until=titleOf("two"))
        for environment in (None, self.withoutBus):
            self.assertNamed("two", environment)
        # Minimised it still plays, though the list of windows on screen has lost it.
        self.mixxx.minimise()
        self.assertNamed("two")

    def testItsSetLogHoldsUntilTheTrackWouldHaveEnded(self):
        self.mixxx.start("three", "short")
        self.mixxx.toggle(1, until=titleOf("three"))
        for environment in (None, self.withoutBus):
            self.assertNamed("three", environment)
        self.mixxx.toggle(1, until=NOTHING_PLAYS)
        begin = time.time()
        self.mixxx.toggle(2, until=titleOf("short"))
        self.mixxx.toggle(2, until=NOTHING_PLAYS)
        self.assertNamed("short")
        waitUntil(lambda: self.desktop.nowPlaying() is None, "the set log is too old", SHORT + 60)
        # Its clock counts whole seconds.
        self.assertGreater(time.time(), begin + SHORT - 1)


if __name__ == "__main__":
    unittest.main()
