"""The window goes on while Velmor looks for the track or listens, measured from outside."""

import signal
import time
import unittest

from Xlib import X
from Xlib.ext import xtest
from velmor_window import BACKGROUND, VelmorDesktop, hungPlayer, withScript

from model_provider import ModelProvider
from players import configure, playSong
from session import waitUntil

SMOOTH = 0.4
"""Far more than a frame, for machines under load; far less than a poll of a player that hangs."""
STOPPED = 1.0
PROBE = (500, 640)
"""Where the page below changes its colour with every frame that it draws."""
ANIMATION = """
const probe = document.createElement('i');
probe.style.cssText = 'position:fixed;right:0;bottom:0;width:16px;height:24px;z-index:9';
document.body.append(probe);
let shade = 0;
function draw() {
  shade = (shade + 5) % 200;
  probe.style.setProperty('background', `rgb(${shade}, 0, 0)`);
  requestAnimationFrame(draw);
}
draw();
"""


def longestPause(sample, act, seconds):
    """The longest time, in seconds, in which what `sample` gives did not change, though `act` was
    called all the while."""
    began = since = time.monotonic()
    longest, last = 0, None
    while time.monotonic() < began + seconds:
        act()
        now, value = time.monotonic(), sample()
        longest = max(longest, now - since)
        if value != last:
            last, since = value, now
    return longest


def paintingPause(desktop, seconds, act=lambda: time.sleep(0.003)):
    return longestPause(lambda: desktop.pixel(*PROBE), act, seconds)


def dragPause(desktop, seconds):
    """Moves the window back and forth by the page's background."""
    x, y = desktop.onScreen(BACKGROUND)
    window, step = desktop.client(), 0

    def move():
        nonlocal step
        step += 1
        # By two pixels each time: every sample has somewhere new to be.
        way = abs(step % 200 - 100) * 2
        desktop.moveTo(x + way, y + way // 2)
        time.sleep(0.008)

    def place():
        where = window.translate_coords(desktop.rootWindow, 0, 0)
        return where.x, where.y

    def isDragged():
        move()
        return place() != before

    desktop.moveTo(x, y)
    desktop.button(1, True)
    before = place()
    # The page says first that this is its background.
    waitUntil(isDragged, "the window is dragged")
    pause = longestPause(place, move, seconds)
    desktop.button(1, False)
    return pause


class StallTest(unittest.TestCase):
    def pauses(self, desktop, what, seconds):
        painting, drag = paintingPause(desktop, seconds), dragPause(desktop, seconds)
        print(f"{what}: painting {painting * 1000:.0f} ms, drag {drag * 1000:.0f} ms at most")
        return max(painting, drag)

    def testNothingStandsStillDuringAPoll(self):
        desktop = self.enterContext(VelmorDesktop(alone=True))
        desktop.program = withScript(desktop.root, ANIMATION)
        hungPlayer(desktop)
        configure(desktop, autoSuggestTracks=True)
        process = desktop.open()
        self.assertLess(self.pauses(desktop, "poll", 8), SMOOTH)

        def stop():
            """The measurement finds a window that stands still."""
            process.send_signal(signal.SIGSTOP)
            time.sleep(STOPPED)
            process.send_signal(signal.SIGCONT)

        self.assertGreater(paintingPause(desktop, STOPPED, stop), STOPPED)

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
        longest = self.pauses(desktop, "capture", 5)
        self.assertTrue(desktop.listens(process), "the capture outlasts the measurement")
        self.assertLess(longest, SMOOTH)


if __name__ == "__main__":
    unittest.main()
