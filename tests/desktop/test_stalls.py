"""The window goes on while Velmor looks for the track or listens."""

import os
import time
import unittest

from stalls import ANIMATION, dragPause, paintingPause
from velmor_window import VelmorDesktop, hungPlayer, withScript

from model_provider import ModelProvider
from players import configure, playSong
from session import waitUntil

FROZEN = os.path.join(os.path.dirname(os.path.abspath(os.environ["VELMOR"])), "velmor-frozen")
SMOOTH = 0.4
"""Far more than a frame, for machines under load; far less than a poll of a player that hangs."""
STOOD_STILL = 1.0


def forSeconds(seconds):
    end = time.monotonic() + seconds
    return lambda: time.monotonic() < end


class StallTest(unittest.TestCase):
    def openWithHungPlayer(self, program):
        """Polls that wait for a player which does not answer, one after the other."""
        desktop = self.enterContext(VelmorDesktop(alone=True))
        desktop.program = withScript(desktop.root, ANIMATION, program)
        hungPlayer(desktop)
        configure(desktop, autoSuggestTracks=True)
        desktop.open()
        return desktop

    def pauses(self, desktop, what, seconds):
        painting = paintingPause(desktop, forSeconds(seconds))
        drag = dragPause(desktop, forSeconds(seconds))
        print(f"{what}: painting {painting * 1000:.0f} ms, drag {drag * 1000:.0f} ms at most")
        return painting, drag

    def testNothingStandsStillDuringAPoll(self):
        desktop = self.openWithHungPlayer(os.environ["VELMOR"])
        self.assertLess(max(self.pauses(desktop, "poll", 8)), SMOOTH)

    def testTheMeasurementFindsAWindowThatStandsStill(self):
        painting, _ = self.pauses(self.openWithHungPlayer(FROZEN), "frozen", 8)
        self.assertGreater(painting, STOOD_STILL)

    def testNothingStandsStillDuringACapture(self):
        desktop = self.enterContext(VelmorDesktop(sound=True))
        provider = desktop.enter(ModelProvider())
        desktop.environment.update(provider.environment, ESSENTIA_EXTRACTOR="/bin/false")
        desktop.program = withScript(desktop.root, ANIMATION)
        playSong(desktop, title="A", artist="B")
        configure(desktop)
        process = desktop.open()
        desktop.ask()
        waitUntil(lambda: desktop.listens(process), "the capture has begun")
        longest = max(self.pauses(desktop, "capture", 5))
        self.assertTrue(desktop.listens(process), "the capture outlasts the measurement")
        self.assertLess(longest, SMOOTH)


if __name__ == "__main__":
    unittest.main()
