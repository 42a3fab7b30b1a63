"""The window goes on while Velmor looks for the track or listens."""

import os
import time
import unittest

from stalls import ANIMATION, dragPause, paintingPause
from velmor_window import VelmorDesktop, hungPlayer, withScript

from players import Provider, configure, mpv, tagged
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

    def pauses(self, program):
        desktop = self.openWithHungPlayer(program)
        painting = paintingPause(desktop, forSeconds(8))
        drag = dragPause(desktop, forSeconds(8))
        print(f"{os.path.basename(program)}: painting {painting * 1000:.0f} ms, "
              f"drag {drag * 1000:.0f} ms at most")
        return painting, drag

    def testNothingStandsStillDuringAPoll(self):
        self.assertLess(max(self.pauses(os.environ["VELMOR"])), SMOOTH)

    def testTheMeasurementFindsAWindowThatStandsStill(self):
        painting, _ = self.pauses(FROZEN)
        self.assertGreater(painting, STOOD_STILL)

    def testNothingStandsStillDuringACapture(self):
        desktop = self.enterContext(VelmorDesktop(sound=True))
        provider = Provider(desktop)
        desktop.environment.update(provider.environment, ESSENTIA_EXTRACTOR="/bin/false")
        desktop.program = withScript(desktop.root, ANIMATION)
        mpv(desktop, tagged(desktop, "song.flac", title="A", artist="B"))
        desktop.waitForTrack(title="A")
        configure(desktop)
        process = desktop.open()
        desktop.click((250, 137))
        capturing = lambda: "ffmpeg" in desktop.children(process).values()
        waitUntil(capturing, "the capture has begun")
        painting = paintingPause(desktop, forSeconds(5))
        drag = dragPause(desktop, forSeconds(5))
        self.assertTrue(capturing(), "the capture outlasts the measurement")
        print(f"capture: painting {painting * 1000:.0f} ms, drag {drag * 1000:.0f} ms at most")
        self.assertLess(max(painting, drag), SMOOTH)


if __name__ == "__main__":
    unittest.main()
