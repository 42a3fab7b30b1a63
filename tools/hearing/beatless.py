"""Sound in which nobody could tap a foot: noise, speech, drones, silence, and two pieces at once."""

import random
import subprocess

import numpy as np

import samples
from genres import GENRES
from piece import Player

RATE = samples.RATE
_SENTENCES = (
    "Good evening, and thank you for coming. Before we begin I should like to say a few words "
    "about the history of this house, which is longer than most of us would believe.",
    "The ferry leaves at a quarter past nine. Passengers without a ticket may buy one on board, "
    "but dogs, bicycles and pianos have to be announced a day ahead.",
    "Take two onions, chop them finely, and let them soften in butter. Meanwhile peel the "
    "potatoes; when the onions are golden, add stock, salt, and a little nutmeg.",
    "It was raining when he came home. Nobody had shut the window, so the letters lay wet upon "
    "the floor, and the cat, who knew no better, sat on the only one that mattered.",
)
KINDS = ("noise", "speech", "drone", "silence", "fade", "two tempi")


def make(kind, seed, half, seconds=15.0):
    """The samples, mono."""
    choice = random.Random(f"{kind} {seed} {half}")
    noise = np.random.default_rng(choice.randrange(2**32))
    makers = {"noise": _noise, "speech": _speech, "drone": _drone, "silence": _silence,
              "fade": _fade, "two tempi": _two_tempi}
    sound = makers[kind](choice, noise, half, int(seconds * RATE))
    if kind == "silence":
        return sound.astype("f4")
    level = 10 ** (choice.uniform(-24, -12) / 20)
    return np.clip(sound / (np.std(sound) + 1e-9) * level, -1, 1).astype("f4")


def _coloured(noise, count, slope):
    """Noise that falls by `slope` decibels an octave."""
    spectrum = np.fft.rfft(noise.normal(0, 1, count))
    hertz = np.maximum(np.fft.rfftfreq(count, 1 / RATE), 20)
    return np.fft.irfft(spectrum * hertz ** (-slope / 6.02), count)


def _noise(choice, noise, half, count):
    sound = _coloured(noise, count, choice.choice((0, 3, 6, 4.5)))
    sound /= np.std(sound)
    kind = choice.randrange(4)
    if kind == 1:
        # Wind, traffic, a crowd: the level wanders.
        wander = _coloured(noise, count, 9)
        sound *= np.exp(0.7 * wander / np.std(wander))
    if kind == 2:
        # Rain on a roof, crackling: clicks at no regular time.
        clicks = np.zeros(count)
        places = noise.integers(0, count, int(choice.uniform(20, 400)))
        clicks[places] = noise.exponential(1, len(places))
        burst = noise.normal(0, 1, 600) * np.exp(-np.arange(600) / 120)
        sound = np.convolve(clicks, burst)[:count] + 0.02 * sound
    return sound


def _speech(choice, noise, half, count):
    text = choice.sample(_SENTENCES, 3)
    voice = choice.choice(("en", "en-us", "en+f3", "en+m3", "en-gb-scotland", "de", "fr", "es"))
    command = ["espeak-ng", "-v", voice, "-s", str(choice.randrange(120, 220)),
               "-p", str(choice.randrange(20, 80)), "--stdout", " ".join(text)]
    speech = subprocess.run(command, check=True, capture_output=True).stdout
    raw = subprocess.run(["ffmpeg", "-v", "error", "-i", "-", "-f", "f32le", "-ac", "1",
                          "-ar", str(RATE), "-"], check=True, capture_output=True, input=speech)
    sound = np.frombuffer(raw.stdout, dtype="<f4").copy()
    sound = np.tile(sound, count // max(1, len(sound)) + 2)
    start = choice.randrange(len(sound) - count)
    sound = sound[start:start + count]
    if choice.random() < 0.5:
        room = noise.normal(0, 1, RATE // 2) * np.exp(-np.arange(RATE // 2) / 6000)
        size = 1 << (count + RATE).bit_length()
        echo = np.fft.irfft(np.fft.rfft(sound, size) * np.fft.rfft(room, size), size)[:count]
        sound = sound + 0.2 * echo / np.std(echo) * np.std(sound)
    return sound


def _drone(choice, noise, half, count):
    time = np.arange(count) / RATE
    base = 55 * 2 ** (choice.uniform(0, 24) / 12)
    sound = np.zeros(count)
    for ratio in choice.sample((1, 1.5, 2, 2.52, 3, 4, 1.189, 2.997, 5), choice.randrange(2, 6)):
        for voice in range(choice.choice((1, 2, 3))):
            hertz = base * ratio * 2 ** (choice.uniform(-8, 8) / 1200)
            vibrato = choice.uniform(0, 0.004) * np.sin(2 * np.pi * choice.uniform(0.1, 6) * time)
            phase = 2 * np.pi * hertz * (time + vibrato / 10)
            slow = 1 + choice.uniform(0, 0.6) * np.sin(2 * np.pi * choice.uniform(0.02, 0.25) * time
                                                       + choice.uniform(0, 6))
            for harmonic in range(1, choice.randrange(2, 12)):
                sound += slow * np.sin(harmonic * phase) / (ratio * harmonic**1.5)
    hiss = _coloured(noise, count, 3)
    return sound / np.std(sound) + choice.choice((0, 0.01, 0.1)) * hiss / np.std(hiss)


def _silence(choice, noise, half, count):
    """Nothing, or what a sound card hears of itself."""
    return choice.choice((0, 10 ** (choice.uniform(-90, -70) / 20))) * noise.normal(0, 1, count)


def _two_tempi(choice, noise, half, count):
    """Two pieces that were not brought to one tempo, both as loud from start to end."""
    return sum(_two_pieces(choice, half, count))


def _fade(choice, noise, half, count):
    """One piece goes, another one comes, at another tempo."""
    first, second = _two_pieces(choice, half, count)
    middle, length = choice.uniform(0.4, 0.6), choice.uniform(0.1, 0.6)
    share = np.clip((np.arange(count) / count - middle) / length + 0.5, 0, 1)
    return first * (1 - share) + second * share


def _two_pieces(choice, half, count):
    names = sorted(GENRES)
    while True:
        first, second = (Player(choice.choice(names), choice.randrange(10**6), half)
                         for _ in range(2))
        ratio = first.bpm / second.bpm
        related = (1 / 2, 2 / 3, 3 / 4, 1, 4 / 3, 3 / 2, 2)
        if all(abs(ratio / value - 1) > 0.05 for value in related):
            break
    mixed = [player.play(count / RATE).sound for player in (first, second)]
    return [sound[:count] / np.std(sound) for sound in mixed]
