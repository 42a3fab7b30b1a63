'use strict';

const { attempt } = require('./essentia');

/** The key by the profile made from electronic dance music: { key, scale, strength }. */
function measureKey(library, signal, sampleRate) {
  const { key, scale, strength } = attempt('KeyExtractor', () =>
    library.KeyExtractor(
      signal,
      true, // averageDetuningCorrection
      4096, // frameSize
      4096, // hopSize
      12, // hpcpSize
      3500, // maxFrequency
      60, // maximumSpectralPeaks
      25, // minFrequency
      0.2, // pcpThreshold
      'edma', // profileType
      sampleRate,
      0.0001, // spectralPeaksThreshold
      440, // tuningFrequency
      'cosine', // weightType
      'hann', // windowType
    ),
  );
  return { key, scale, strength };
}

module.exports = { measureKey };
