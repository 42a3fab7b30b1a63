"""Listening: real sound through a real server, ffmpeg and extractor into a suggestion."""

import concurrent.futures
import glob
import json
import os
import shutil
import signal
import sys
import unittest
import uuid

from model_provider import ModelProvider
from players import converted, mpv
from session import Session, builtVelmor, waitUntil

GENERATOR = os.path.join(os.path.dirname(__file__), "..", "..", "tools", "piece-generator")
sys.path.insert(0, GENERATOR)
import keys  # noqa: E402

EXTRACTOR = "essentia_streaming_extractor_music"
DETECTED = "Detected through macOS media session"
ANALYZED = DETECTED + " and analyzed with Essentia."
UNAVAILABLE = DETECTED + "; Essentia audio analysis was unavailable for this sample."
PATIENCE = 240
"""A capture takes 15 seconds, and several runs share the machine."""
PROMPT = 5
"""Far less than what is left of a capture when the program is told to end."""

# Extractors as the environment can name them; $REPORT is where a run keeps its measurement.
KEEPING = EXTRACTOR + ' "$1" "$2" >"$REPORT.log" 2>&1 || exit; cp "$2" "$REPORT"'
STUBBORN = """trap '' TERM INT; sh -c 'while :; do sleep 0.2; done' "$2" &
touch "$REPORT"; while :; do sleep 0.2; done"""


def setUpModule():
    if not shutil.which(EXTRACTOR):
        raise AssertionError(EXTRACTOR + " is not installed: run scripts/install-essentia")
    # A shell that runs the tests in the background has set it to be ignored, for Velmor too.
    signal.signal(signal.SIGINT, signal.default_int_handler)


class Stage:
    """Velmor's surroundings for some runs, each with a folder and a report of its own."""

    def __init__(self, desktop):
        self.desktop = desktop
        self.provider = desktop.enter(ModelProvider())

    def extractor(self, name, lines):
        path = os.path.join(self.desktop.root, name)
        with open(path, "w", encoding="utf-8") as script:
            script.write(f"#!/bin/sh\n{lines}\n")
        os.chmod(path, 0o755)
        return path

    def environment(self, name, **changes):
        folder = os.path.join(self.desktop.root, "of " + name)
        os.mkdir(folder)
        return {**self.provider.environment, "TMPDIR": folder,
                "REPORT": os.path.join(self.desktop.root, name + ".json"), **changes}

    def suggest(self, environment):
        return self.desktop.velmor("suggest", "--json", environment=environment, timeout=PATIENCE)

    def piece(self, bpm, key, seconds):
        """A generated piece under a name that says nothing."""
        path = os.path.join(self.desktop.root, "generated.wav")
        made = self.desktop.run([os.path.join(GENERATOR, "piece-generator"), path, "--bpm",
                                 str(bpm), "--key", key, "--seconds", str(seconds)],
                                timeout=PATIENCE)
        assert made.returncode == 0, made.stderr
        return self.filtered(path, "anull")

    def filtered(self, piece, sound):
        return converted(self.desktop, uuid.uuid4().hex + ".flac", "-i", piece, "-af", sound,
                         artist="Nobody")

    def addOutput(self, name):
        self.desktop.run(["pactl", "load-module", "module-null-sink", "sink_name=" + name],
                         check=True)

    def play(self, path, output, announced=False):
        mpv(self.desktop, path, "--ao=pulse", "--audio-device=pulse/" + output,
            announced=announced)
        waitUntil(lambda: output in self.playingOutputs(), "sound reaches " + output)

    def playingOutputs(self):
        lines = self.desktop.run(["pactl", "list", "short", "sinks"]).stdout.splitlines()
        return [line.split("\t")[1] for line in lines if line.endswith("RUNNING")]

    def announce(self, path):
        """Has a player name the file to Velmor, and play it where sound goes by default."""
        self.play(path, "speakers", announced=True)
        self.desktop.waitForTrack(title=os.path.basename(path))


def leftIn(environment):
    """What of a run is still there: files, and processes that were told of them."""
    folder = environment["TMPDIR"]
    processes = []
    for path in glob.glob("/proc/[0-9]*/cmdline"):
        try:
            with open(path, "rb") as line:
                if os.fsencode(folder) in line.read():
                    processes.append(path)
        except OSError:
            continue
    return os.listdir(folder) + processes


def recordedIn(environment):
    """Whether a capture has begun to write."""
    return any(map(os.path.getsize,
                   glob.glob(os.path.join(environment["TMPDIR"], "velmor-audio-*", "sample.wav"))))


class ListeningTest(unittest.TestCase):
    def testMeasuresWhatPlays(self):
        with Session(display=False, sound=True) as desktop:
            stage = Stage(desktop)
            # Three semitones up are another key as well as another tempo.
            piece = stage.piece(112, "8A", 64 * 60 / 112)
            for output in ("stretched", "higher", "muted"):
                stage.addOutput(output)
            stage.play(stage.filtered(piece, "atempo=1.05"), "stretched")
            stage.play(stage.filtered(piece, f"asetrate=44100*{2 ** (3 / 12)},aresample=44100"),
                       "higher")
            stage.play(piece, "muted")
            desktop.run(["pactl", "set-sink-mute", "muted", "1"], check=True)
            stage.announce(piece)
            heard = {  # device, tempo, key
                "as it is": ("no such device", 112, "8A"),
                "stretched": ("stretched.monitor", 112 * 1.05, "8A"),
                "higher": (" higher.monitor\n", 112 * 2 ** (3 / 12), "5A"),
            }
            devices = {**{name: device for name, (device, *_) in heard.items()},
                       "muted": "muted.monitor"}
            keeping = stage.extractor("keeping", KEEPING)
            environments = {name: stage.environment(name, VELMOR_AUDIO_DEVICE=device,
                                                    ESSENTIA_EXTRACTOR=keeping)
                            for name, device in devices.items()}
            with concurrent.futures.ThreadPoolExecutor(len(environments)) as pool:
                runs = dict(zip(environments, pool.map(stage.suggest, environments.values())))
            prompts = [request["body"]["messages"][0]["content"][0]["text"]
                       for request in stage.provider.requests]
            song = f"- Song: {os.path.basename(piece)}\n"
            self.assertEqual([song in prompt for prompt in prompts], [True] * len(runs))
            for name, ran in runs.items():
                with self.subTest(name):
                    self.assertEqual((ran.returncode, ran.stderr), (0, ""))
                    notice = ANALYZED if name in heard else UNAVAILABLE
                    self.assertEqual(json.loads(ran.stdout)["notice"], notice)
                    self.assertEqual(leftIn(environments[name]), [])
            for name, (_, tempo, key) in heard.items():
                with self.subTest(name):
                    with open(environments[name]["REPORT"], encoding="utf-8") as file:
                        report = json.load(file)
                    tonal = report["tonal"]["key_edma"]
                    measured = keys.parse(f"{tonal['key']} {tonal['scale']}").camelot
                    told = f"- BPM: {report['rhythm']['bpm']:.2f}\n- Key: {measured}\n"
                    self.assertEqual(sum(told in prompt for prompt in prompts), 1, told)
                    self.assertAlmostEqual(report["rhythm"]["bpm"], tempo, delta=tempo / 100)
                    self.assertEqual(measured, key)
            self.assertEqual(sum("- BPM: 0.00\n" in prompt for prompt in prompts), 1)
            with open(environments["muted"]["REPORT"] + ".log", encoding="utf-8") as log:
                self.assertIn("no audible signal", log.read())

    def testEndsAtOnceWhenToldTo(self):
        with Session(display=False, sound=True) as desktop:
            stage = Stage(desktop)
            stage.announce(stage.piece(120, "8A", 2))
            stubborn = stage.extractor("stubborn", STUBBORN)

            def begun(name, command, **options):
                environment = stage.environment(name, ESSENTIA_EXTRACTOR=stubborn)
                program = desktop.start([builtVelmor(), command], environment, **options)
                return program, environment

            def endsAt(condition, run, number):
                program, environment = run
                waitUntil(lambda: condition(environment), "Velmor listens", PATIENCE)
                self.assertIsNone(program.poll())
                program.send_signal(number)
                program.wait(timeout=PROMPT)
                if program.returncode < 0:
                    # Nobody was left to tidy up: the next run does it.
                    desktop.velmor("now", environment=environment)
                waitUntil(lambda: leftIn(environment) == [], lambda: leftIn(environment), PROMPT)
                return program.returncode

            reading, writing = os.pipe()
            os.write(writing, b'{"id":"1","method":"SuggestTracks","args":[]}\n')
            extracting = begun("extracting", "suggest")
            bridge = begun("bridge", "bridge", stdin=reading)
            for number, status in ((signal.SIGTERM, 1), (signal.SIGINT, 1), (signal.SIGHUP, 1),
                                   (signal.SIGKILL, -signal.SIGKILL)):
                run = begun(str(number), "suggest")
                self.assertEqual(endsAt(recordedIn, run, number), status)
            self.assertEqual(endsAt(recordedIn, bridge, signal.SIGTERM), 0)
            self.assertEqual(endsAt(lambda environment: os.path.exists(environment["REPORT"]),
                                    extracting, signal.SIGTERM), 1)
            os.close(reading)
            os.close(writing)
            self.assertEqual(stage.provider.requests, [], "nothing is asked in vain")


if __name__ == "__main__":
    unittest.main()
