#!/usr/bin/env node
// Prints the tempo that one of Essentia's own estimators gives, by the Essentia that is installed
// with the extractor: estimate.js ESTIMATOR IN.wav EXTRACTOR_FOLDER
// SPDX-License-Identifier: AGPL-3.0-only
'use strict';

const SLOWEST = 40;
const FASTEST = 208;

const [estimator, input, extractor = '../essentia-extractor'] = process.argv.slice(2);
const { open } = require(`${extractor}/lib/essentia`);
const { readWavFile } = require(`${extractor}/lib/wavFile`);

const library = open();
const signal = library.arrayToVector(readWavFile(input).samples);
const { bpm } = estimator === 'percival'
  ? library.PercivalBpmEstimator(signal)
  : library.RhythmExtractor2013(signal, FASTEST, estimator, SLOWEST);
console.log(bpm);
