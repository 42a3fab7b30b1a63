'use strict';

const { Failure, STATUS } = require('./failure');

const BLOCK_SECONDS = 0.5;
const SILENCE_DECIBELS = -60;
const LEAST_SECONDS = 4;

/**
 * Refuses a recording that holds no music: silence has a tempo and a key for Essentia too,
 * and so have a few notes.
 */
function requireAudible({ samples, sampleRate }) {
  const blockLength = BLOCK_SECONDS * sampleRate;
  let audible = 0;
  for (let start = 0; start + blockLength <= samples.length; start += blockLength) {
    const block = samples.subarray(start, start + blockLength);
    if (decibels(block) > SILENCE_DECIBELS) audible += BLOCK_SECONDS;
  }
  if (audible < LEAST_SECONDS) throw new Failure('no audible signal', STATUS.noMusic);
}

/** The level around the mean: a constant offset, as some sound cards deliver, is no sound. */
function decibels(block) {
  let sum = 0;
  let squares = 0;
  for (const sample of block) {
    sum += sample;
    squares += sample * sample;
  }
  const mean = sum / block.length;
  return 10 * Math.log10(Math.max(squares / block.length - mean * mean, 1e-12));
}

module.exports = { requireAudible };
