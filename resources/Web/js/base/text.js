// Values from outside are data of unknown shape. Everything the page shows passes through here once.
(() => {
  'use strict';

  const text = (value) => (typeof value === 'string' ? value.trim() : '');

  const two = (value) => String(value).padStart(2, '0');

  const number = (value) => (typeof value === 'number' && Number.isFinite(value) ? value : 0);

  const object = (value) => (value && typeof value === 'object' ? value : {});

  /** "128", "93.3": one decimal at most, so that a figure keeps its width. */
  const bpm = (value) => (value > 0 ? String(Math.round(value * 10) / 10) : '–');

  /** "+1.2", "−3.0", "±0.0": always signed, always one decimal. */
  function signed(value) {
    const size = Math.abs(value).toFixed(1);
    if (size === '0.0') return '±0.0';
    return (value > 0 ? '+' : '−') + size;
  }

  /** "−1.1 %"; a change that nobody hears is "±0 %". */
  function percent(value) {
    const words = signed(value);
    return `${words === '±0.0' ? '±0' : words} %`;
  }

  const clock = (date) => [date.getHours(), date.getMinutes()].map(two).join(':');

  /** "3 October"; with the year when it is not this one. */
  const day = (date, now = new Date()) =>
    date.toLocaleDateString('en-GB', {
      day: 'numeric', month: 'long', year: date.getFullYear() === now.getFullYear() ? undefined : 'numeric',
    });

  /** "2026-10-03": the evening a moment belongs to. A night goes on until six in the morning. */
  function night(date) {
    const evening = new Date(date.getTime() - 6 * 3_600_000);
    return [evening.getFullYear(), two(evening.getMonth() + 1), two(evening.getDate())].join('-');
  }

  const seconds = (from, now = Date.now()) => `${Math.max(0, Math.floor((now - from) / 1000))} s`;

  /** Upper and lower case, accents' spelling and repeated blanks make no different song. */
  const fold = (value) => text(value).normalize('NFC').toLowerCase().replace(/\s+/g, ' ');

  /** Identity of a song; empty when the title or the artist is unknown. */
  function fingerprint(song, artist) {
    const parts = [fold(song), fold(artist)];
    return parts.every(Boolean) ? parts.join('\u0000') : '';
  }

  const both = (song, between) => [song.artist, song.song].filter(Boolean).join(between);
  const display = (song) => both(song, ' – ');
  /** As text in a message or a list. */
  const plain = (song) => both(song, ' - ');
  /** For the search of a DJ program, which takes every character between two words as a word. */
  const query = (song) => both(song, ' ');

  /** A title, artist and so on as the page keeps them: every field present and of its type. */
  function song(value) {
    const source = object(value);
    const known = {
      song: text(source.song),
      artist: text(source.artist),
      album: text(source.album),
      bpm: Math.max(0, number(source.bpm)),
      key: text(source.key),
      genre: text(source.genre),
      energy: Math.min(100, Math.max(0, number(source.energy))),
    };
    return { ...known, id: fingerprint(known.song, known.artist) };
  }

  function recommendation(value) {
    const source = object(value);
    const score = Math.round(Math.min(100, Math.max(0, number(source.compatibilityScore))));
    return { ...song(source), score, reason: text(source.explanation) };
  }

  window.Velmor = {
    text: {
      text, number, object, bpm, signed, percent, clock, day, night, seconds, fold, fingerprint, display, plain, query,
      song, recommendation,
    },
  };
})();
