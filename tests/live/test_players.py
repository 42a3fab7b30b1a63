"""Spotify and Music, asked by script: players of these names on the session bus."""

import os
import signal
import unittest

from session import NO_SESSION, Session
from standins import PLAYER, runScriptAs, startPlayer, writeState

PAUSED = "media player is paused. Start playback and try again.\n"
SONG = {"xesam:title": "It's “Here” | Now", "xesam:artist": ["Sigur Rós", "Björk"],
        "xesam:album": "Ágætis byrjun"}


class PlayersTest(unittest.TestCase):
    def setUp(self):
        self.desktop = self.enterContext(Session(display=False, alone=True))

    def play(self, name, status="Playing", **changes):
        """Says what a player does, with these changes to the song; one without a value is gone."""
        metadata = {"xesam:" + key: value for key, value in changes.items()}
        given = {key: value for key, value in {**SONG, **metadata}.items() if value is not None}
        return writeState(self.desktop, name, {"status": status, "metadata": given})

    def start(self, name, **changes):
        return startPlayer(self.desktop, name, self.play(name, **changes))

    def named(self):
        return self.desktop.named("title", "artist", "album", "source")

    def testEveryStateOfEachPlayer(self):
        title, artist = "It's “Here” | Now", "Sigur Rós, Björk"
        for name, session in (("Spotify", "macOS media"), ("Music", "music")):
            player = self.start(name)
            for status, changes, expected in (
                    ("Playing", {}, (title, artist, "Ágætis byrjun", "macOS media")),
                    ("Paused", {}, PAUSED),
                    ("Stopped", {}, NO_SESSION),
                    # No track without an album for the script; the media session still has it.
                    ("Playing", {"album": None}, (title, artist, "", session)),
                    ("Playing", {"title": None}, NO_SESSION)):
                with self.subTest(player=name, status=status, changes=changes):
                    self.play(name, status, **changes)
                    self.assertEqual(self.named(), expected)
            self.desktop.stop(player)

    def testAHungPlayerIsPassedOver(self):
        hung = self.start("Spotify")
        self.start("Music", title="Still heard")
        os.kill(hung.pid, signal.SIGSTOP)
        self.assertEqual(self.named()[0], "Still heard")
        self.play("Music", "Stopped")
        self.assertEqual(self.named(), NO_SESSION)
        os.kill(hung.pid, signal.SIGCONT)
        self.play("Music", title="Comes second")
        self.assertEqual(self.named()[0], SONG["xesam:title"])

    def testAProcessWithoutASessionIsPassedOver(self):
        runScriptAs(self.desktop, "Spotify", PLAYER, "another", "Another",
                    self.play("Spotify"))
        self.desktop.waitForTrack(title=SONG["xesam:title"], source="another")


if __name__ == "__main__":
    unittest.main()
