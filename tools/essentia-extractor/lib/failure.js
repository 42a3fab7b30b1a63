'use strict';

/** Exit statuses: what kept the program from writing its report. */
const STATUS = { noMusic: 1, input: 2, output: 3, internal: 4 };

/** An end of the program that was foreseen; the message is what the user reads. */
class Failure extends Error {
  constructor(message, status) {
    super(message);
    this.status = status;
  }
}

/** "no such file or directory" out of "ENOENT: no such file or directory, open 'a.wav'". */
function systemReason(error) {
  const match = /^[A-Z0-9]+: ([^,]+)/.exec(error.message);
  return match ? match[1] : error.message;
}

module.exports = { Failure, STATUS, systemReason };
