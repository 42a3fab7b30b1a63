'use strict';

const { priorKnots, weights } = require('./weights.json');

const SLOWEST = 58;
const FASTEST = 205;
const MIDDLE = 110;
const GRID_RATIO = 1.005;
const MOST_PEAKS = 8;
// Nearer than this, two tempi are the same.
const SAME = 0.03;
// How much the repetition after so many beats says that a tempo fits at all.
const COMB = [[0.5, 0.5], [1, 1], [2, 1], [4, 1]];
// After how many beats the score looks.
const BEATS = [1 / 4, 1 / 3, 1 / 2, 2 / 3, 1, 3 / 2, 2, 3, 4];

/**
 * The tempi that a recording may have, the likeliest first, each with its `score` and how much of
 * all belief it has, `share`. What repeats names the candidates, half and double of each included;
 * a score that was fitted to music of many genres chooses the level which people tap.
 */
function rankedTempi(repetitions) {
  const ranked = candidates(repetitions).map((bpm) => ({ bpm, score: score(repetitions, bpm) }));
  ranked.sort((one, other) => other.score - one.score);
  const beliefs = ranked.map((tempo) => Math.exp(tempo.score - ranked[0].score));
  const whole = beliefs.reduce((sum, belief) => sum + belief, 0);
  return ranked.map((tempo, index) => ({ ...tempo, share: beliefs[index] / whole }));
}

function candidates(repetitions) {
  const found = [];
  for (const peak of peaks(repetitions)) {
    for (const ratio of [0.5, 1, 2]) {
      const bpm = peak * ratio;
      const isNew = found.every((other) => Math.abs(bpm / other - 1) > SAME);
      if (bpm >= SLOWEST && bpm <= FASTEST && isNew) found.push(bpm);
    }
  }
  return found;
}

/** Where the sum of what repeats is highest, the highest first. */
function peaks({ bands, secondsPerLag }) {
  const tempi = [];
  for (let bpm = SLOWEST; bpm <= FASTEST; bpm *= GRID_RATIO) tempi.push(bpm);
  const sums = tempi.map((bpm) => {
    let sum = 0;
    for (const [beats, weight] of COMB) {
      const lag = (beats * 60) / bpm / secondsPerLag;
      for (const band of bands) sum += weight * between(band, lag);
    }
    return sum;
  });
  return tempi
    .map((bpm, index) => ({ bpm, index }))
    .filter(({ index }) => index > 0 && index + 1 < tempi.length &&
      sums[index] >= sums[index - 1] && sums[index] > sums[index + 1])
    .sort((one, other) => sums[other.index] - sums[one.index])
    .slice(0, MOST_PEAKS)
    .map(({ bpm }) => bpm);
}

function score(repetitions, bpm) {
  return features(repetitions, bpm).reduce((sum, value, index) => sum + weights[index] * value, 0);
}

/**
 * What the score weighs: first where the tempo lies among the knots, then for each band how
 * well the onsets repeat after each number of beats, and the same again the more the further the
 * tempo lies from the middle: in slow music the short notes say more, in fast music the long ones.
 */
function features({ bands, secondsPerLag }, bpm) {
  const beat = 60 / bpm / secondsPerLag;
  const repeated = bands.flatMap((band) => BEATS.map((beats) => highestNear(band, beats * beat)));
  const fromMiddle = Math.log(bpm / MIDDLE);
  return [
    ...placeAmongKnots(bpm),
    ...repeated,
    ...repeated.map((value) => value * fromMiddle),
  ];
}

/** A line between knots on the logarithm of the tempo, as one weight for each knot. */
function placeAmongKnots(bpm) {
  const place = new Array(priorKnots.length).fill(0);
  const last = priorKnots.length - 1;
  const bounded = Math.min(Math.max(bpm, priorKnots[0]), priorKnots[last]);
  let right = 1;
  while (right < last && bounded >= priorKnots[right]) right++;
  const left = Math.log(priorKnots[right - 1]);
  place[right] = (Math.log(bounded) - left) / (Math.log(priorKnots[right]) - left);
  place[right - 1] = 1 - place[right];
  return place;
}

/** The highest value within 2 %, two steps at least. */
function highestNear(band, lag) {
  const reach = Math.max(2, 0.02 * lag);
  let highest = -1;
  const last = Math.min(Math.floor(lag + reach), band.length - 1);
  for (let index = Math.max(1, Math.ceil(lag - reach)); index <= last; index++) {
    highest = Math.max(highest, band[index]);
  }
  return highest;
}

function between(band, lag) {
  const low = Math.floor(lag);
  if (low + 1 >= band.length) return 0;
  return band[low] + (lag - low) * (band[low + 1] - band[low]);
}

module.exports = { candidates, features, rankedTempi };
