'use strict';

const essentia = require('./essentia');
const { measureKey } = require('./key');
const { measureLoudness } = require('./loudness');
const { measureTempo } = require('./tempo');
const ownVersion = require('../package.json').version;

/** Measures a recording; returns the report, laid out as the native extractor lays out its own. */
function measure(recording) {
  const library = essentia.open();
  const signal = essentia.attempt('signal', () => library.arrayToVector(recording.samples));
  return {
    metadata: describe(library, recording),
    lowlevel: { average_loudness: measureLoudness(library, signal, recording.sampleRate) },
    rhythm: measureTempo(library, signal, recording),
    tonal: { key_edma: measureKey(library, signal, recording.sampleRate) },
  };
}

function describe(library, { samples, sampleRate, channels }) {
  return {
    audio_properties: {
      length: samples.length / sampleRate,
      sample_rate: sampleRate,
      number_channels: channels,
    },
    version: {
      essentia: library.version,
      essentia_js: essentia.packageVersion,
      node: process.versions.node,
      extractor: `velmor-essentia-extractor ${ownVersion}`,
    },
    algorithms: {
      average_loudness: 'LevelExtractor, averaged as the native extractor does',
      bpm: 'RhythmExtractor2013 multifeature, refined on the onset spectrum',
      key_edma: 'KeyExtractor with profile edma',
    },
  };
}

module.exports = { measure };
