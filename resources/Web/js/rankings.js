// Tracks and rankings as they arrive: what is playing, what the list shows, what waits.
(() => {
  'use strict';

  const { judge, state, text, update } = Velmor;

  const historyLimit = 500;
  let lastRanking = 0;

  function remember(entry) {
    const entries = [{ at: new Date(), ...entry }, ...state.history];
    update({ history: entries.slice(0, historyLimit) });
  }

  /** A later report of the same song keeps what an earlier one measured. */
  function merged(song) {
    const known = state.track;
    if (!known || !song.id || known.id !== song.id) return song;
    const fields = ['album', 'bpm', 'key', 'genre', 'energy'];
    return { ...song, ...Object.fromEntries(fields.map((f) => [f, song[f] || known[f]])) };
  }

  function setTrack(value) {
    const song = merged(text.song(value));
    if (!song.song && !song.artist) return;
    const isNew = song.id !== state.track?.id || !song.id;
    const latest = state.history.find((entry) => entry.kind === 'track');
    if (isNew && !(song.id && latest?.song.id === song.id)) remember({ kind: 'track', song });
    update({ track: song, heardAt: new Date(), playing: 'playing', permission: '' });
  }

  const tolerance = () => text.number(state.settings?.bpmTolerance) || 10;

  function ranking(value, kind) {
    const source = text.object(value);
    const track = text.song(source.currentTrack);
    const songs = Array.isArray(source.recommendations) ? source.recommendations : [];
    const usable = songs.map(text.recommendation).filter((song) => song.song || song.artist);
    lastRanking += 1;
    return {
      number: lastRanking,
      kind,
      at: new Date(),
      track,
      cards: judge.cards(usable, track, tolerance()),
      source: text.text(source.source),
      notice: text.text(source.notice),
    };
  }

  /** The list is of a song that is no longer the one on air. */
  const stale = (shown, track) => Boolean(shown?.track.id && track?.id && shown.track.id !== track.id);

  /** Whether the DJ has the list in hand: a card open, or the pointer or focus on it. */
  function beingRead(kind) {
    if (!state.ranking || state.compact) return false;
    if (state.open > 0) return true;
    const panels = [...document.querySelectorAll('#panel-list, #panel-wheel')];
    return kind === 'auto' && panels.some((panel) => panel.matches(':hover, :focus-within'));
  }

  function display(next, fresh) {
    update({ ranking: next, waiting: null, open: 0, lit: 0, fresh });
  }

  /** Every ranking enters here; it is shown at once unless that would pull a list from under the DJ. */
  function arrived(value, kind) {
    const next = ranking(value, kind);
    if (next.cards.length === 0) {
      update({ error: 'The answer held no suggestions.' });
      return;
    }
    remember({ kind: 'ranking', ranking: next });
    if (stale(next, state.track) && state.ranking && !stale(state.ranking, state.track)) {
      Velmor.toast(`Late suggestions for ${text.display(next.track)} are in the history.`);
      return;
    }
    if (beingRead(kind)) update({ waiting: next });
    else display(next, Boolean(state.ranking) || state.compact || kind === 'auto');
  }

  /** The "new" mark goes as soon as the list is touched. */
  function seen() {
    if (!state.compact) update({ fresh: false });
  }

  const showWaiting = () => state.waiting && display(state.waiting, false);

  /** Settings decide what is within tolerance, so a shown ranking is judged again. */
  function judgeAgain() {
    if (!state.ranking) return;
    const { cards, track } = state.ranking;
    update({ ranking: { ...state.ranking, cards: judge.cards(cards, track, tolerance()) } });
  }

  Velmor.rankings = { setTrack, arrived, seen, showWaiting, judgeAgain, stale };
})();
