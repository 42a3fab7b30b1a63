"""Velmor in a DJ's hands: the keyboard and the settings, in the real window."""

import json
import os
import sys
import time
import unittest

from velmor_window import FULL, SQUARE, VelmorDesktop

from model_provider import SONGS, ModelProvider
from players import configure, mpv, tagged
from session import waitUntil

PASTE = """
import gi
gi.require_version("Gdk", "3.0")
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, Gtk
print(Gtk.Clipboard.get(Gdk.SELECTION_CLIPBOARD).wait_for_text())
"""
PLACE = {"x": 200, "y": 150, "width": 507, "height": 651}
FRAME = (200, 150, *FULL)
MODEL_FIELD, KEY_FIELD, SHEET, SAVE = (200, 95), (200, 258), (250, 450), (454, 624)
EXPORT, FIRST_GRIP = (447, 250), (24, 293)


class UseTest(unittest.TestCase):
    def setUp(self):
        self.desktop = self.enterContext(VelmorDesktop())

    def open(self, **config):
        configure(self.desktop, window=PLACE, **config)
        process = self.desktop.open()
        self.desktop.activate(self.desktop.client())
        return process

    def picture(self):
        return self.desktop.client().get_image(0, 0, *FULL, 2, 0xFFFFFF).data

    def see(self, act, *arguments):
        """Does something and waits until the page shows it. In the page, what the mouse does can
        overtake what is still being typed."""
        before = self.picture()
        act(*arguments)
        waitUntil(lambda: self.picture() != before, f"the page shows {arguments}")
        # What moves swallows the next click.
        waitUntil(self.isStill, "the page has come to rest")

    def isStill(self):
        before = self.picture()
        time.sleep(0.3)
        return self.picture() == before

    def pasted(self):
        return self.desktop.run([sys.executable, "-c", PASTE]).stdout.strip()

    def askForSongs(self):
        """Plays something, and has the ranking for it on the page."""
        desktop = self.desktop
        provider = desktop.enter(ModelProvider())
        desktop.environment.update(provider.environment)
        mpv(desktop, tagged(desktop, "song.flac", title="Song", artist="Band"))
        desktop.waitForTrack(title="Song")
        process = self.open()
        # The button is no place to drag the window by.
        desktop.drag((250, 137), 60, 500)
        desktop.waitForFrame(FRAME)
        self.assertEqual(provider.requests, [])
        desktop.key("s")
        waitUntil(lambda: provider.requests, "it asks")

        def copied():
            desktop.key("2", "c")
            return self.pasted()

        # Until the ranking is there, there is no second card.
        waitUntil(lambda: copied() == f"{SONGS[1]['artist']} {SONGS[1]['song']}",
                  "the second song is in the clipboard")
        return process

    def testASetOutlivesTheWindow(self):
        desktop = self.desktop
        process = self.askForSongs()
        for key in "2p1p":
            desktop.key(key)
        self.see(desktop.key, "t")
        desktop.screenshot("set")
        desktop.close()
        desktop.ended(process)
        desktop.open()
        desktop.activate(desktop.client())
        self.see(desktop.key, "t")
        self.see(desktop.drag, FIRST_GRIP, 0, 60)
        self.see(desktop.click, EXPORT)
        desktop.screenshot("set-later")
        desktop.key("Return")
        wanted = [f"{number}. {song['artist']} - {song['song']}"
                  for number, song in enumerate((SONGS[0], SONGS[1]), 1)]
        waitUntil(lambda: [line.split("  ")[0] for line in self.pasted().splitlines()] == wanted,
                  lambda: f"{wanted}; pasted {self.pasted()}")
        desktop.waitForFrame(FRAME)

    def testWhatWasTypedIsNotLostWithTheWindow(self):
        desktop = self.desktop
        process = self.open()
        self.see(desktop.key, "comma")
        self.see(desktop.tool, "type", "x")
        self.see(desktop.close)
        desktop.screenshot("unsaved")
        self.see(desktop.key, "Escape")
        self.assertIsNone(process.poll())
        self.see(desktop.close)
        desktop.close()
        desktop.ended(process)

    def testKeysAskChooseAndCopy(self):
        desktop = self.desktop
        self.askForSongs()
        for view in "wth":
            self.see(desktop.key, view)
            desktop.screenshot("view-" + view)
        desktop.key("m")
        desktop.waitForSize(SQUARE)
        desktop.screenshot("compact")
        desktop.key("m")
        desktop.waitForFrame(FRAME)

    def testSettingsAreEnteredByHand(self):
        desktop = self.desktop
        self.open(aiModel="another-model")
        self.see(desktop.key, "comma")
        # Text is selected by dragging over it, which leaves the window where it is.
        self.see(desktop.drag, MODEL_FIELD, -195, 0)
        self.see(desktop.tool, "type", "gpt-y")
        self.see(desktop.click, KEY_FIELD)
        self.see(desktop.tool, "type", "entered-<by>-hand")
        desktop.moveTo(*desktop.onScreen(SHEET))
        self.see(desktop.tool, "click", "--repeat", "10", "5")
        desktop.screenshot("settings")
        desktop.waitForFrame(FRAME)
        desktop.click(SAVE)
        path = os.path.join(desktop.home, ".config", "Velmor", "config.json")

        def stored():
            with open(path, encoding="utf-8") as file:
                config = json.load(file)
            return {name: config[name] for name in ("aiModel", "tinkerApiKey", "window")}

        wanted = {"aiModel": "gpt-y", "tinkerApiKey": "entered-<by>-hand", "window": PLACE}
        waitUntil(lambda: stored() == wanted, lambda: f"{wanted}; stored {stored()}")
        self.assertEqual(os.stat(path).st_mode & 0o777, 0o600)
        desktop.waitForFrame(FRAME)


if __name__ == "__main__":
    unittest.main()
