'use strict';

const { repetitions } = require('./onsetBands');
const { rankedTempi } = require('./tempoScore');

// On the material of tools/hearing music gave 0.20 and more, noise and speech 0.06 at most.
const LEAST_REPETITION = 0.1;
// How suddenly sounds begin: made music gave 110 and more, records 32 and more. Drones give 20 at
// most, but for those in noise, which do not repeat.
const LEAST_SUDDENNESS = 30;
// A half of a recording has a tempo of its own where it repeats as well as this.
const SURE_REPETITION = 0.35;
const SHORTEST_HALF_SECONDS = 6;
// Parts and multiples of a beat at which one and the same rhythm may be heard.
const RELATED = [1 / 4, 1 / 3, 3 / 8, 2 / 5, 1 / 2, 3 / 5, 5 / 8, 2 / 3, 3 / 4, 4 / 5, 1, 5 / 4,
  4 / 3, 3 / 2, 8 / 5, 5 / 3, 2, 5 / 2, 8 / 3, 3, 4];
const NEAR = 0.03;
const BEATS = [1, 2, 4];

/** Why a recording that repeats so has no steady beat at this tempo; "" when it has one. */
function unsteadiness(repeated, bpm) {
  if (repetitionAt(repeated, bpm) < LEAST_REPETITION) return 'nothing repeats';
  return repeated.suddenness < LEAST_SUDDENNESS ? 'nothing begins suddenly' : '';
}

/** Whether one half of a recording goes at another tempo than the other, as where two tracks fade. */
function changesTempo(samples, sampleRate) {
  const half = Math.floor(samples.length / 2);
  if (half < SHORTEST_HALF_SECONDS * sampleRate) return false;
  const [first, second] = [samples.subarray(0, half), samples.subarray(half)].map((part) => {
    const repeated = repetitions(part, sampleRate);
    const [best] = rankedTempi(repeated);
    return best && repetitionAt(repeated, best.bpm) >= SURE_REPETITION ? best.bpm : null;
  });
  if (!first || !second) return false;
  return RELATED.every((ratio) => Math.abs(second / (first * ratio) - 1) > NEAR);
}

/** How well all bands together repeat after one, two and four beats. */
function repetitionAt({ bands, secondsPerLag }, bpm) {
  const beat = 60 / bpm / secondsPerLag;
  const all = bands[bands.length - 1];
  return average(BEATS.map((beats) => highest(all, beats * beat, 0.02, 2)));
}

function highest(band, lag, share, least) {
  const reach = Math.max(least, share * lag);
  let best = -1;
  for (let index = Math.ceil(lag - reach); index <= lag + reach; index++) {
    best = Math.max(best, band[index] ?? -1);
  }
  return best;
}

function average(values) {
  return values.reduce((sum, value) => sum + value, 0) / values.length;
}

module.exports = { changesTempo, unsteadiness };
