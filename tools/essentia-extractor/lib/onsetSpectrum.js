'use strict';

const HOP = 128;
// A beat's own frequency and its multiples: the eighths and sixteenths sharpen the peak.
const HARMONICS = [1, 2, 3, 4, 5, 6, 7, 8];
const SPAN = 0.03;
const GRID_STEPS = 120;
const REFINEMENTS = 8;

/** How strongly sounds begin, moment by moment, seen as a spectrum: a steady beat is a peak. */
class OnsetSpectrum {
  constructor(samples, sampleRate) {
    this.frameRate = sampleRate / HOP;
    this.strengths = onsetStrengths(hopPowers(samples));
  }

  /** The tempo of the highest peak within 3 % of an estimate. */
  tempoNear(estimate) {
    let step = (2 * SPAN * estimate) / GRID_STEPS;
    let best = { bpm: estimate, power: this.powerAt(estimate) };
    for (let index = 0; index <= GRID_STEPS; index++) {
      const bpm = estimate * (1 - SPAN) + index * step;
      const power = this.powerAt(bpm);
      if (power > best.power) best = { bpm, power };
    }
    for (let round = 0; round < REFINEMENTS; round++) {
      step /= 2;
      for (const bpm of [best.bpm - step, best.bpm + step]) {
        const power = this.powerAt(bpm);
        if (power > best.power) best = { bpm, power };
      }
    }
    return best.bpm;
  }

  /** The power at a tempo and its multiples, in arbitrary units. */
  powerAt(bpm) {
    return HARMONICS.reduce((sum, harmonic) => sum + this.powerAtHertz((harmonic * bpm) / 60), 0);
  }

  powerAtHertz(hertz) {
    const turn = (2 * Math.PI * hertz) / this.frameRate;
    // Each angle's cosine and sine follow from those before: many times as fast as asking for
    // them, and exact to ten digits over the longest recording.
    const stepCosine = Math.cos(turn);
    const stepSine = Math.sin(turn);
    let cosine = 1;
    let sine = 0;
    let real = 0;
    let imaginary = 0;
    for (const strength of this.strengths) {
      real += strength * cosine;
      imaginary += strength * sine;
      const next = cosine * stepCosine - sine * stepSine;
      sine = sine * stepCosine + cosine * stepSine;
      cosine = next;
    }
    return real * real + imaginary * imaginary;
  }
}

/** Rises of the level from hop to hop, around their mean and under a Hann window. */
function onsetStrengths(powers) {
  const mean = average(powers);
  // Compressed so that a soft stroke counts, but what is far below the music does not.
  const levels = powers.map((power) => Math.log1p((100 * power) / mean));
  const rises = levels.map((level, index) => (index ? Math.max(0, level - levels[index - 1]) : 0));
  const meanRise = average(rises);
  const turn = (2 * Math.PI) / rises.length;
  return rises.map((rise, index) => (rise - meanRise) * (0.5 - 0.5 * Math.cos(turn * index)));
}

function hopPowers(samples) {
  const powers = new Float64Array(Math.floor(samples.length / HOP));
  for (let hop = 0; hop < powers.length; hop++) {
    let sum = 0;
    for (let index = hop * HOP; index < (hop + 1) * HOP; index++) sum += samples[index] ** 2;
    powers[hop] = sum / HOP;
  }
  return powers;
}

function average(values) {
  return values.reduce((sum, value) => sum + value, 0) / values.length;
}

module.exports = { OnsetSpectrum };
