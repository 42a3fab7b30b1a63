'use strict';

const { attempt } = require('./essentia');

const FRAME_SECONDS = 2;
const HOP_SECONDS = 1;
const QUIETEST = 1e-4;

/**
 * How evenly loud the sound is, 0 to 1: the mean loudness against the loudest moment,
 * squeezed as the native extractor squeezes it.
 */
function measureLoudness(library, signal, sampleRate) {
  const loudness = attempt('LevelExtractor', () =>
    library.vectorToArray(
      library.LevelExtractor(signal, FRAME_SECONDS * sampleRate, HOP_SECONDS * sampleRate).loudness,
    ),
  );
  const loudest = loudness.reduce((most, value) => Math.max(most, value), QUIETEST);
  const sum = loudness.reduce((total, value) => total + Math.max(value / loudest, QUIETEST), 0);
  const level = 10 * Math.log10(sum / loudness.length);
  return 0.5 + 0.5 * Math.tanh(-1 + (2 * (level + 5)) / 3);
}

module.exports = { measureLoudness };
