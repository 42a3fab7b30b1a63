"""What Velmor costs the programs beside it: processor time and wake-ups."""

import glob
import os
import sys
import time
from statistics import median

from players import configure
from polls import SITUATIONS, measure
from series import table
from session import Session, descendants, waitUntil
from windows import PROGRAMS, Screen, waitQuickly

SIZES = (150, 500, 2000)
"""How many processes run, as far as not more run without us."""
COSTLY = ("nothing runs", "a media player plays", "a process named mixxx")
IDLE = """
import os, signal, sys
for _ in range(int(sys.argv[1])):
    if os.fork() == 0:
        break
signal.pause()
"""
FILLING = 300
SETTLING = 10
WATCHED = 30
"""Seconds from the page's first sight until it is watched, and for how long."""


def processes():
    return len(glob.glob("/proc/[0-9]*"))


def fill(desktop, number):
    """Has about this many processes run."""
    missing = number - processes()
    if missing > 0:
        desktop.start([sys.executable, "-c", IDLE, str(missing)])
        waitUntil(lambda: processes() >= number - 5, f"{number} processes", FILLING)


def pollCostTable(rounds):
    starts = dict(SITUATIONS)
    rows = []
    for size in SIZES:
        for name in COSTLY:
            with Session(alone=True) as desktop:
                fill(desktop, size)
                starts[name](desktop)
                _, series = measure(desktop, "cpu", rounds)
                rows.append([name, processes(), *series.cells()])
    return table(["Situation", "Processes", "A poll, ms", "Asking each time, ms", "Ratio"], rows)


class Account:
    """What a program and its children have used by now: seconds, and how often they woke up."""

    def __init__(self, process):
        self.time = time.monotonic()
        self.processor, self.wakeUps = 0.0, 0
        for pid in [process.pid, *descendants(process.pid)]:
            self._add(pid)

    def _add(self, pid):
        for task in glob.glob(f"/proc/{pid}/task/*"):
            self.processor += int(_read(task + "/schedstat").split()[0]) / 1e9
            status = _read(task + "/status").split("\n")
            self.wakeUps += next(int(line.split()[1]) for line in status
                                 if line.startswith("voluntary_ctxt_switches"))
        # The time of children that have ended.
        fields = _read(f"/proc/{pid}/stat").rpartition(")")[2].split()
        self.processor += sum(map(int, fields[13:15])) / os.sysconf("SC_CLK_TCK")


def _read(path):
    with open(path, encoding="utf-8", errors="replace") as file:
        return file.read()


def watch(process, seconds):
    """Share of a core in percent, and wake-ups a second."""
    before = Account(process)
    time.sleep(seconds)
    after = Account(process)
    passed = after.time - before.time
    return (100 * (after.processor - before.processor) / passed,
            (after.wakeUps - before.wakeUps) / passed)


def _minimise(desktop, screen):
    def widths():
        return [screen.display.create_resource_object("window", window).get_geometry().width
                for window in screen.windows()]

    desktop.run(["xdotool", "windowminimize", str(screen.windows()[0])])
    waitUntil(lambda: 82 in widths(), "the square")


def restTable(rounds):
    rows = []
    for name, automatic, square in (("window, Auto off", False, False),
                                    ("square, Auto off", False, True),
                                    ("window, Auto on, nothing plays", True, False)):
        with Session(alone=True) as desktop:
            configure(desktop, autoSuggestTracks=automatic, tinkerApiKey="none")
            screen = Screen(desktop.environment["DISPLAY"])
            process = desktop.start(PROGRAMS["Velmor"])
            waitQuickly(screen.showsPage, "the page")
            if square:
                _minimise(desktop, screen)
            time.sleep(SETTLING)
            shares, wakeUps = zip(*(watch(process, WATCHED) for _ in range(rounds)))
            screen.display.close()
        rows.append([name, f"{median(shares):.2f} %", f"{median(wakeUps):.1f}"])
    return table(["At rest", "Of a core", "Wake-ups a second"], rows)
