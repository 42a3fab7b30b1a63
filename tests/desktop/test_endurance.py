"""What hours of use would show: an hour of polls, and the window made small again and again."""

import os
import unittest

from velmor_window import FULL, MANAGERS, MINIMISE, SQUARE, VelmorDesktop

from players import configure, mpv, tagged
from session import waitUntil

HURRIED = os.path.join(os.path.dirname(os.path.abspath(os.environ["VELMOR"])), "velmor-hurried")
SETTLED, POLLS = 300, 2400
MEMORY = 4 << 20
"""Bytes by which the allocator may keep more after the polls than before them."""


class EnduranceTest(unittest.TestCase):
    def testPollsLeaveTheProcessAsItWas(self):
        desktop = self.enterContext(VelmorDesktop(program=HURRIED))
        configure(desktop, autoSuggestTracks=True)
        mpv(desktop, tagged(desktop, "song.flac", title="Song", artist="Band"))
        process = desktop.open()

        def after(polls):
            self.seen = desktop.log("velmor").count("poll")
            return self.seen >= polls

        def holdings():
            folder = f"/proc/{process.pid}/"
            with open(folder + "statm", encoding="ascii") as sizes:
                resident = int(sizes.read().split()[1]) * os.sysconf("SC_PAGE_SIZE")
            return ({"descriptors": len(os.listdir(folder + "fd")),
                     "threads": len(os.listdir(folder + "task")),
                     "children": len(desktop.children(process))}, resident)

        waitUntil(lambda: after(SETTLED), "the first polls", 300)
        before, memory = holdings()
        waitUntil(lambda: after(SETTLED + POLLS), lambda: f"all polls; saw {self.seen}", 3000)
        # What a poll in this moment holds goes with it.
        waitUntil(lambda: holdings()[0] == before, lambda: f"{before}; now {holdings()[0]}")
        grown = holdings()[1] - memory
        print(f"{before}; memory grew by {grown >> 10} KB in {POLLS} polls")
        self.assertLess(grown, MEMORY)

    def testAHundredCyclesDoNotDrift(self):
        for manager in MANAGERS:
            with VelmorDesktop(manager) as desktop:
                self.repeat(desktop, manager)

    def repeat(self, desktop, manager):
        place, square = (301, 97, *FULL), (301 + 507 - 82, 97, *SQUARE)
        desktop.open(301, 97)
        desktop.waitForFrame(place)
        for cycle in range(100):
            for button, expected in ((MINIMISE, square), ((40, 40), place)):
                desktop.click(button)
                waitUntil(lambda: desktop.shows(expected), lambda: f"{expected} in cycle {cycle} "
                          f"under {manager}; it is {desktop.frame()}")


if __name__ == "__main__":
    unittest.main()
