'use strict';

const fs = require('fs');

const { Failure, STATUS, systemReason } = require('./failure');

/** Writes the report as JSON, whole or not at all. */
function writeReport(path, report) {
  requireReplaceable(path);
  // Renaming within a folder is what makes the report appear in one piece.
  const unfinished = `${path}.${process.pid}.unfinished`;
  try {
    fs.writeFileSync(unfinished, `${JSON.stringify(report, null, 2)}\n`, { flag: 'wx' });
    fs.renameSync(unfinished, path);
  } catch (error) {
    fs.rmSync(unfinished, { force: true });
    throw unwritable(path, systemReason(error));
  }
}

/** A device or a link must not be replaced by a file of the same name. */
function requireReplaceable(path) {
  const existing = fs.lstatSync(path, { throwIfNoEntry: false });
  if (existing && !existing.isFile()) throw unwritable(path, 'not a regular file');
}

function unwritable(path, reason) {
  return new Failure(`cannot write ${path}: ${reason}`, STATUS.output);
}

module.exports = { writeReport };
