"""Runs the extractor and other programs that tell a tempo, and counts what they cost."""

import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
from dataclasses import dataclass

HERE = pathlib.Path(__file__).resolve().parent
NAME = "essentia_streaming_extractor_music"
# The one that is installed, since Essentia is installed with it.
EXTRACTOR = pathlib.Path(shutil.which(NAME) or NAME).resolve()
sys.path.insert(0, str(HERE.parent / "piece-generator"))
import keys  # noqa: E402

TOLERANCE = 0.04
NO_MUSIC = 1


@dataclass
class Run:
    """One child: what it printed, and processor time in seconds and memory in MiB."""

    status: int
    output: str
    seconds: float
    memory: float


@dataclass
class Heard:
    """What the extractor said of one file; 0 and None when it found no beat."""

    name: str
    truth: dict
    bpm: float
    key: keys.Key | None
    run: Run


def run(command):
    with tempfile.TemporaryFile() as output:
        child = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=output, stderr=output)
        _, status, usage = os.wait4(child.pid, 0)
        child.returncode = os.waitstatus_to_exitcode(status)
        output.seek(0)
        words = output.read().decode(errors="replace")
    return Run(child.returncode, words, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024)


def listen(folder, name, truth):
    with tempfile.TemporaryDirectory() as scratch:
        report = pathlib.Path(scratch) / "report.json"
        ended = run([EXTRACTOR, folder / name, report])
        if ended.status == NO_MUSIC:
            return Heard(name, truth, 0, None, ended)
        if ended.status != 0:
            sys.exit(f"{name}: {ended.output}")
        found = json.loads(report.read_text())
    key = found["tonal"]["key_edma"]
    return Heard(name, truth, found["rhythm"]["bpm"], keys.parse(f"{key['key']} {key['scale']}"),
                 ended)


def at_known_level(pairs):
    """Tempi as the extractor moves them when it knows something: (tempo, variables) in, tempi out."""
    program = ("const { atKnownLevel, knownFrom } = require(process.argv[1]);"
               "const pairs = JSON.parse(require('fs').readFileSync(0));"
               "console.log(JSON.stringify(pairs.map(([bpm, v]) => atKnownLevel(bpm, knownFrom(v)))))")
    known = EXTRACTOR.parent / "lib/known.js"
    ended = subprocess.run(["node", "-e", program, known], input=json.dumps(pairs), text=True,
                           capture_output=True, check=True)
    return json.loads(ended.stdout)


def level(measured, true):
    """"right", "half", "double" or "wrong"."""
    for name, ratio in (("right", 1), ("half", 0.5), ("double", 2)):
        if abs(measured / (ratio * true) - 1) <= TOLERANCE:
            return name
    return "wrong"


def essentia(estimator):
    return lambda path: run(["node", HERE / "estimate.js", estimator, path, EXTRACTOR.parent])


def bpm_tools(path):
    return run(["sh", "-c", 'sox "$1" -t raw -r 44100 -e float -c 1 - | bpm', "sh", path])


OTHERS = {
    "Essentia RhythmExtractor2013 multifeature": essentia("multifeature"),
    "Essentia RhythmExtractor2013 degara": essentia("degara"),
    "Essentia PercivalBpmEstimator": essentia("percival"),
    "aubio tempo": lambda path: run(["aubio", "tempo", "-i", path]),
    "bpm-tools": bpm_tools,
}


def tempo_of(ended):
    number = re.search(r"\d+(\.\d+)?", ended.output)
    return float(number.group()) if number and ended.status == 0 else 0.0
