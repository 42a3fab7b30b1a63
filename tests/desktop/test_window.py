"""Where the window is, under each window manager: launch, compact mode, drags, what is saved.

Each window manager of MANAGERS has its own class here, such as WindowUnderMutterTest.
"""

import signal
import time
import unittest

from wayland import WaylandDesktop
from velmor_window import (BACKGROUND, CLOSE, FULL, MANAGERS, MINIMISE, SCREEN, SQUARE,
                           VelmorDesktop)

from session import waitUntil

# They minimise nothing, whoever asks.
NEVER_MINIMISE = ("i3", "none")
NOT_ABOVE_FULL_SCREEN = ("jwm", "i3", "none", "wayland")


class WindowTest:
    manager = None

    def setUp(self):
        desktop = WaylandDesktop if self.manager == "wayland" else VelmorDesktop
        self.desktop = self.enterContext(desktop(self.manager))

    def shot(self, name):
        self.desktop.screenshot(f"{self.manager}-{name}")

    def minimiseFromOutside(self):
        self.desktop.tool("windowminimize", str(self.desktop.client().id))

    def endsWith(self, process, frame):
        self.assertEqual(self.desktop.ended(process), 0)
        self.assertEqual(self.desktop.saved(), frame)

    def testComesBackWhereItWasMovedTo(self):
        desktop = self.desktop
        process = desktop.open()
        waitUntil(desktop.isCentred, lambda: f"centred: {desktop.frame()}")
        self.shot("launch")
        self.assertLessEqual({"ABOVE", "STICKY"}, desktop.states())
        x, y, *_ = desktop.frame()
        desktop.drag(BACKGROUND, -300, 60)
        moved = (x - 300, y - 60, *FULL)
        desktop.waitForFrame(moved)
        self.shot("moved")
        desktop.click(CLOSE)
        self.endsWith(process, moved)
        desktop.open()
        desktop.waitForFrame(moved)

    def testAPlaceOffTheScreenIsCentredAndSaved(self):
        self.desktop.open(4000, 100)
        waitUntil(self.desktop.isCentred, "it is in the middle")
        self.assertEqual(self.desktop.saved(), self.desktop.frame())

    def testShrinksToASquareAndBack(self):
        desktop = self.desktop
        x, y = 200, 150
        process = desktop.open(x, y)
        desktop.waitForFrame((x, y, *FULL))
        desktop.click(MINIMISE)
        desktop.waitForFrame((x + FULL[0] - 82, y, *SQUARE))
        self.assertLessEqual({"ABOVE", "STICKY"}, desktop.states())
        self.shot("square")
        desktop.drag((40, 40), 100, -300)
        desktop.waitForFrame((x + FULL[0] + 18, y + 300, *SQUARE))
        desktop.flick((40, 40), -200, 100)
        dragged = (x + FULL[0] - 182, y + 200, *SQUARE)
        desktop.waitForFrame(dragged)
        desktop.click((40, 40))
        desktop.waitForFrame((x, y, *FULL))
        self.shot("restored")
        # Again, at the place where the square was left.
        desktop.click(MINIMISE)
        desktop.waitForFrame(dragged)
        process.terminate()
        self.endsWith(process, (x, y, *FULL))

    def testAMinimiseFromOutsideMakesTheSquareToo(self):
        if self.manager in NEVER_MINIMISE:
            self.skipTest("this window manager minimises nothing")
        desktop = self.desktop
        x, y = 200, 150
        process = desktop.open(x, y)
        desktop.waitForFrame((x, y, *FULL))
        square = (x + FULL[0] - 82, y, *SQUARE)
        self.minimiseFromOutside()
        desktop.waitForFrame(square)
        desktop.click((40, 40))
        desktop.waitForFrame((x, y, *FULL))
        self.minimiseFromOutside()
        desktop.waitForFrame(square)
        # Without a button, a square that stayed minimised could not be found again.
        self.minimiseFromOutside()
        desktop.waitForFrame(square)
        waitUntil(lambda: "HIDDEN" not in desktop.states(), "the square is back")
        desktop.close()
        self.endsWith(process, (x, y, *FULL))

    def testAFrameAcrossTheEdgeComesBackThere(self):
        desktop = self.desktop
        process = desktop.open(900, 150)
        desktop.waitForFrame((900, 150, *FULL))
        desktop.drag(BACKGROUND, 200, 0)
        # Some window managers keep a window on the screen.
        time.sleep(2)
        across = desktop.frame()
        desktop.click(MINIMISE)
        right = min(across[0] + FULL[0], SCREEN[0])
        desktop.waitForFrame((right - 82, 150, *SQUARE))
        desktop.click((40, 40))
        desktop.waitForFrame(across)
        desktop.click(CLOSE)
        self.endsWith(process, across)

    def testAPausedWindowManagerLosesNothing(self):
        if self.manager in ("none", "wayland"):
            self.skipTest("there is no window manager to pause, or the mouse would pause, too")
        desktop = self.desktop
        process = desktop.open(200, 150)
        desktop.waitForFrame((200, 150, *FULL))
        desktop.shrink()
        # The click is meant to reach Velmor before the window manager stops.
        desktop.moveTo(*desktop.onScreen((40, 40)))
        desktop.windowManager.send_signal(signal.SIGSTOP)
        desktop.button(1, True)
        desktop.button(1, False)
        time.sleep(2)
        desktop.windowManager.send_signal(signal.SIGCONT)
        desktop.waitForFrame((200, 150, *FULL))
        desktop.click(CLOSE)
        self.endsWith(process, (200, 150, *FULL))

    def testStaysAboveWhateverIsRaised(self):
        if self.manager in NOT_ABOVE_FULL_SCREEN:
            self.skipTest("this window manager has no place above a full-screen window")
        desktop = self.desktop
        desktop.open(200, 150)
        others = [desktop.otherWindow("FULLSCREEN"), desktop.otherWindow()]
        # It may do as it likes with a full-screen window; Velmor may not.
        before = {other.id: desktop.states(other) - {"FOCUSED"} for other in others}
        for size in (FULL, SQUARE):
            for other in others:
                desktop.activate(other)
                waitUntil(lambda: desktop.active() == other.id, "the other window is active")
                waitUntil(desktop.isSeen, f"Velmor is above {desktop.states(other)}")
                self.assertEqual(desktop.active(), other.id, "without taking the focus")
                self.assertLessEqual(desktop.states(other) - {"FOCUSED", "ABOVE"}, before[other.id])
            self.shot(f"above-{size[0]}")
            # A full-screen program that goes does not take Velmor along, nor the other way round.
            full = others[0]
            desktop.activate(full)
            waitUntil(desktop.isSeen, "Velmor is above")
            desktop.tool("windowminimize", str(full.id))
            waitUntil(lambda: "HIDDEN" in desktop.states(full), "the other window is gone")
            desktop.waitForSize(size)
            if size == FULL:
                desktop.activate(full)
                waitUntil(desktop.isSeen, "Velmor is above")
                desktop.shrink()
                self.assertNotIn("HIDDEN", desktop.states(full))


for name in MANAGERS:
    case = f"WindowUnder{name.capitalize().replace('_x11', '')}Test"
    globals()[case] = type(case, (WindowTest, unittest.TestCase), {"manager": name})


if __name__ == "__main__":
    unittest.main()
