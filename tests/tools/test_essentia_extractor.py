#!/usr/bin/python3
"""Runs the installed extractor on generated pieces and on files that hold no music."""

import json
import os
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
GENERATOR = ROOT / "tools/piece-generator/piece-generator"
sys.path.insert(0, str(GENERATOR.parent))
import mixdown  # noqa: E402
from arrangement import Event  # noqa: E402
from sounds import Instruments  # noqa: E402

EXTRACTOR = shutil.which("essentia_streaming_extractor_music")

NO_MUSIC, INPUT, OUTPUT = 1, 2, 3
RATE = 44100


@unittest.skipUnless(EXTRACTOR, "the extractor is not installed: run scripts/install-essentia")
class ExtractorTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.shared = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.shared.cleanup)
        cls.piece = pathlib.Path(cls.shared.name) / "piece.wav"
        subprocess.run([GENERATOR, cls.piece, "--bpm", "124", "--key", "8A", "--seconds", "15"],
                       check=True)

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.sound = self.folder / "sound.wav"
        self.report = self.folder / "report.json"

    def convert(self, *arguments, source=()):
        subprocess.run(["ffmpeg", "-v", "error", "-y", *(source or ("-i", self.piece)), *arguments,
                        self.sound], check=True, stdin=subprocess.DEVNULL)

    def extract(self, sound=None, report=None, **known):
        return subprocess.run([EXTRACTOR, sound or self.sound, report or self.report],
                              capture_output=True, text=True, timeout=300,
                              env={**os.environ, **known})

    def measured(self, sound=None, **known):
        run = self.extract(sound, **known)
        self.assertEqual((run.returncode, run.stdout + run.stderr), (0, ""))
        return json.loads(self.report.read_text())

    def expect_piece(self):
        found = self.measured()
        self.assertAlmostEqual(found["rhythm"]["bpm"], 124, delta=0.1)
        tonal = found["tonal"]["key_edma"]
        self.assertEqual((tonal["key"], tonal["scale"]), ("A", "minor"))

    def expect_failure(self, status, pattern, sound=None, report=None):
        """One sentence, the status, and neither a report nor a piece of one."""
        before = set(self.folder.iterdir())
        run = self.extract(sound, report)
        self.assertEqual(run.returncode, status, run.stderr)
        self.assertRegex(run.stderr, f"\\A{pattern}\n\\Z")
        self.assertEqual(run.stdout, "")
        self.assertEqual(set(self.folder.iterdir()), before)

    def test_tells_even_from_uneven_loudness(self):
        found = self.measured(self.piece)
        self.assertAlmostEqual(found["metadata"]["audio_properties"]["length"], 15, delta=0.01)
        self.assertGreater(found["lowlevel"]["average_loudness"], 0.9)
        self.convert("-af", "volume='if(lt(t,11),0.05,1)':eval=frame", "-c:a", "pcm_s16le")
        self.assertLess(self.measured()["lowlevel"]["average_loudness"], 0.5)

    def test_reads_what_recorders_write(self):
        plain = self.piece.read_bytes()
        data = plain[plain.index(b"data") + 8:]
        extensible = struct.pack("<HHIIHHHHIH", 0xFFFE, 2, RATE, RATE * 4, 4, 16, 22, 16, 3, 1)
        extensible += bytes.fromhex("000000001000800000aa00389b71")

        def chunk(name, content, size=None):
            return name + struct.pack("<I", len(content) if size is None else size) + content

        header, odd_note = chunk(b"fmt ", plain[20:36]), chunk(b"LIST", b"INFOx") + b"\0"
        for name, chunks in {
                "extensible": (chunk(b"fmt ", extensible), chunk(b"data", data)),
                "a chunk of odd size": (header, odd_note, chunk(b"data", data)),
                "a size that was never filled in": (header, chunk(b"data", data, 0xFFFFFFFF)),
                "half a frame at the end": (header, chunk(b"data", data[:-3], len(data)))}.items():
            with self.subTest(name):
                self.sound.write_bytes(b"RIFF\xff\xff\xff\xffWAVE" + b"".join(chunks))
                self.expect_piece()
        with self.subTest("mono with ffmpeg's own notes"):
            self.convert("-ac", "1", "-metadata", "title=Odd")
            self.expect_piece()

    def test_refuses_what_is_no_music_of_the_right_format(self):
        offset = ("-f", "lavfi", "-t", "15", "-i", "aevalsrc=0.3|0.3")
        silent = "no audible signal"
        for status, reason, arguments, source in (
                (NO_MUSIC, silent, ("-af", "volume=0"), ()),
                (NO_MUSIC, silent, ("-ar", str(RATE)), offset),
                (NO_MUSIC, silent, ("-af", "atrim=end=0"), ()),
                (NO_MUSIC, silent, ("-af", "atrim=end=0.5"), ()),
                (NO_MUSIC, silent, ("-af", "volume=0:enable='gt(t,0.5)'"), ()),
                (INPUT, "sampled at 48000 Hz, not at 44100 Hz", ("-ar", "48000"), ()),
                (INPUT, "not 16-bit PCM sound", ("-c:a", "pcm_s24le"), ()),
                (INPUT, "not 16-bit PCM sound", ("-c:a", "pcm_f32le"), ()),
                (INPUT, "of 4 channels, not mono or stereo", ("-ac", "4"), ()),
                (INPUT, "longer than 60 seconds", ("-af", "apad=whole_dur=61"), ())):
            with self.subTest(arguments):
                self.convert(*arguments, source=source)
                self.expect_failure(status, f"(cannot measure .*: )?{reason}")

    def drum(self, bpm, **lines):
        """Fifteen seconds of a bar of drums and bass, each a line of sixteenths."""
        play = Instruments(RATE, seed=1)
        sounds = {"kick": (play.kick(), 0.9), "clap": (play.clap(), 0.6),
                  "hat": (play.hat(is_open=False), 0.2), "bass": (play.bass(-27, 0.6), 0.4)}
        lines.setdefault("bass", "x...............")
        events = [Event(bar * 4 + step / 4, *sounds[voice])
                  for bar in range(int(15 * bpm / 240) + 1)
                  for voice, line in lines.items()
                  for step, mark in enumerate(line) if mark == "x"]
        left, right = mixdown.level(*mixdown.mix(events, bpm, 15, RATE), -14)
        mixdown.write(str(self.sound), left, right, RATE)

    def test_hears_fast_and_slow_music_at_the_level_that_people_tap(self):
        eighths, back, half = "x.x.x.x.x.x.x.x.", "....x.......x...", "........x......."
        for name, bpm, kick, clap, hat in (
                ("drum and bass", 174, "x.........x.....", back, eighths),
                ("jungle", 165, "x.x.......xx....", "....x..x.x..x..x", eighths),
                ("dubstep", 140, "x.....x.........", half, "x..x..x.x..x..x."),
                ("house", 124, "x...x...x...x...", back, "..x...x...x...x."),
                ("hip hop", 90, "x.......x.x.....", back, eighths)):
            with self.subTest(name):
                self.drum(bpm, kick=kick, clap=clap, hat=hat)
                rhythm = self.measured()["rhythm"]
                self.assertAlmostEqual(rhythm["bpm"], bpm, delta=0.1)

    def test_what_is_known_moves_an_octave_and_nothing_else(self):
        for known, bpm in (({"VELMOR_KNOWN_BPM": "62.5"}, 62), ({"VELMOR_KNOWN_BPM": "245"}, 248),
                           ({"VELMOR_KNOWN_BPM": "140"}, 124), ({"VELMOR_KNOWN_BPM": "fast"}, 124),
                           ({"VELMOR_KNOWN_BPM": "-62"}, 124),
                           ({"VELMOR_KNOWN_GENRE": "Dub Reggae"}, 62),
                           ({"VELMOR_KNOWN_GENRE": "Reggaeton; $(rm)"}, 124),
                           ({"VELMOR_KNOWN_GENRE": "Dub Techno"}, 124),
                           ({"VELMOR_KNOWN_GENRE": "Dub", "VELMOR_KNOWN_BPM": "124"}, 124),
                           ({"VELMOR_KNOWN_KEY": "1B"}, 124)):
            with self.subTest(known):
                found = self.measured(self.piece, **known)
                self.assertAlmostEqual(found["rhythm"]["bpm"], bpm, delta=0.1)
                self.assertAlmostEqual(found["rhythm"]["bpm_heard"], 124, delta=0.1)
                self.assertEqual(found["tonal"]["key_edma"]["key"], "A")

    def test_leaves_a_key_that_it_cannot_hear_as_it_is_known(self):
        self.drum(124, kick="x...x...x...x...", hat="..x...x...x...x.", bass="")
        guess = self.measured()["tonal"]["key_edma"]
        self.assertLess(guess["strength"], 0.7)
        told = self.measured(VELMOR_KNOWN_KEY="3B")["tonal"]["key_edma"]
        self.assertEqual((told["key"], told["scale"]), ("C#", "major"))
        self.assertEqual(told["key_heard"], f"{guess['key']} {guess['scale']}")

    def test_tells_sound_without_a_steady_beat(self):
        chord = "+".join(f"0.1*sin({pitch}*2*PI*t)*(1+0.3*sin({slow}*t))"
                         for pitch, slow in ((110, 0.9), (164.8, 0.7), (220.7, 1.3)))
        for name, source in (
                ("white noise", ("-f", "lavfi", "-t", "15", "-i", "anoisesrc=a=0.3:seed=1")),
                ("brown noise", ("-f", "lavfi", "-t", "15", "-i", "anoisesrc=c=brown:a=0.5:seed=2")),
                ("a drone", ("-f", "lavfi", "-t", "15", "-i", f"aevalsrc='{chord}'"))):
            with self.subTest(name):
                self.convert("-ar", str(RATE), "-c:a", "pcm_s16le", source=source)
                self.expect_failure(NO_MUSIC, "no steady beat found: nothing .*")
        with self.subTest("a fade from one tempo to another"):
            self.drum(103, kick="x.......x.x.....", clap="....x.......x...", hat="x.x.x.x.x.x.x.x.")
            other = self.sound.rename(self.folder / "other.wav")
            self.convert("-i", other, "-filter_complex", "[0]atrim=0:9[a];[1]atrim=0:9[b];"
                         "[a][b]acrossfade=d=3")
            self.expect_failure(NO_MUSIC, "no steady beat found: two tempi")

    def test_names_its_version(self):
        run = subprocess.run([EXTRACTOR, "--version"], capture_output=True, text=True, timeout=300)
        self.assertRegex(run.stdout, r"\Avelmor-essentia-extractor [\d.]+, Essentia \S+\n\Z")

    def test_refuses_what_is_no_wav_file(self):
        plain = self.piece.read_bytes()
        for content in (b"\x07" * 5000, plain[:30], plain[:36], plain[:12] + plain[36:]):
            with self.subTest(len(content)):
                self.sound.write_bytes(content)
                self.expect_failure(INPUT, "cannot measure .*: (not )?a WAV file.*")
        self.expect_failure(INPUT, "cannot read .*: no such file or directory",
                            sound=self.folder / "missing.wav")

    def test_leaves_nothing_where_it_cannot_write(self):
        link = self.folder / "link.json"
        link.symlink_to("/dev/null")
        for report, reason in ((self.folder / "none" / "r.json", "no such file or directory"),
                               (link, "not a regular file")):
            with self.subTest(report=report):
                self.expect_failure(OUTPUT, f"cannot write {re.escape(str(report))}: {reason}",
                                    sound=self.piece, report=report)


if __name__ == "__main__":
    unittest.main()
