"""How the program starts and ends."""

import os
import signal
import unittest

from velmor_window import CLOSE, FULL, MINIMISE, SQUARE, VelmorDesktop

from players import configure
from session import Session, waitUntil

ENDS_WITHIN = 5
"""On a busy machine; alone it takes a fraction of a second."""


class LifecycleTest(unittest.TestCase):
    def open(self, **options):
        self.desktop = self.enterContext(VelmorDesktop(**options))
        process = self.desktop.open(x=200, y=150, width=507, height=651)
        self.desktop.waitForFrame((200, 150, *FULL))
        return process

    def children(self, process):
        with open(f"/proc/{process.pid}/task/{process.pid}/children", encoding="ascii") as file:
            return [int(number) for number in file.read().split()]

    def testASecondStartRaisesTheFirst(self):
        process = self.open()
        desktop = self.desktop
        other = desktop.otherWindow()
        desktop.activate(other)
        waitUntil(lambda: desktop.active() == other.id, "the other window is active")
        self.assertEqual(desktop.run([desktop.program]).returncode, 0)
        waitUntil(lambda: desktop.active() == desktop.client().id, "the first one is active")
        self.assertIsNone(process.poll())
        desktop.click(MINIMISE)
        desktop.waitForSize(SQUARE)
        self.assertEqual(desktop.run([desktop.program]).returncode, 0)
        desktop.waitForSize(SQUARE)

    def testEveryEndIsQuickAndLeavesNothing(self):
        for how in ("TERM", "INT", "quit", "close", "TERM while compact"):
            with self.subTest(how):
                process = self.open()
                desktop = self.desktop
                waitUntil(lambda: self.children(process), "the page's processes run")
                children = self.children(process)
                desktop.drag((200, 4), 50, 0)
                desktop.waitForFrame((250, 150, *FULL))
                if "compact" in how:
                    desktop.click(MINIMISE)
                    desktop.waitForSize(SQUARE)
                if how == "quit":
                    desktop.click((200, 300))
                    desktop.key("ctrl+q")
                elif how == "close":
                    desktop.click(CLOSE)
                else:
                    process.send_signal(getattr(signal, "SIG" + how.split()[0]))
                self.assertEqual(desktop.ended(process, ENDS_WITHIN), 0)
                place = 200 if how == "quit" else 250
                self.assertEqual(desktop.saved(), (place, 150, *FULL))
                waitUntil(lambda: not any(os.path.exists(f"/proc/{child}/exe")
                                          for child in children), "no child is left")
                self.assertEqual(os.listdir(desktop.environment["TMPDIR"]), [])

    def testWithoutADisplayASentenceSaysWhatWorks(self):
        with Session(display=False) as desktop:
            for display in ({}, {"DISPLAY": ":999999"}):
                result = desktop.velmor(environment=display)
                self.assertEqual(result.returncode, 2)
                self.assertRegex(result.stderr, r"^velmor: the window needs an X11 display .*"
                                                r"now, suggest and bridge .*demo.*\n$")


if __name__ == "__main__":
    unittest.main()
