'use strict';

const { Failure, STATUS } = require('./failure');
const { requireAudible } = require('./audibility');
const { measure } = require('./measurement');
const { readWavFile } = require('./wavFile');
const { writeReport } = require('./reportFile');

/** Carries out one call of the program and returns its exit status. */
function run(args) {
  try {
    if (args.length !== 2) {
      throw new Failure('usage: essentia_streaming_extractor_music IN.wav OUT.json', STATUS.input);
    }
    const [input, output] = args;
    const recording = readWavFile(input);
    requireAudible(recording);
    writeReport(output, measure(recording));
    return 0;
  } catch (error) {
    // A defect is worth its whole stack, a failure foreseen only its sentence.
    console.error(error instanceof Failure ? error.message : error);
    return error instanceof Failure ? error.status : STATUS.internal;
  }
}

module.exports = { run };
