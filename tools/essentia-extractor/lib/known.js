'use strict';

// Within this of a level, two tempi are the same piece's; further off somebody plays it at another
// speed, or it is another piece.
const TOLERANCE = 0.04;
// The tempi at which genres go, for what their names hold. The first that fits counts.
const GENRES = [
  [/half.?time/i, 155, 180],
  [/drum.{0,5}bass|\bd\W?n\W?b\b|jungle|neurofunk|liquid/i, 155, 185],
  [/footwork|\bjuke\b/i, 150, 168],
  [/dubstep|\btrap\b|\bdrill\b|\bgrime\b/i, 128, 160],
  [/psy|hardstyle/i, 132, 160],
  [/reggaeton|dembow|moombahton|dancehall/i, 80, 115],
  [/hip.?hop|\brap\b|boom.?bap|r&b|\brnb\b|down.?tempo|trip.?hop|lo.?fi/i, 65, 115],
  [/house|techno|trance|garage|breaks|electro|disco/i, 105, 160],
  [/\bdub\b|reggae(?!ton)/i, 60, 95],
];

/** What the caller knows of the piece already: its tempo, its key and its genre. All may lack. */
function knownFrom(environment) {
  const bpm = Number(environment.VELMOR_KNOWN_BPM);
  const camelot = /^(1[0-2]|[1-9])([AB])$/.exec(environment.VELMOR_KNOWN_KEY ?? '');
  return {
    bpm: bpm > 0 && Number.isFinite(bpm) ? bpm : null,
    key: camelot ? keyOf(Number(camelot[1]), camelot[2]) : null,
    genre: environment.VELMOR_KNOWN_GENRE ?? '',
  };
}

/**
 * A measured tempo at the level of the known one, or else at the one of its genre: half, the same
 * or double. Unchanged when nothing is known, or when none of them fits.
 */
function atKnownLevel(bpm, known) {
  const levels = [1, 0.5, 2].map((ratio) => ratio * bpm);
  const same = (level) => Math.abs(level / known.bpm - 1) <= TOLERANCE;
  if (known.bpm) return levels.find(same) ?? bpm;
  const genre = GENRES.find(([name]) => name.test(known.genre));
  return (genre && levels.find((level) => level >= genre[1] && level <= genre[2])) ?? bpm;
}

/** { key, scale } of a place in Camelot notation: 8A is A minor, 8B C major, and on in fifths. */
function keyOf(number, letter) {
  const names = ['C', 'C#', 'D', 'Eb', 'E', 'F', 'F#', 'G', 'Ab', 'A', 'Bb', 'B'];
  const home = letter === 'A' ? 9 : 0;
  return {
    key: names[(home + 7 * (number + 4)) % 12],
    scale: letter === 'A' ? 'minor' : 'major',
  };
}

module.exports = { atKnownLevel, knownFrom };
