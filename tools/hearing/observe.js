#!/usr/bin/env node
// Prints what the extractor's score sees of each piece with a beat in a folder of material, a JSON
// line a piece: its truth, and its candidates as [tempo, features...].
// SPDX-License-Identifier: AGPL-3.0-only
'use strict';

const fs = require('fs');
const path = require('path');

const extractor = '../essentia-extractor/lib';
const { repetitions } = require(`${extractor}/onsetBands`);
const { candidates, features } = require(`${extractor}/tempoScore`);
const { readWavFile } = require(`${extractor}/wavFile`);

const folder = process.argv[2];
const truths = JSON.parse(fs.readFileSync(path.join(folder, 'truth.json'), 'utf8'));
for (const [name, truth] of Object.entries(truths)) {
  if (!truth.bpm) continue;
  const { samples, sampleRate } = readWavFile(path.join(folder, name));
  const repeated = repetitions(samples, sampleRate);
  const seen = candidates(repeated).map((bpm) => [bpm, ...features(repeated, bpm)]);
  console.log(JSON.stringify({ name, ...truth, candidates: seen }));
}
