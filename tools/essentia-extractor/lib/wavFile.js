'use strict';

const fs = require('fs');

const { Failure, STATUS, systemReason } = require('./failure');

const SAMPLE_RATE = 44100;
const BYTES_PER_SAMPLE = 2;
const FORMAT_PCM = 1;
const FORMAT_EXTENSIBLE = 0xfffe;
// Enough for any sample; memory and time grow with the length.
const LONGEST_SECONDS = 60;

/**
 * Reads a 16-bit WAV file at 44.1 kHz, its channels mixed into one.
 * Returns { path, sampleRate, channels, samples }, samples being within -1 and 1.
 */
function readWavFile(path) {
  const { format, data } = findChunks(path, readFile(path));
  requireSupported(path, format);
  const samples = mixDown(data, format.channels);
  if (samples.length > LONGEST_SECONDS * SAMPLE_RATE) {
    throw unsuitable(path, `longer than ${LONGEST_SECONDS} seconds`);
  }
  return { path, sampleRate: SAMPLE_RATE, channels: format.channels, samples };
}

function readFile(path) {
  try {
    return fs.readFileSync(path);
  } catch (error) {
    throw new Failure(`cannot read ${path}: ${systemReason(error)}`, STATUS.input);
  }
}

function findChunks(path, file) {
  if (file.length < 12 || tag(file, 0) !== 'RIFF' || tag(file, 8) !== 'WAVE') {
    throw unsuitable(path, 'not a WAV file');
  }
  let format = null;
  let offset = 12;
  while (offset + 8 <= file.length) {
    const name = tag(file, offset);
    const size = file.readUInt32LE(offset + 4);
    // A recorder that was stopped, or that wrote to a pipe, leaves a size beyond the file's end.
    const content = file.subarray(offset + 8, offset + 8 + size);
    if (name === 'fmt ') {
      format = parseFormat(path, content);
    } else if (name === 'data') {
      if (!format) throw unsuitable(path, 'a WAV file that does not say its format');
      return { format, data: content };
    }
    offset += 8 + size + (size % 2);
  }
  throw unsuitable(path, 'a WAV file without sound');
}

function parseFormat(path, content) {
  if (content.length < 16) throw unsuitable(path, 'a WAV file with a damaged format');
  let code = content.readUInt16LE(0);
  if (code === FORMAT_EXTENSIBLE && content.length >= 26) code = content.readUInt16LE(24);
  return {
    code,
    channels: content.readUInt16LE(2),
    sampleRate: content.readUInt32LE(4),
    bits: content.readUInt16LE(14),
  };
}

function requireSupported(path, format) {
  if (format.sampleRate !== SAMPLE_RATE) {
    throw unsuitable(path, `sampled at ${format.sampleRate} Hz, not at ${SAMPLE_RATE} Hz`);
  }
  if (format.code !== FORMAT_PCM || format.bits !== 8 * BYTES_PER_SAMPLE) {
    throw unsuitable(path, 'not 16-bit PCM sound');
  }
  if (format.channels !== 1 && format.channels !== 2) {
    throw unsuitable(path, `of ${format.channels} channels, not mono or stereo`);
  }
}

function mixDown(data, channels) {
  const samples = new Float32Array(Math.floor(data.length / (BYTES_PER_SAMPLE * channels)));
  let offset = 0;
  for (let frame = 0; frame < samples.length; frame++) {
    let sum = 0;
    for (let channel = 0; channel < channels; channel++) {
      sum += data.readInt16LE(offset);
      offset += BYTES_PER_SAMPLE;
    }
    samples[frame] = sum / (channels * 32768);
  }
  return samples;
}

function tag(file, offset) {
  return file.toString('latin1', offset, offset + 4);
}

function unsuitable(path, reason) {
  return new Failure(`cannot measure ${path}: ${reason}`, STATUS.input);
}

module.exports = { readWavFile };
