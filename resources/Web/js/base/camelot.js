// The wheel of keys: twelve numbers, an inner ring of minor keys (A) and an outer one of major (B).
(() => {
  'use strict';

  const names = {
    A: ['A♭m', 'E♭m', 'B♭m', 'Fm', 'Cm', 'Gm', 'Dm', 'Am', 'Em', 'Bm', 'F♯m', 'D♭m'],
    B: ['B', 'F♯', 'D♭', 'A♭', 'E♭', 'B♭', 'F', 'C', 'G', 'D', 'A', 'E'],
  };

  // A grade is 3 for what always goes, 2 for what goes with care, 1 for what does not.
  const relations = {
    same: { sign: '=', label: 'same key', fits: true, grade: 3 },
    up: { sign: '+1', label: 'one step up', fits: true, grade: 3 },
    down: { sign: '−1', label: 'one step down', fits: true, grade: 3 },
    relative: { sign: '↕', label: 'relative key', fits: true, grade: 3 },
    boost: { sign: '▲', label: 'energy boost', fits: true, grade: 2 },
    diagonal: { sign: '↗', label: 'one step and a change of mode', fits: true, grade: 2 },
    clash: { sign: '×', label: 'keys clash', fits: false, grade: 1 },
  };

  /** "8A" as { n: 8, mode: 'A' }; null for anything that is not a place on the wheel. */
  function parse(key) {
    const match = /^([1-9]|1[0-2])([AB])$/.exec(key);
    return match && { n: Number(match[1]), mode: match[2] };
  }

  /** Steps clockwise from one number to another, 0 to 11. */
  const stepsUp = (from, to) => (to - from + 12) % 12;

  // Two numbers up is a whole tone, seven up a semitone: both lift the room.
  const sameMode = { 0: 'same', 1: 'up', 11: 'down', 2: 'boost', 7: 'boost' };
  const otherMode = { 0: 'relative', 1: 'diagonal', 11: 'diagonal' };

  /** How a next key stands to the current one; null when either is unknown. */
  function relation(current, next) {
    const from = parse(current);
    const to = parse(next);
    if (!from || !to) return null;
    const table = from.mode === to.mode ? sameMode : otherMode;
    const name = table[stepsUp(from.n, to.n)] ?? 'clash';
    return { name, ...relations[name] };
  }

  /** The key some semitones higher: what a change of pitch makes of it. A semitone is seven steps. */
  function shifted(key, semitones) {
    const place = parse(key);
    if (!place) return key;
    return `${((((place.n - 1 + 7 * semitones) % 12) + 12) % 12) + 1}${place.mode}`;
  }

  function name(key) {
    const place = parse(key);
    return place ? names[place.mode][place.n - 1] : '';
  }

  const all = [];
  for (const mode of ['A', 'B']) for (let n = 1; n <= 12; n += 1) all.push(`${n}${mode}`);

  Velmor.camelot = { parse, relation, relations, shifted, name, all };
})();
