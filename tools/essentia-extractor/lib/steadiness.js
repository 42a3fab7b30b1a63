'use strict';

// On the material of tools/hearing music gave 0.20 and more, noise and speech 0.06 at most.
const LEAST_REPETITION = 0.1;
// The same for how suddenly sounds begin: music 110 and more, drones 60 at most.
const LEAST_SUDDENNESS = 80;
// A second tempo counts where it repeats as well as this, and better than the first by so much:
// made music gave 0.92 times at most. In records a bass line that goes its own way gives twice as
// much, but their beat repeats well in all; where two pieces share the sound it cannot.
const RIVAL_REPETITION = 0.2;
const RIVAL_RATIO = 1.2;
const SHARED_REPETITION = 0.5;
// Parts and multiples of a beat that one and the same rhythm repeats at.
const RELATED = [1 / 4, 1 / 3, 3 / 8, 2 / 5, 1 / 2, 3 / 5, 2 / 3, 3 / 4, 4 / 5, 1, 5 / 4, 4 / 3,
  3 / 2, 5 / 3, 2, 5 / 2, 8 / 3, 3, 4];
const NEAR = 0.03;
const SLOWEST = 58;
const FASTEST = 205;
const BEATS = [1, 2, 4];

/** Why a recording has no steady beat at this tempo; "" when it has one. */
function unsteadiness(repetitions, bpm) {
  const { bands, secondsPerLag, suddenness } = repetitions;
  const all = bands[bands.length - 1];
  const beat = 60 / bpm / secondsPerLag;
  const repetition = average(BEATS.map((beats) => highest(all, beats * beat, 0.02, 2)));
  if (repetition < LEAST_REPETITION) return 'nothing repeats';
  if (suddenness < LEAST_SUDDENNESS && offTheGrid(all, beat) > repetition) {
    return 'nothing begins suddenly';
  }
  const isShared = repetition < SHARED_REPETITION && hasRival(repetitions, bpm);
  return isShared ? 'two tempi at once' : '';
}

/** The best repetition after a time that is no number of quarter beats. */
function offTheGrid(band, beat) {
  let best = 0;
  for (let lag = Math.ceil(beat / 2); lag < band.length; lag++) {
    const quarters = (4 * lag) / beat;
    if (Math.abs(quarters - Math.round(quarters)) > 0.25) best = Math.max(best, band[lag]);
  }
  return best;
}

/** Whether a tempo that is no part or multiple of the first rules a band, as in a blend. */
function hasRival({ bands, secondsPerLag }, bpm) {
  const repetitionAt = (band, tempo) =>
    average(BEATS.map((beats) => band[Math.round((beats * 60) / tempo / secondsPerLag)] ?? 0));
  return bands.some((band) => {
    let own = 0.05;
    let rival = 0;
    for (let tempo = SLOWEST; tempo < FASTEST; tempo += 0.5) {
      const repetition = repetitionAt(band, tempo);
      if (Math.abs(tempo / bpm - 1) < NEAR) own = Math.max(own, repetition);
      const isRelated = RELATED.some((ratio) => Math.abs(tempo / (bpm * ratio) - 1) < NEAR + 0.005);
      if (!isRelated) rival = Math.max(rival, repetition);
    }
    return rival > RIVAL_REPETITION && rival > RIVAL_RATIO * own;
  });
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

module.exports = { unsteadiness };
