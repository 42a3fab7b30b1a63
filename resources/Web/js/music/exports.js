// Sets and nights as text for other programs.
(() => {
  'use strict';

  const { text } = Velmor;

  const figures = (song) =>
    [song.bpm > 0 && `${text.bpm(song.bpm)} BPM`, song.key].filter(Boolean).join(', ');

  const line = (song) => [text.plain(song), figures(song)].filter(Boolean).join('  ');

  // A table must not take a title for a formula.
  const cell = (value) => `"${String(value).replace(/^[=+\-@\t\r]/, "'$&").replaceAll('"', '""')}"`;
  const table = (head, rows) => [head, ...rows].map((row) => row.map(cell).join(',')).join('\r\n');
  const oneLine = (value) => value.replace(/[\r\n]+/g, ' ');

  const setAsText = (songs) => songs.map((song, i) => `${i + 1}. ${line(song)}`).join('\n');

  const setAsTable = (songs) =>
    table(['Number', 'Artist', 'Title', 'BPM', 'Key', 'Genre', 'Energy', 'Played'],
      songs.map((song, i) => [i + 1, song.artist, song.song, song.bpm || '', song.key, song.genre, song.energy || '', song.played]));

  function path(uri) {
    try {
      const decoded = decodeURIComponent(new URL(uri).pathname);
      return /[\r\n]/.test(decoded) ? uri : decoded;
    } catch {
      return uri;
    }
  }

  /** A play list; a song whose file is not known stays as a remark. */
  const setAsList = (songs, uriOf) =>
    ['#EXTM3U', ...songs.flatMap((song) => {
      const uri = uriOf(song);
      const name = oneLine(text.plain(song));
      return uri ? [`#EXTINF:-1,${name}`, path(uri)] : [`# not in your crate: ${name}`];
    })].join('\n');

  const tracks = (entries) => entries.filter((entry) => entry.kind === 'track').reverse();

  /** In the order in which it happened. */
  function nightAsText(entries) {
    return [...entries].reverse().flatMap((entry) => {
      const time = text.clock(entry.at);
      if (entry.kind === 'track') return [`${time}  ${line(entry.song)}`];
      const { cards, track } = entry.ranking;
      return [`${time}  Suggestions for ${text.plain(track)}`,
        ...cards.map((card) => `       ${card.rank}. ${line(card)}`)];
    }).join('\n');
  }

  const nightAsTable = (entries) =>
    table(['Date', 'Time', 'Artist', 'Title', 'BPM', 'Key', 'Genre'], tracks(entries).map(({ at, song }) =>
      [text.night(at), text.clock(at), song.artist, song.song, song.bpm || '', song.key, song.genre]));

  const quoted = (value) => `"${oneLine(value).replaceAll('"', "'")}"`;

  /** A cue sheet of what was heard, from the first track on. Its minutes may pass ninety-nine. */
  function nightAsCue(entries) {
    const heard = tracks(entries);
    const start = heard[0]?.at ?? new Date();
    const lines = heard.flatMap(({ at, song }, i) => {
      const seconds = Math.floor((at - start) / 1000);
      const time = [Math.floor(seconds / 60), seconds % 60, 0].map((part) => String(part).padStart(2, '0')).join(':');
      return [`  TRACK ${String(i + 1).padStart(2, '0')} AUDIO`, `    TITLE ${quoted(song.song)}`,
        `    PERFORMER ${quoted(song.artist)}`, `    INDEX 01 ${time}`];
    });
    return [`TITLE ${quoted(`Night of ${text.night(start)}`)}`, `FILE ${quoted(`${text.night(start)}.wav`)} WAVE`, ...lines].join('\n');
  }

  Velmor.exports = { setAsText, setAsTable, setAsList, nightAsText, nightAsTable, nightAsCue };
})();
