"""Musical keys: reading their names, and the scales and chords they hold."""

import re
from dataclasses import dataclass

_SEMITONES = {"C": 0, "D": 2, "E": 4, "F": 5, "G": 7, "A": 9, "B": 11}
_ACCIDENTALS = {"": 0, "#": 1, "b": -1}
_NAMES = ("C", "C#", "D", "Eb", "E", "F", "F#", "G", "Ab", "A", "Bb", "B")
_SCALES = {"major": (0, 2, 4, 5, 7, 9, 11), "minor": (0, 2, 3, 5, 7, 8, 10)}


@dataclass(frozen=True)
class Key:
    """A key: `tonic` in semitones above C, 0 to 11, and `mode`, "major" or "minor"."""

    tonic: int
    mode: str

    @property
    def name(self):
        return f"{_NAMES[self.tonic]} {self.mode}"

    @property
    def camelot(self):
        # Camelot numbers go up in fifths; 8A is A minor and 8B is C major.
        home = 9 if self.mode == "minor" else 0
        fifths = (self.tonic - home) * 7 % 12
        return f"{(7 + fifths) % 12 + 1}{'A' if self.mode == 'minor' else 'B'}"

    def pitch(self, degree):
        """Semitones above the C below the tonic of a degree of the scale, 0 being the tonic.

        Degrees go on beyond the octave in both directions.
        """
        octave, step = divmod(degree, 7)
        return self.tonic + 12 * octave + _SCALES[self.mode][step]

    def triad(self, degree):
        """The three pitches of the chord built on a degree."""
        return [self.pitch(degree + third) for third in (0, 2, 4)]


ALL_KEYS = tuple(Key(tonic, mode) for mode in ("minor", "major") for tonic in range(12))


def parse(text):
    """Reads "8A", "A minor", "Am", "F# major" or "Bb". Raises ValueError for anything else."""
    camelot = re.fullmatch(r"(1[0-2]|[1-9])([AB])", text.strip().upper())
    if camelot:
        return next(key for key in ALL_KEYS if key.camelot == camelot.group())
    named = re.fullmatch(r"([A-Ga-g])([#b]?)\s*(m|min|minor|maj|major|)", text.strip())
    if not named:
        raise ValueError(f"not a key: {text}")
    letter, accidental, mode = named.groups()
    tonic = (_SEMITONES[letter.upper()] + _ACCIDENTALS[accidental]) % 12
    return Key(tonic, "minor" if mode in ("m", "min", "minor") else "major")
