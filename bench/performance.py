"""Measures everything and prints docs/performance.md: performance.py POLLS STARTS"""

import datetime
import os
import platform
import shutil
import subprocess
import sys
import tempfile

from costs import pollCostTable, restTable
from polls import pollTable, sessionTable
from windows import windowTables

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))


def output(*command):
    return subprocess.run(command, capture_output=True, text=True, cwd=ROOT).stdout.strip()


def pageTable():
    """What the page costs, where its test browser is installed."""
    if not shutil.which("node") or not os.path.isdir(
            os.path.join(ROOT, "tests", "page", "node_modules")):
        return "Not measured: the page's test tools are not installed."
    return output("node", "bench/page/page.js") or "Not measured: the browser did not start."


def crateTable():
    """The DJ's own music; the files that it is measured with are made and removed."""
    with tempfile.TemporaryDirectory() as folder:
        return output("build/release/bench/velmor-crate-benchmark", folder) + "\n"


def machine():
    with open("/proc/cpuinfo", encoding="utf-8") as file:
        processor = next((line.split(":")[1].strip() for line in file
                          if line.startswith("model name")), platform.machine())
    memory = os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES") / 1e9
    return (f"{os.cpu_count()} × {processor}, {memory:.0f} GB, Linux {platform.release()}, "
            f"WebKitGTK {output('pkg-config', '--modversion', 'webkit2gtk-4.1')}")


def load():
    return "{:.1f}".format(os.getloadavg()[0])


def main(polls, starts):
    loadBefore = load()
    pollResult = pollTable(polls)
    sessionResult = sessionTable(polls)
    pollCosts = pollCostTable(max(2, polls // 3))
    restCosts = restTable(3)
    startResult, memoryResult = windowTables(starts)
    crate = crateTable()
    page = pageTable()
    loadAfter = load()
    busy = max(float(loadBefore), float(loadAfter)) > os.cpu_count() / 2
    noise = ("\n**The machine was busy with other work meanwhile.** The times are too long and "
             "scattered; only the ratios say something, and little.\n" if busy else "")
    print(f"""# Performance

Written by `scripts/bench`; every number is set against a baseline measured in the same run.

- Machine: {machine()}
- Date: {datetime.date.today()}, commit {output("git", "rev-parse", "--short", "HEAD")}
- Load average: {loadBefore} before, {loadAfter} after
- Each measurement and its baseline take turns. Given are the median and, in brackets, the quartiles;
  the ratio is the median of the rounds' own ratios. A first round warms up and is left out.
{noise}
## A poll

One detection in the real backend, {polls} rounds, against the children that it asks for, started by
themselves with the same arguments. What is known is not asked again, so that a poll is faster than they
are. Spotify is stood in for by a script, whose own time to answer counts for the poll.

{pollResult}
## What a poll costs

Processor time of one detection and all children that it starts, against a detection that starts each child.
Time that a processor is used depends less on other work than time that passes. Aim: at most 5 ms and 10 µs
for each process that runs; 8 ms and 10 µs while something plays.

{pollCosts}
What remains, without a player, is mostly one look at the names of all processes: the kernel opens, reads and
closes one file for each, and tells programs without privileges of changes in no other way.

## At rest

Velmor and all its children, the page included, from the kernel's own account, some seconds after the page was seen.
A wake-up is a thread that had waited and runs again. Aim with Auto off: 0.2 % of a core, 12 wake-ups a second.
The power that a battery gives cannot be measured on this machine; these two stand for it.

{restCosts}
## Reading the media session

{polls} readings while mpv plays, against a `playerctl metadata` process. The connection to the session bus
is kept between readings; the first one makes it. Aim: five times faster.

{sessionResult}
## Starting

From the start of the process until the page is seen in its window on the screen, {starts} rounds, against a
program that opens a window with the same page and nothing else, drawn on the processor
by its settings alone (Velmor loads no graphics drivers either), and against WebKitGTK's MiniBrowser as
it comes. Without Velmor under it the page says that it misses it. Aim: at most 1.05 of the bare program.

{startResult}
## Memory

Proportional set size of the program and all processes that it started, some seconds after the page
was seen; same runs. Aim: at most 1.05 of the bare program.

{memoryResult}
## The DJ's own music

A made-up Mixxx library and short tagged files, in processor time; the next tracks are those of made-up nights
(docs/crate.md).

{crate}
## The page

In Chromium, with the machine's processor doing the drawing.

{page}""")


main(*map(int, sys.argv[1:]))
