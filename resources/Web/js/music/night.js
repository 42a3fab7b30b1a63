// What was heard and suggested, this night and before, newest first. It outlives the window.
(() => {
  'use strict';

  const { state, storage, text, update } = Velmor;

  const trackLimit = 1000;
  const rankingLimit = 30;

  const slim = ({ song, artist, album, bpm, key, genre, energy }) => ({ song, artist, album, bpm, key, genre, energy });

  function stored(entry) {
    const base = { at: entry.at.getTime(), kind: entry.kind };
    if (entry.kind === 'track') return { ...base, song: slim(entry.song) };
    const { kind, track, cards } = entry.ranking;
    return { ...base, ranking: { kind, track: slim(track), cards: cards.map(slim) } };
  }

  /** A stored entry as it was; null for what is none. */
  function revived(value) {
    const { at, kind, song, ranking } = text.object(value);
    if (!(text.number(at) > 0)) return null;
    const base = { at: new Date(at), kind };
    if (kind === 'track') return { ...base, song: text.song(song) };
    const { kind: how, track, cards } = text.object(ranking);
    if (kind !== 'ranking' || !Array.isArray(cards)) return null;
    const songs = cards.map((card, i) => ({ ...text.song(card), rank: i + 1 }));
    return { ...base, ranking: { kind: how === 'auto' ? 'auto' : 'manual', track: text.song(track), cards: songs } };
  }

  function bounded(entries) {
    const left = { track: trackLimit, ranking: rankingLimit };
    return entries.filter((entry) => (left[entry.kind] -= 1) >= 0);
  }

  function remember(entry) {
    update({ history: bounded([{ at: new Date(), ...entry }, ...state.history]) });
    storage.keep('history', () => state.history.map(stored));
  }

  function heard(song) {
    const latest = state.history.find((entry) => entry.kind === 'track');
    const isSame = song.id && latest?.song.id === song.id && text.night(latest.at) === text.night(new Date());
    if (!isSame) remember({ kind: 'track', song });
  }

  /** What came next when this song was played before, and when; null when that is not known. */
  function afterLastTime(song) {
    if (!song?.id) return null;
    let next = null;
    for (const entry of state.history) {
      if (entry.kind !== 'track') continue;
      const together = next && text.night(next.at) === text.night(entry.at);
      if (entry.song.id === song.id && together) return next;
      next = entry;
    }
    return null;
  }

  function forget() {
    update({ history: [] });
    storage.keep('history', () => []);
  }

  update({ history: bounded(storage.list('history').map(revived).filter(Boolean)) });

  Velmor.night = { remember, heard, afterLastTime, forget };
})();
