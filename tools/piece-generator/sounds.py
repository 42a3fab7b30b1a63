"""The instruments: each gives one note or stroke as a list of samples around -1 to 1."""

import math
import random
from functools import lru_cache

_TABLE_SIZE = 2048


def frequency(pitch):
    """Hertz of a pitch in semitones above C4, tuned to A4 = 440 Hz."""
    return 440.0 * 2.0 ** ((pitch - 9) / 12)


@lru_cache(maxsize=None)
def _waveform(harmonics, slope):
    """One cycle whose nth harmonic has the strength n to the power of -slope."""
    turn = 2 * math.pi / _TABLE_SIZE
    strengths = [(n, n**-slope) for n in range(1, harmonics + 1)]
    cycle = [sum(s * math.sin(turn * n * i) for n, s in strengths) for i in range(_TABLE_SIZE)]
    peak = max(cycle)
    return [value / peak for value in cycle]


def _oscillator(table, hertz, count, rate):
    # The half entry keeps rounding down from moving the phase.
    step = hertz * _TABLE_SIZE / rate
    mask = _TABLE_SIZE - 1
    return [table[int(i * step + 0.5) & mask] for i in range(count)]


def _shape(samples, rate, attack, decay):
    """Fades in over `attack` seconds, dies away at `decay` a second, and ends without a click."""
    rise = max(1, int(attack * rate))
    fall = min(len(samples), int(0.01 * rate))
    factor = math.exp(-decay / rate)
    level = 1.0
    shaped = []
    for index, value in enumerate(samples):
        level *= factor
        shaped.append(value * level * min(1.0, index / rise))
    for index in range(1, fall + 1):
        shaped[-index] *= (index - 1) / fall
    return shaped


class Instruments:
    """Plays notes at a sample rate. Every sound is made once and then kept."""

    def __init__(self, rate, seed):
        self._rate = rate
        self._noise = random.Random(seed)
        self._kept = {}

    def _keep(self, name, make):
        if name not in self._kept:
            self._kept[name] = make()
        return self._kept[name]

    def kick(self):
        return self._keep("kick", self._make_kick)

    def clap(self):
        return self._keep("clap", lambda: self._burst(0.18, 22.0, smoothing=0.45))

    def hat(self, is_open):
        length, decay = (0.16, 18.0) if is_open else (0.05, 70.0)
        return self._keep(("hat", is_open), lambda: self._burst(length, decay, smoothing=0.0))

    def bass(self, pitch, seconds):
        return self._note("bass", pitch, seconds, harmonics=8, slope=1.3, attack=0.004, decay=3.0)

    def pad(self, pitch, seconds):
        return self._note("pad", pitch, seconds, harmonics=12, slope=1.2, attack=0.03, decay=0.6)

    def lead(self, pitch, seconds):
        return self._note("lead", pitch, seconds, harmonics=6, slope=1.6, attack=0.005, decay=5.0)

    def _note(self, name, pitch, seconds, harmonics, slope, attack, decay):
        def make():
            table = _waveform(harmonics, slope)
            count = int(seconds * self._rate)
            tone = _oscillator(table, frequency(pitch), count, self._rate)
            return _shape(tone, self._rate, attack, decay)

        return self._keep((name, pitch, round(seconds, 6)), make)

    def _make_kick(self):
        phase = 0.0
        body = []
        for index in range(int(0.28 * self._rate)):
            # The drum's pitch falls from a click to 48 Hz, below the bass line's notes.
            hertz = 48.0 + 240.0 * math.exp(-index / self._rate * 45.0)
            phase += 2 * math.pi * hertz / self._rate
            body.append(math.sin(phase))
        return _shape(body, self._rate, 0.0005, 9.0)

    def _burst(self, seconds, decay, smoothing):
        previous = 0.0
        burst = []
        for _ in range(int(seconds * self._rate)):
            noise = self._noise.uniform(-1, 1)
            # What changes from sample to sample is bright; smoothing gives it some body.
            burst.append((noise - previous) * (1 - smoothing) + noise * smoothing)
            previous = noise
        return _shape(burst, self._rate, 0.0005, decay)
