// Values from outside are data of unknown shape. Everything the page shows passes through here once.
(() => {
  'use strict';

  const text = (value) => (typeof value === 'string' ? value.trim() : '');

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

  const clock = (date) =>
    [date.getHours(), date.getMinutes()].map((part) => String(part).padStart(2, '0')).join(':');

  const seconds = (from, now = Date.now()) => `${Math.max(0, Math.floor((now - from) / 1000))} s`;

  /** Upper and lower case, accents' spelling and repeated blanks make no different song. */
  const fold = (value) => text(value).normalize('NFC').toLowerCase().replace(/\s+/g, ' ');

  /** Identity of a song; empty when the title or the artist is unknown. */
  function fingerprint(song, artist) {
    const parts = [fold(song), fold(artist)];
    return parts.every(Boolean) ? parts.join('\u0000') : '';
  }

  const display = (song) => [song.artist, song.song].filter(Boolean).join(' – ');

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
    text: { text, number, object, bpm, signed, clock, seconds, fold, display, song, recommendation },
  };
})();
