'use strict';

const listenersBefore = new Set(process.listeners('uncaughtException'));
const rejectionListenersBefore = new Set(process.listeners('unhandledRejection'));
const EssentiaWASM = require('essentia.js/dist/essentia-wasm.umd.js');
const Essentia = require('essentia.js/dist/essentia.js-core.umd.js');
const packageVersion = require('essentia.js/package.json').version;

const { Failure, STATUS } = require('./failure');

// The library catches what nobody else does; a defect is to end this program as any other.
removeNewListeners('uncaughtException', listenersBefore);
removeNewListeners('unhandledRejection', rejectionListenersBefore);

function removeNewListeners(event, before) {
  for (const listener of process.listeners(event)) {
    if (!before.has(listener)) process.removeListener(event, listener);
  }
}

/** Runs one algorithm; what the library throws, mostly a bare number, becomes a Failure. */
function attempt(algorithm, compute) {
  try {
    return compute();
  } catch (error) {
    const detail = error instanceof Error ? error.message : `code ${error}`;
    throw new Failure(`Essentia's ${algorithm} failed: ${detail}`, STATUS.internal);
  }
}

function open() {
  return attempt('start', () => new Essentia(EssentiaWASM));
}

module.exports = { attempt, open, packageVersion };
