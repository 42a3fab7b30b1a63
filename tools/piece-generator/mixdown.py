"""Mixes the events of a piece into a stereo WAV file."""

import array
import math
import operator
import sys
import wave


def mix(events, bpm, seconds, rate):
    """Adds the sounds up into two lists of samples, left and right."""
    count = int(seconds * rate)
    left, right = [0.0] * count, [0.0] * count
    for event in events:
        start = round(event.beat * 60.0 / bpm * rate)
        end = min(count, start + len(event.sound))
        if start >= count:
            continue
        _add(left, start, end, event.sound, event.gain * min(1.0, 1.0 - event.pan))
        _add(right, start, end, event.sound, event.gain * min(1.0, 1.0 + event.pan))
    return left, right


def _add(channel, start, end, sound, gain):
    scaled = [value * gain for value in sound[: end - start]]
    channel[start:end] = map(operator.add, channel[start:end], scaled)


def level(left, right, decibels):
    """Brings both channels to a mean level in dBFS, peaks rounded off below full scale."""
    power = sum(map(operator.mul, left, left)) + sum(map(operator.mul, right, right))
    mean = math.sqrt(power / (2 * len(left)))
    gain = 10.0 ** (decibels / 20.0) / mean
    return ([math.tanh(value * gain) for value in channel] for channel in (left, right))


def write(path, left, right, rate):
    samples = array.array("h", bytes(4 * len(left)))
    samples[0::2] = array.array("h", [round(value * 32767) for value in left])
    samples[1::2] = array.array("h", [round(value * 32767) for value in right])
    if sys.byteorder == "big":
        samples.byteswap()
    with wave.open(path, "wb") as file:
        file.setnchannels(2)
        file.setsampwidth(2)
        file.setframerate(rate)
        file.writeframes(samples.tobytes())
