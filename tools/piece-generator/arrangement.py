"""Composes a piece: which sound begins at which beat, how loud and where in the stereo field."""

import random
from dataclasses import dataclass

BEATS_A_BAR = 4

# Degrees of the scale, a chord a bar. Each begins at home and returns by way of the fifth.
_PROGRESSIONS = {
    "minor": ((0, 5, 3, 4), (0, 3, 0, 4), (0, 0, 5, 4), (0, 6, 5, 4)),
    "major": ((0, 3, 4, 0), (0, 5, 3, 4), (0, 3, 0, 4), (0, 4, 5, 3)),
}
# Where within a beat the bass plays.
_BASS_PATTERNS = ((0.5,), (0.25, 0.5, 0.75), (0.5, 0.75))


@dataclass(frozen=True)
class Event:
    """A sound that begins at `beat`; `pan` goes from -1, left, to 1, right."""

    beat: float
    sound: list
    gain: float
    pan: float = 0.0


class Arrangement:
    """A piece in one key at one tempo; the same seed gives the same piece."""

    def __init__(self, instruments, key, bpm, seed):
        self._instruments = instruments
        self._key = key
        self._beat_seconds = 60.0 / bpm
        choice = random.Random(seed)
        self._progression = choice.choice(_PROGRESSIONS[key.mode])
        self._bass_pattern = choice.choice(_BASS_PATTERNS)
        self._has_sixteenths = choice.random() < 0.5
        self._melody = self._compose_melody(choice)

    def events(self, bars):
        for bar in range(bars):
            first_beat = bar * BEATS_A_BAR
            chord = self._progression[bar % len(self._progression)]
            yield from self._drums(first_beat)
            yield from self._bass(first_beat, chord)
            yield from self._chord(first_beat, chord)
            yield from self._tune(first_beat, chord, bar)

    def _drums(self, first_beat):
        play = self._instruments
        for beat in range(first_beat, first_beat + BEATS_A_BAR):
            yield Event(beat, play.kick(), 0.9)
            if beat % 2:
                yield Event(beat, play.clap(), 0.35)
            yield Event(beat + 0.5, play.hat(is_open=True), 0.22, pan=0.3)
            if self._has_sixteenths:
                yield Event(beat + 0.25, play.hat(is_open=False), 0.12, pan=-0.3)
                yield Event(beat + 0.75, play.hat(is_open=False), 0.12, pan=-0.3)

    def _bass(self, first_beat, chord):
        # The lowest octave lies between E1 and D#2, where a club's bass plays.
        pitch = (self._key.pitch(chord) - 4) % 12 + 4 - 36
        seconds = 0.24 * self._beat_seconds
        sound = self._instruments.bass(pitch, seconds)
        for beat in range(first_beat, first_beat + BEATS_A_BAR):
            for offset in self._bass_pattern:
                yield Event(beat + offset, sound, 0.5)

    def _chord(self, first_beat, chord):
        seconds = (BEATS_A_BAR - 0.05) * self._beat_seconds
        for index, pitch in enumerate(self._key.triad(chord)):
            # Folded into the octave from F#3 so that chords follow one another closely.
            sound = self._instruments.pad((pitch - 6) % 12 - 6, seconds)
            yield Event(first_beat, sound, 0.16, pan=(index - 1) * 0.4)

    def _tune(self, first_beat, chord, bar):
        for offset, degree in self._melody[bar % len(self._melody)]:
            pitch = self._key.pitch(chord + degree)
            pitch = pitch % 12 + 12
            sound = self._instruments.lead(pitch, 0.45 * self._beat_seconds)
            yield Event(first_beat + offset, sound, 0.2, pan=-0.15)

    @staticmethod
    def _compose_melody(choice):
        """Two bars: notes of the chord on the beat, a passing note off it now and then."""
        bars = []
        for _ in range(2):
            notes = [(beat, choice.choice((0, 2, 4))) for beat in range(BEATS_A_BAR)]
            notes += [(beat + 0.5, choice.randrange(7)) for beat in range(BEATS_A_BAR)
                      if choice.random() < 0.4]
            bars.append(sorted(notes))
        return bars
