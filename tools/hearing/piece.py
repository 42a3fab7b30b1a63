"""Plays a genre: fifteen seconds of a piece, from anywhere within it, as arrays of samples."""

import pathlib
import random
import sys
from dataclasses import dataclass

import numpy as np

import samples
from genres import GENRES

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "piece-generator"))
import keys  # noqa: E402

RATE = samples.RATE
STEPS = 16
LEVELS = {"X": 1.0, "x": 0.7, "o": 0.3, "?": 0.6}
GAINS = {"kick": 1.0, "snare": 0.8, "clap": 0.6, "hat": 0.3, "open": 0.3, "ride": 0.25, "rim": 0.45,
         "perc": 0.4, "tom": 0.45, "crash": 0.3}
_PROGRESSIONS = {"minor": ((0, 5, 3, 4), (0, 3, 0, 4), (0, 0, 5, 4), (0, 6, 5, 6), (0, 0, 0, 0)),
                 "major": ((0, 3, 4, 0), (0, 5, 3, 4), (0, 3, 0, 4), (0, 4, 5, 3), (0, 0, 3, 3))}


@dataclass
class Piece:
    """A rendered excerpt and the truth about it."""

    genre: str
    bpm: float
    key: keys.Key
    # False where chords and bass are too few to tell a key.
    has_key: bool
    sound: np.ndarray


class Player:
    """Renders one piece; the same arguments give the same piece."""

    def __init__(self, name, seed, half, bpm=None, key=None):
        self.choice = random.Random(f"{name} {seed} {half}")
        self.noise = np.random.default_rng(self.choice.randrange(2**32))
        self.name, self.genre, self.half = name, GENRES[name], half
        drawn = self.choice.uniform(self.genre.slowest, self.genre.fastest)
        # Most electronic music is made at a whole tempo, and then played a little faster or slower.
        if self.genre.looseness <= 6 and self.choice.random() < 0.5:
            drawn = round(drawn)
        self.bpm = bpm or round(drawn, 2)
        drawn_key = self.choice.choice(keys.ALL_KEYS)
        self.key = key or drawn_key
        self.step = 60 / self.bpm / 4
        self.swing = self.choice.uniform(0, self.genre.swing)

    def play(self, seconds=15.0):
        choice = self.choice
        bars = int(np.ceil((seconds + 8) / (STEPS * self.step))) + 1
        self.length = int(bars * STEPS * self.step * RATE) + RATE
        layers = {"drums": self._drums(bars), "bass": self._bass(bars), "chords": self._chords(bars),
                  "lead": self._lead(bars)}
        has_key = bool(np.any(layers["chords"])) or choice.random() < 0.5
        duck = 1 - choice.uniform(0, 0.7) * self.ducking
        mixed = layers["drums"]
        for name, loudest, range_ in (("bass", 0.35, 8), ("chords", 0.22, 10), ("lead", 0.14, 10)):
            level = loudest * 10 ** (choice.uniform(-range_, 3) / 20)
            mixed = mixed + layers[name] * duck * level
        mixed = self._room(mixed)
        if choice.random() < 0.3:
            mixed = mixed + self.noise.normal(0, 10 ** (choice.uniform(-65, -45) / 20), len(mixed))
        start = int(choice.uniform(0, 1) * STEPS * self.step * RATE)
        sound = mixed[start:start + int(seconds * RATE)]
        sound = sound / (np.sqrt(np.mean(sound**2)) + 1e-9) * 10 ** (choice.uniform(-20, -11) / 20)
        sound = np.tanh(sound * choice.uniform(0.7, 1.6))
        return Piece(self.name, self.bpm, self.key, has_key, sound.astype("f4"))

    def _time(self, bar, place):
        late = self.swing * (place % 2)
        loose = self.choice.gauss(0, self.genre.looseness / 2500)
        return max(0.0, (bar * STEPS + place + late) * self.step + loose)

    def _add(self, layer, sound, seconds, level):
        begin = int(seconds * RATE)
        end = min(len(layer), begin + len(sound))
        if begin < end:
            layer[begin:end] += sound[: end - begin] * level

    def _drums(self, bars):
        choice, drums = self.choice, np.zeros(self.length)
        groove = choice.choice(self.genre.grooves)
        sounds = {voice: samples.choose(choice, voice, self.half) for voice in groove}
        # Layers such as a second snare under the clap change from piece to piece.
        dropped = {v for v in groove if v not in ("kick", "snare", "clap") and choice.random() < 0.2}
        gains = {v: GAINS[v] * 10 ** (choice.uniform(-5, 4) / 20) for v in groove}
        self.ducking = np.zeros(self.length)
        shape = np.exp(-np.arange(int(0.25 * RATE)) / (0.09 * RATE))
        is_loop = choice.random() < self.genre.loops
        if is_loop:
            self._loop(drums, bars, choice.uniform(0.5, 1.0))
            if choice.random() < 0.5:
                gains = {v: g * 0.35 for v, g in gains.items()}
        quiet = set()
        if choice.random() < 0.15:
            # A break: some bars without the low drum.
            first = choice.randrange(bars)
            quiet = set(range(first, first + choice.choice((1, 2, 4))))
        for bar in range(bars):
            has_fill = bar % 4 == 3 and choice.random() < 0.3
            for voice, lines in groove.items():
                if voice in dropped or (voice == "kick" and bar in quiet):
                    continue
                for place, mark in enumerate(lines[bar % len(lines)]):
                    level = LEVELS.get(mark, 0)
                    if mark == "?" and choice.random() < 0.5:
                        level = 0
                    if has_fill and place >= 12 and voice in ("snare", "tom", "perc"):
                        level = choice.choice((0, 0.5, 0.8))
                    if not level:
                        continue
                    when = self._time(bar, place)
                    self._add(drums, sounds[voice], when,
                              level * gains[voice] * choice.uniform(0.85, 1.1))
                    if voice == "kick":
                        begin = int(when * RATE)
                        piece = self.ducking[begin:begin + len(shape)]
                        np.maximum(piece, shape[: len(piece)], out=piece)
            if choice.random() < 0.1:
                self._add(drums, samples.choose(choice, "crash", self.half), self._time(bar, 0), 0.25)
        return drums

    def _loop(self, drums, bars, level):
        """A played break, brought to the tempo as a turntable would."""
        sound, beats = samples.loop(self.choice, self.half)
        length = int(beats * 4 * self.step * RATE)
        fitted = np.interp(np.linspace(0, len(sound) - 1, length), np.arange(len(sound)), sound)
        is_cut = self.name == "jungle" and self.choice.random() < 0.5
        slices = beats * 2
        for round_ in range(int(bars * 4 / beats) + 1):
            base = round_ * beats * 4 * self.step
            if not is_cut:
                self._add(drums, fitted, base, level)
                continue
            for place in range(slices):
                source = place if self.choice.random() < 0.75 else self.choice.randrange(slices)
                cut = fitted[source * length // slices:(source + 1) * length // slices]
                self._add(drums, cut, base + place * 2 * self.step, level)

    def _tone(self, pitch, seconds, bright, attack, decay):
        count = int(seconds * RATE)
        hertz = 440 * 2 ** ((pitch - 9) / 12)
        time = np.arange(count) / RATE
        tone = np.zeros(count)
        slope = 3.2 - 2.2 * bright
        for harmonic in range(1, int(min(40, 12000 / hertz)) + 1):
            strength = harmonic**-slope
            if strength < 0.01:
                break
            tone += strength * np.sin(2 * np.pi * hertz * harmonic * time)
        shape = np.minimum(1, time / attack) * np.exp(-decay * time)
        fade = min(count, 400)
        shape[count - fade:] *= np.linspace(1, 0, fade)
        return tone * shape

    def _progression(self):
        if not hasattr(self, "chosen"):
            self.chosen = self.choice.choice(_PROGRESSIONS[self.key.mode])
            self.chord_bars = self.choice.choice((1, 1, 2))
        return self.chosen

    def _chord(self, bar):
        chords = self._progression()
        return chords[bar // self.chord_bars % len(chords)]

    def _bass(self, bars):
        choice, bass = self.choice, np.zeros(self.length)
        line = choice.choice(self.genre.bass)
        bright, decay = choice.uniform(0, 0.9), choice.uniform(0.5, 6)
        wobble = self.name == "dubstep" and choice.random() < 0.6
        kept = {}
        for bar in range(bars):
            pitch = (self.key.pitch(self._chord(bar)) - 4) % 12 + 4 - 36
            places = [place for place, mark in enumerate(line) if mark != "."]
            for index, place in enumerate(places):
                after = places[index + 1] if index + 1 < len(places) else STEPS
                steps = min(after - place, choice.choice((1, 2, 4, 16)))
                note = pitch + (12 if choice.random() < 0.1 else 0)
                if choice.random() < 0.08:
                    note += self.key.pitch(4) - self.key.pitch(0)
                name = (note, steps)
                if name not in kept:
                    kept[name] = self._tone(note, steps * self.step * 0.95, bright, 0.004, decay)
                self._add(bass, kept[name], self._time(bar, place), 1.0)
        if wobble:
            # The filter opens and closes in parts of a beat.
            rate = choice.choice((1, 1.5, 2, 3)) * self.bpm / 60
            bass *= 0.55 - 0.45 * np.cos(2 * np.pi * rate * np.arange(len(bass)) / RATE)
        return bass

    def _chords(self, bars):
        choice, chords = self.choice, np.zeros(self.length)
        style = choice.choice(self.genre.chords)
        if style == "none":
            return chords
        line = {"pad": "x...............", "skank": choice.choice(("....x.......x...",
                                                                   "..x...x...x...x.")),
                "stab": choice.choice(("x..x..x...x..x..", "..x..x....x..x..", "x.....x.........",
                                       "...x..x...x.....")),
                "arpeggio": choice.choice(("xxxxxxxxxxxxxxxx", "x.x.x.x.x.x.x.x.",
                                           "x..x..x..x..x.x."))}[style]
        bright = choice.uniform(0.2, 0.9)
        length = {"pad": STEPS, "skank": 1.2, "stab": 1.6, "arpeggio": 1.2}[style]
        attack = choice.uniform(0.02, 0.4) if style == "pad" else 0.005
        decay = 0.3 if style == "pad" else 5
        sevenths = choice.random() < 0.3
        kept, count = {}, 0
        for bar in range(bars):
            degree = self._chord(bar)
            thirds = (0, 2, 4, 6) if sevenths else (0, 2, 4)
            pitches = [(self.key.pitch(degree + third) - 6) % 12 - 6 for third in thirds]
            for place, mark in enumerate(line):
                if mark == ".":
                    continue
                played = [pitches[count % len(pitches)]] if style == "arpeggio" else pitches
                count += 1
                for pitch in played:
                    if pitch not in kept:
                        kept[pitch] = self._tone(pitch, length * self.step, bright, attack, decay)
                    self._add(chords, kept[pitch], self._time(bar, place), 0.5)
        return chords

    def _lead(self, bars):
        choice, lead = self.choice, np.zeros(self.length)
        if choice.random() < 0.5:
            return lead
        bright = choice.uniform(0.1, 0.9)
        motif = [[(place, choice.randrange(-2, 8), choice.choice((1, 2, 3, 4)))
                  for place in range(0, STEPS, choice.choice((1, 2, 2, 4)))
                  if choice.random() < 0.45] for _ in range(2)]
        kept = {}
        for bar in range(bars):
            for place, degree, steps in motif[bar % 2]:
                name = (self.key.pitch(self._chord(bar) + degree) % 12 + 12, steps)
                if name not in kept:
                    kept[name] = self._tone(name[0], steps * self.step, bright, 0.01, 3)
                self._add(lead, kept[name], self._time(bar, place), 1.0)
        return lead

    def _room(self, sound):
        """Echo of a room, and in dub an echo in time."""
        choice = self.choice
        wet = choice.uniform(0, 0.25)
        count = int(choice.uniform(0.2, 1.5) * RATE)
        tail = self.noise.normal(0, 1, count) * np.exp(-5 * np.arange(count) / count)
        tail /= np.sqrt(np.sum(tail**2))
        size = 1 << int(np.ceil(np.log2(len(sound) + count)))
        echo = np.fft.irfft(np.fft.rfft(sound, size) * np.fft.rfft(tail, size), size)[: len(sound)]
        mixed = sound + wet * echo
        if self.name in ("dub", "dubstep", "downtempo") and choice.random() < 0.6:
            delay = int(choice.choice((2, 3, 4, 6)) * self.step * RATE)
            for repeat in range(1, 4):
                late = delay * repeat
                mixed[late:] += sound[:-late] * choice.uniform(0.1, 0.3) * 0.6**repeat
        return mixed
