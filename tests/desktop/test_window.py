"""Where the window is, under each window manager: launch, compact mode, drags, what is saved."""

import unittest

from velmor_window import (BACKGROUND, CLOSE, FULL, MINIMISE, SQUARE, VelmorDesktop)

from session import waitUntil

# The middle lies between two pixels both ways.
CENTRES = [(x, y, *FULL) for x in (466, 467) for y in (124, 125)]


class WindowTest(unittest.TestCase):
    manager = "openbox"

    def setUp(self):
        self.desktop = self.enterContext(VelmorDesktop(self.manager))

    def shot(self, name):
        self.desktop.screenshot(f"{self.manager}-{name}")

    def testComesBackWhereItWasMovedTo(self):
        desktop = self.desktop
        process = desktop.open()
        waitUntil(lambda: desktop.frame() in CENTRES, lambda: f"centred: {desktop.frame()}")
        self.shot("launch")
        self.assertLessEqual({"ABOVE", "STICKY", "SKIP_TASKBAR", "SKIP_PAGER"}, desktop.states())
        x, y, *_ = desktop.frame()
        desktop.drag(BACKGROUND, -300, 60)
        moved = (x - 300, y - 60, *FULL)
        desktop.waitForFrame(moved)
        self.shot("moved")
        desktop.click(CLOSE)
        self.assertEqual(desktop.ended(process), 0)
        self.assertEqual(desktop.saved(), moved)
        desktop.open()
        desktop.waitForFrame(moved)

    def testAPlaceOffTheScreenIsCentredAndSaved(self):
        self.desktop.open(4000, 100)
        waitUntil(lambda: self.desktop.frame() in CENTRES, "it is in the middle")
        self.assertIn(self.desktop.saved(), CENTRES)

    def testShrinksToASquareAndBack(self):
        desktop = self.desktop
        x, y = 200, 150
        process = desktop.open(x, y)
        desktop.waitForFrame((x, y, *FULL))
        desktop.click(MINIMISE)
        desktop.waitForFrame((x + FULL[0] - 82, y, *SQUARE))
        self.assertLessEqual({"ABOVE", "STICKY", "SKIP_TASKBAR"}, desktop.states())
        self.shot("square")

        desktop.drag((40, 40), 100, -300)
        dragged = (x + FULL[0] + 18, y + 300, *SQUARE)
        desktop.waitForFrame(dragged)
        desktop.click((40, 40))
        desktop.waitForFrame((x, y, *FULL))
        self.shot("restored")

        # By the window manager this time, and at the place where the square was left.
        desktop.tool("windowminimize", str(desktop.client().id))
        desktop.waitForFrame(dragged)
        # Out of the taskbar, a square that stayed minimised could not be found again.
        desktop.tool("windowminimize", str(desktop.client().id))
        desktop.waitForFrame(dragged)
        waitUntil(lambda: "HIDDEN" not in desktop.states(), "the square is back")
        desktop.close()
        self.assertEqual(desktop.ended(process), 0)
        self.assertEqual(desktop.saved(), (x, y, *FULL))

    def testStaysAboveWhateverIsRaised(self):
        desktop = self.desktop
        desktop.open(200, 150)
        others = [desktop.otherWindow(), desktop.otherWindow("ABOVE"),
                  desktop.otherWindow("FULLSCREEN")]
        for size in (FULL, SQUARE):
            for other in others:
                desktop.activate(other)
                waitUntil(lambda: desktop.active() == other.id, "the other window is active")
                waitUntil(lambda: desktop.topmost() == desktop.client().id, "Velmor is above")
                self.assertEqual(desktop.active(), other.id, "without taking the focus")
            self.shot(f"above-{size[0]}")
            # A full-screen program that goes does not take Velmor along.
            desktop.tool("windowminimize", str(other.id))
            waitUntil(lambda: "HIDDEN" in desktop.states(other), "the other window is gone")
            desktop.waitForSize(size)
            if size == FULL:
                desktop.shrink()


class WindowUnderXfwm4Test(WindowTest):
    manager = "xfwm4"


if __name__ == "__main__":
    unittest.main()
