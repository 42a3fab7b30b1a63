#!/usr/bin/env node
// Prints the tempo that one of Essentia's own estimators gives: estimate.js ESTIMATOR IN.wav
// SPDX-License-Identifier: AGPL-3.0-only
'use strict';

const extractor = '../essentia-extractor/lib';
const { open } = require(`${extractor}/essentia`);
const { readWavFile } = require(`${extractor}/wavFile`);

const SLOWEST = 40;
const FASTEST = 208;

const [estimator, input] = process.argv.slice(2);
const library = open();
const signal = library.arrayToVector(readWavFile(input).samples);
const { bpm } = estimator === 'percival'
  ? library.PercivalBpmEstimator(signal)
  : library.RhythmExtractor2013(signal, FASTEST, estimator, SLOWEST);
console.log(bpm);
