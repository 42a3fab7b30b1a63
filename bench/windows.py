"""Start-up and memory of the window, against programs that do no more than show the page."""

import os
import time

from Xlib import X, display, error

from players import configure
from session import DEADLINE, Session, descendants
from series import Series, table

BUILD = os.path.dirname(os.path.abspath(os.environ["VELMOR"]))
PAGE = os.path.join(BUILD, "share", "velmor", "Web", "index.html")
SIZE = (507, 651)
MINI_BROWSER = "/usr/lib/x86_64-linux-gnu/webkit2gtk-4.1/MiniBrowser"

TOOLBAR = 0.15
"""The share of a window's height at its top that may show something that is not the page."""
COLOURS = 8
"""A window without its page is of one colour; letters alone bring more than these."""
SETTLING = 8
"""Seconds from the page's first sight until memory is read."""

PROGRAMS = {
    "Velmor": [os.path.join(BUILD, "velmor")],
    "bare program": [os.path.join(BUILD, "bench", "velmor-bare-web-view"), PAGE,
                     *map(str, SIZE)],
}
if os.path.exists(MINI_BROWSER):
    PROGRAMS["MiniBrowser"] = [MINI_BROWSER, "--geometry={}x{}".format(*SIZE), "file://" + PAGE]


class Screen:
    """What can be seen from outside."""

    def __init__(self, name):
        self.display = display.Display(name)
        self.root = self.display.screen().root
        self.clientList = self.display.intern_atom("_NET_CLIENT_LIST")

    def windows(self):
        answer = self.root.get_full_property(self.clientList, X.AnyPropertyType)
        return list(answer.value) if answer else []

    def showsPage(self):
        try:
            return any(self._coloursOf(identifier) > COLOURS for identifier in self.windows())
        except error.XError:
            # The window moved, changed or went while it was being read.
            return False

    def _coloursOf(self, identifier):
        window = self.display.create_resource_object("window", identifier)
        size = window.get_geometry()
        place = self.root.translate_coords(window, 0, 0)
        skipped = round(size.height * TOOLBAR)
        image = self.root.get_image(place.x, place.y + skipped, size.width, size.height - skipped,
                                    X.ZPixmap, 0xFFFFFFFF)
        # Every seventh pixel is enough to meet the letters, and quick.
        return len(set(memoryview(image.data).cast("I")[::7]))


def waitQuickly(condition, what):
    """Looks as often as it can without taking a processor away from what it waits for."""
    start = time.monotonic()
    while not condition():
        if time.monotonic() > start + DEADLINE:
            raise AssertionError(f"in {DEADLINE} s not seen: {what}")
        time.sleep(0.005)


def proportionalSetSize(process):
    """Bytes of the process and all that it started, shared pages divided among their users."""
    total = 0
    for pid in [process.pid, *descendants(process.pid)]:
        try:
            with open(f"/proc/{pid}/smaps_rollup", encoding="ascii") as rollup:
                total += next(int(line.split()[1]) for line in rollup if line.startswith("Pss:"))
        except OSError:
            continue  # It has ended meanwhile.
    return total * 1024


def startOnce(desktop, screen, arguments):
    """Seconds until the page is seen, and bytes once it has settled."""
    start = time.monotonic()
    process = desktop.start(arguments)
    waitQuickly(screen.showsPage, arguments[0] + " shows its page")
    taken = time.monotonic() - start
    time.sleep(SETTLING)
    size = proportionalSetSize(process)
    desktop.stop(process)
    waitQuickly(lambda: not screen.windows(), arguments[0] + " has closed its window")
    return taken, size


def measure(rounds):
    times = {name: [] for name in PROGRAMS}
    sizes = {name: [] for name in PROGRAMS}
    with Session() as desktop:
        configure(desktop)
        screen = Screen(desktop.environment["DISPLAY"])
        for round in range(rounds + 1):
            for name, arguments in PROGRAMS.items():
                taken, size = startOnce(desktop, screen, arguments)
                if round > 0:  # The first one reads everything from the disk.
                    times[name].append(taken)
                    sizes[name].append(size)
        screen.display.close()
    return times, sizes


def windowTables(rounds):
    times, sizes = measure(rounds)
    return [_against(times, "ms", 1000), _against(sizes, "MB", 1e-6)]


def _against(measured, unit, scale):
    rows = [[f"the {name}" if name == "bare program" else name,
             *Series(measured["Velmor"], baseline, scale).cells("{:.0f}")]
            for name, baseline in measured.items() if name != "Velmor"]
    return table(["Against", f"Velmor, {unit}", f"It, {unit}", "Ratio"], rows)
