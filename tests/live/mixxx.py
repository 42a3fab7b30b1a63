"""The real Mixxx in a private desktop, with a library of tagged files."""

import contextlib
import os
import sqlite3
import time

from players import tagged
from session import waitUntil

MAIN_WINDOW = r"Mixxx$"
FIRST_RUN = "^Choose music library directory$"


class Mixxx:
    """The tracks are records with a file name, a length in seconds and tags."""

    def __init__(self, desktop, tracks):
        self.desktop = desktop
        self.music = os.path.join(desktop.home, "Music")
        os.makedirs(self.music)
        self.files = {name: tagged(desktop, os.path.join(self.music, name + ".mp3"), seconds,
                                   **tags) for name, (seconds, tags) in tracks.items()}
        self.process = None
        self._fillLibrary()

    def start(self, *names):
        """Starts with these tracks on decks 1 and 2, stopped."""
        self.process = self.desktop.start(["mixxx", *(self.files[name] for name in names)])
        waitUntil(lambda: self._window(MAIN_WINDOW), "Mixxx has its window")

    def stop(self):
        self.desktop.stop(self.process)

    def title(self):
        return self.desktop.run(["xdotool", "getwindowname", self._window(MAIN_WINDOW)]
                                ).stdout.strip()

    def toggle(self, deck, until):
        """Starts or stops a deck. A key is lost while Mixxx still loads, so it is pressed again
        after a while in which the title has not become what it should."""
        def pressAndLook():
            self._key("d" if deck == 1 else "l")
            deadline = time.monotonic() + 12
            while self.title() != until and time.monotonic() < deadline:
                time.sleep(0.1)
            return self.title() == until

        waitUntil(pressAndLook, lambda: f"the title is {until}; it is {self.title()}", 120)

    def minimise(self):
        self.desktop.run(["xdotool", "windowminimize", self._window(MAIN_WINDOW)])

    def _fillLibrary(self):
        """The first start asks where the music is, and finds it."""
        self.process = self.desktop.start(["mixxx"])
        dialog = waitUntil(lambda: self._window(FIRST_RUN), "Mixxx asks for the library")
        self.desktop.run(["xdotool", "windowactivate", "--sync", dialog])

        def answer():
            self.desktop.run(["xdotool", "key", "ctrl+a"])
            self.desktop.run(["xdotool", "type", "--delay", "20", self.music])
            self.desktop.run(["xdotool", "key", "Return"])
            time.sleep(1)
            return not self._window(FIRST_RUN)

        waitUntil(answer, "Mixxx takes the answer")
        waitUntil(lambda: self._tracksInLibrary() == len(self.files), "the library is scanned", 180)
        self.stop()

    def _tracksInLibrary(self):
        path = os.path.join(self.desktop.home, ".mixxx", "mixxxdb.sqlite")
        with contextlib.suppress(sqlite3.Error):
            address = f"file:{path}?mode=ro"
            with contextlib.closing(sqlite3.connect(address, uri=True)) as library:
                return library.execute("SELECT count(*) FROM library").fetchone()[0]
        return 0

    def _window(self, name):
        found = self.desktop.run(["xdotool", "search", "--onlyvisible", "--name", name]).stdout
        return found.split()[-1] if found else ""

    def _key(self, key):
        self.desktop.run(["xdotool", "windowactivate", "--sync", self._window(MAIN_WINDOW)])
        self.desktop.run(["xdotool", "key", key])
