'use strict';

const { Fourier } = require('./fourier');

const FRAME = 1024;
const HOP = 256;
// Bass drum and bass; the body of snare and chords; hats; everything. In hertz.
const BANDS = [[30, 130], [180, 1200], [6000, 16000], [30, 16000]];
const LONGEST_SECONDS = 4.2;
// The length of the recordings that everything was fitted to.
const USUAL_SECONDS = 15;
// A short recording's long lags rest on few strokes; more than this is not made of them.
const MOST_AMPLIFIED = 3;

/**
 * How sounds begin, in four bands, and how well that repeats after a time: `bands` are the
 * autocorrelations, 1 at lag 0, in steps of `secondsPerLag`. `suddenness` tells how much louder it
 * gets at the strongest beginnings.
 */
function repetitions(samples, sampleRate) {
  const secondsPerLag = HOP / sampleRate;
  const lags = Math.ceil(LONGEST_SECONDS / secondsPerLag);
  const usual = USUAL_SECONDS / secondsPerLag;
  const onsets = onsetBands(samples, sampleRate);
  const strongest = Float64Array.from(onsets[onsets.length - 1]).sort().reverse();
  return {
    secondsPerLag,
    bands: onsets.map((band) => autocorrelation(band, lags, usual)),
    // A slow piece of the usual length has at least so many loud strokes.
    suddenness: strongest[Math.round((20 * strongest.length) / usual)] ?? 0,
  };
}

/** For each band the sum of what gets louder from frame to frame. */
function onsetBands(samples, sampleRate) {
  const fourier = new Fourier(FRAME);
  const level = rootMeanSquare(samples) || 1;
  const frames = Math.floor((samples.length - FRAME) / HOP) + 1;
  const bins = FRAME / 2 + 1;
  const bounds = BANDS.map((band) => band.map((hertz) => Math.round((hertz * FRAME) / sampleRate)));
  const onsets = BANDS.map(() => new Float64Array(frames));
  let before = null;
  const addRises = (magnitudes, frame) => {
    const levels = magnitudes.map((magnitude) => Math.log1p(magnitude / level));
    if (before) {
      bounds.forEach(([first, last], band) => {
        let sum = 0;
        for (let bin = first; bin <= last; bin++) {
          const rise = levels[bin] - before[bin];
          if (rise > 0) sum += rise;
        }
        onsets[band][frame] = sum;
      });
    }
    before = levels;
  };
  const one = new Float64Array(bins);
  const other = new Float64Array(bins);
  for (let frame = 0; frame + 1 < frames; frame += 2) {
    fourier.magnitudesOfTwo(samples, frame * HOP, (frame + 1) * HOP, one, other);
    addRises(one, frame);
    addRises(other, frame + 1);
  }
  return onsets;
}

/** As a recording of the usual length would give it: the longer the lag, the lower. */
function autocorrelation(values, lags, usual) {
  const mean = values.reduce((sum, value) => sum + value, 0) / values.length;
  const centred = values.map((value) => value - mean);
  const result = new Float64Array(lags + 1);
  for (let lag = 0; lag <= lags; lag++) {
    let sum = 0;
    for (let index = lag; index < centred.length; index++) {
      sum += centred[index] * centred[index - lag];
    }
    const overlap = Math.max(1 - lag / centred.length, 1 / usual);
    result[lag] = sum * Math.min((1 - lag / usual) / overlap, MOST_AMPLIFIED);
  }
  const whole = result[0] || 1;
  return result.map((value) => value / whole);
}

function rootMeanSquare(samples) {
  let sum = 0;
  for (const sample of samples) sum += sample * sample;
  return Math.sqrt(sum / samples.length);
}

module.exports = { repetitions };
