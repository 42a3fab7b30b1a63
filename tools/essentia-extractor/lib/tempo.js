'use strict';

const { attempt } = require('./essentia');
const { Failure, STATUS } = require('./failure');
const { OnsetSpectrum } = require('./onsetSpectrum');

const SLOWEST = 40;
const FASTEST = 208;

/**
 * The tempo: Essentia's beat tracker finds it, the onset spectrum makes it exact.
 *
 * The tracker places beats on frames of 11.6 ms and takes the commonest distance between them,
 * which at 170 beats a minute is up to 2 % off; now and then it counts dotted beats. Its estimate
 * is kept in the report.
 */
function measureTempo(library, signal, { samples, sampleRate }) {
  const rhythm = attempt('RhythmExtractor2013', () =>
    library.RhythmExtractor2013(signal, FASTEST, 'multifeature', SLOWEST),
  );
  const tracked = rhythm.bpm;
  if (!(tracked > 0) || !Number.isFinite(tracked)) {
    throw new Failure('no steady beat found', STATUS.noMusic);
  }
  return {
    bpm: refine(tracked, new OnsetSpectrum(samples, sampleRate)),
    bpm_tracked: tracked,
    beats_confidence: rhythm.confidence,
    beats_count: attempt('RhythmExtractor2013', () => rhythm.ticks.size()),
  };
}

function refine(tracked, spectrum) {
  const refined = spectrum.tempoNear(tracked);
  const undotted = 1.5 * refined;
  return undotted <= FASTEST && spectrum.isDotted(refined)
    ? spectrum.tempoNear(undotted)
    : refined;
}

module.exports = { measureTempo };
