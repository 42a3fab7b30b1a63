"""What a poll costs in each situation, against its child processes by themselves."""

import json
import os

from players import mpv, tagged
from session import Session, waitUntil
from standins import PLAYER, idleAs, runScriptAs, writeState
from series import Series, table

PROGRAM = os.path.join(os.path.dirname(os.path.abspath(os.environ["VELMOR"])), "bench",
                       "velmor-poll-benchmark")
MILLISECONDS = 1000


def nothing(_desktop):
    pass


def player(desktop):
    file = tagged(desktop, "track.flac", title="Strobe", artist="deadmau5", album="Album")
    mpv(desktop, file)
    desktop.waitForTrack(title="Strobe")


def spotify(desktop):
    state = writeState(desktop, "spotify", {"status": "Playing", "metadata": {
        "xesam:title": "Opus", "xesam:artist": ["Eric Prydz"], "xesam:album": "Opus"}})
    runScriptAs(desktop, "spotify", PLAYER, "spotify", "Spotify", state)
    desktop.waitForTrack(title="Opus")


def named(name):
    def start(desktop):
        idleAs(desktop, name)
        waitUntil(lambda: desktop.run(["pgrep", "-xi", name]).stdout, f"{name} runs")
    return start


SITUATIONS = [
    ("nothing runs", nothing),
    ("a media player plays", player),
    ("Spotify plays", spotify),
    ("a process named mixxx", named("mixxx")),
    ("a process named rekordbox", named("rekordbox")),
    ("a process named djay", named("djay")),
    ("a process named VirtualDJ", named("virtualdj")),
    ("a process named Serato DJ Pro", named("Serato DJ Pro")),
]


def measure(desktop, what, rounds):
    result = desktop.run([PROGRAM, what, str(rounds)], timeout=3600)
    assert result.returncode == 0, result.stderr
    report = json.loads(result.stdout)
    return report, Series(report["measured"], report["baseline"], MILLISECONDS)


def pollTable(rounds):
    rows = []
    for name, start in SITUATIONS:
        with Session(alone=True) as desktop:
            start(desktop)
            report, series = measure(desktop, "poll", rounds)
        rows.append([name, report["answer"], report["children"], *series.cells()])
    return table(["Situation", "Answer", "Children", "Poll, ms", "Children alone, ms", "Ratio"],
                 rows)


def sessionTable(rounds):
    with Session(alone=True) as desktop:
        player(desktop)
        report, series = measure(desktop, "session", rounds)
    assert report["answer"] == "Strobe" and report["exitStatus"] == 0, report
    faster = f"{1 / series.ratio():.1f} times faster"
    first = f"{report['first'] * MILLISECONDS:.1f}"
    return table(["Reading, ms", "`playerctl metadata`, ms", "Ratio", "", "First reading, ms"],
                 [[*series.cells("{:.2f}"), faster, first]])
