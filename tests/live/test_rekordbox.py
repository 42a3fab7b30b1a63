"""rekordbox's screen, read over the accessibility bus from a window of another process."""

import os
import signal
import unittest

from model_provider import ModelProvider
from session import Session, waitUntil
from standins import runScriptAs, writeState

FOLDER = os.path.dirname(os.path.abspath(__file__))
WINDOW = os.path.join(FOLDER, "rekordbox_window.py")
LAYOUT = os.path.join(FOLDER, "data", "rekordbox-layout.json")
NO_DECK = ("rekordbox is running but no active deck was detected. Play a track in Performance "
           "mode, then try again.\n")
DENIED = ("Velmor needs Accessibility access for rekordbox. In System Settings → Privacy & "
          "Security → Accessibility, remove and re-enable Velmor, then restart from "
          "~/Applications/Velmor.app.\n")
FIRST = {"title": "Für Elise (90's “Rave” Mix)", "artist": "Ludwig & Friends", "bpm": "128.00",
         "key": "Am", "elapsed": 95, "length": 600, "plays": True}
SECOND = {"title": "東京 | Nights", "artist": "DJ A - DJ B", "bpm": "174.5", "key": "7B",
          "elapsed": 34, "length": 600, "plays": True}


def writeDecks(desktop, first, second):
    return writeState(desktop, "decks", {"1": {**FIRST, **first},
                                         "2": {**SECOND, **second}})


def showDecks(desktop, first, second):
    """Changes what the window shows, and waits until it shows it."""
    file = writeDecks(desktop, first, second)
    waitUntil(lambda: contents(file + ".shown") == contents(file), "the decks are on screen")


def contents(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def showWindow(desktop, first, second):
    """Brings the window up and waits until the window manager shows it."""
    process = runScriptAs(desktop, "rekordbox", WINDOW, LAYOUT,
                          writeDecks(desktop, first, second))
    waitUntil(lambda: desktop.run(["xdotool", "search", "--onlyvisible", "--name",
                                   "^rekordbox$"]).stdout, "the window is there")
    return process


class RekordboxTest(unittest.TestCase):
    def testNamesTheDeckThatPlays(self):
        paused = {"plays": False}
        with Session(accessibility=True, alone=True) as desktop:
            window = showWindow(desktop, {}, paused)
            desktop.waitForTrack(title=FIRST["title"], artist="Ludwig & Friends", bpm=128, key="Am",
                                 source="rekordbox", detection="rekordbox deck metadata",
                                 album="", genre="")
            showDecks(desktop, paused, {})
            desktop.waitForTrack(title=SECOND["title"], artist="DJ A - DJ B", bpm=174.5, key="7B")
            # Of two that play it is the one that began last.
            showDecks(desktop, {"elapsed": 3}, {"elapsed": 300})
            desktop.waitForTrack(title=FIRST["title"])

            # It is paused near its beginning: a suggestion looks twice before it takes the other.
            showDecks(desktop, {"elapsed": 3, **paused}, {"elapsed": 300})
            provider = desktop.enter(ModelProvider())
            suggested = desktop.velmor("suggest", environment=provider.environment)
            self.assertIn(SECOND["title"], suggested.stdout.splitlines()[0], suggested.stderr)

            unplayed = {"plays": False, "elapsed": 0}
            showDecks(desktop, unplayed, unplayed)
            self.assertEqual(desktop.velmor("now").stderr, NO_DECK)

            os.kill(window.pid, signal.SIGSTOP)
            self.assertEqual(desktop.velmor("now").stderr, NO_DECK)
            os.kill(window.pid, signal.SIGCONT)
            showDecks(desktop, {}, unplayed)
            desktop.waitForTrack(title=FIRST["title"])

    def testAsksForAccessibilityWhereThereIsNone(self):
        with Session(alone=True) as desktop:
            showWindow(desktop, {}, {})
            waitUntil(lambda: desktop.velmor("now").stderr == DENIED, "access is asked for")


if __name__ == "__main__":
    unittest.main()
