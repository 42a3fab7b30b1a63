'use strict';

const { Failure, STATUS } = require('./failure');
const { atKnownLevel } = require('./known');
const { repetitions } = require('./onsetBands');
const { OnsetSpectrum } = require('./onsetSpectrum');
const { changesTempo, unsteadiness } = require('./steadiness');
const { rankedTempi } = require('./tempoScore');

/**
 * The tempo: what repeats in the onsets names candidates, a fitted score chooses one, what is known
 * of the piece may move it an octave, and the onset spectrum makes it exact. Sound without a beat
 * is a Failure.
 */
function measureTempo({ samples, sampleRate }, known) {
  const repeated = repetitions(samples, sampleRate);
  const [first] = rankedTempi(repeated);
  const reason = first ? unsteadiness(repeated, first.bpm) : 'nothing repeats';
  if (reason) throw new Failure(`no steady beat found: ${reason}`, STATUS.noMusic);
  if (changesTempo(samples, sampleRate)) {
    throw new Failure('no steady beat found: two tempi', STATUS.noMusic);
  }
  const heard = new OnsetSpectrum(samples, sampleRate).tempoNear(first.bpm);
  return { bpm: atKnownLevel(heard, known), bpm_heard: heard, bpm_share: first.share };
}

module.exports = { measureTempo };
