"""How long the window stands still, measured from outside the process."""

import time

from Xlib import X
from Xlib.ext import xtest

from velmor_window import BACKGROUND

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


def longestPause(sample, act, while_):
    """The longest time, in seconds, in which what `sample` gives did not change, though `act` was
    called all the while."""
    longest, last, since = 0, None, time.monotonic()
    while while_():
        act()
        now, value = time.monotonic(), sample()
        if value != last:
            last, since = value, now
        longest = max(longest, now - since)
    return longest


def paintingPause(desktop, while_):
    return longestPause(lambda: desktop.pixel(*PROBE), lambda: time.sleep(0.003), while_)


def dragPause(desktop, while_):
    """Moves the window round in small circles by the page's background."""
    x, y = desktop.onScreen(BACKGROUND)
    window = desktop.client()
    step = 0

    def move():
        nonlocal step
        step += 1
        # Back and forth by two pixels each time: every sample has somewhere new to be.
        way = abs(step % 200 - 100) * 2
        xtest.fake_input(desktop.x, X.MotionNotify, x=x + way, y=y + way // 2)
        desktop.x.sync()
        time.sleep(0.008)

    def place():
        where = window.translate_coords(desktop.rootWindow, 0, 0)
        return where.x, where.y

    desktop.moveTo(x, y)
    desktop.button(1, True)
    before = place()
    deadline = time.monotonic() + 20
    # The page says first that this is its background.
    while place() == before and time.monotonic() < deadline:
        move()
    pause = longestPause(place, move, while_)
    desktop.button(1, False)
    return pause
