// Tracks and rankings as they arrive: what is playing, what the list shows, what waits.
(() => {
  'use strict';

  const { crate, judge, night, setList, state, text, update } = Velmor;

  // How long a list stays as it is for a DJ who rests, in milliseconds. An opened card is read.
  const rest = 3000;
  const restOpen = 15_000;
  let lastRanking = 0;
  let lastTouch = 0;
  let holding = 0;

  /** What the crate knows of a song and the source did not. */
  function filled(song) {
    const fact = state.facts.get(song?.id);
    if (!fact || (song.bpm && song.key && song.genre)) return song;
    return { ...song, bpm: song.bpm || fact.bpm, key: song.key || fact.key, genre: song.genre || fact.genre };
  }

  /** A later report of the same song keeps what an earlier one measured. */
  function merged(song) {
    const known = state.track;
    if (!known || !song.id || known.id !== song.id) return song;
    const fields = ['album', 'bpm', 'key', 'genre', 'energy'];
    return { ...song, ...Object.fromEntries(fields.map((f) => [f, song[f] || known[f]])) };
  }

  function setTrack(value) {
    const song = filled(merged(text.song(value)));
    if (!song.song && !song.artist) return;
    const isNew = song.id !== state.track?.id || !song.id;
    if (isNew) night.heard(song);
    update({ track: song, heardAt: new Date(), playing: 'playing', permission: '' });
    if (isNew) setList.played(song);
    crate.lookUp([song]);
  }

  const tolerance = () => text.number(state.settings?.bpmTolerance) || 10;

  const judged = (songs, track) => judge.cards(songs, track, tolerance(), state.facts);

  /** An answer of the native side as the page keeps it. The songs stay as they came. */
  function ranking(value, kind) {
    const source = text.object(value);
    const track = filled(text.song(source.currentTrack));
    const given = Array.isArray(source.recommendations) ? source.recommendations : [];
    const songs = given.map(text.recommendation).filter((song) => song.song || song.artist);
    lastRanking += 1;
    return {
      number: lastRanking,
      kind,
      at: new Date(),
      track,
      songs,
      cards: judged(songs, track),
      source: text.text(source.source),
      notice: text.text(source.notice),
    };
  }

  /** The list is of a song that is no longer the one on air. */
  const stale = (shown, track) => Boolean(shown?.track.id && track?.id && shown.track.id !== track.id);

  /** How much longer the DJ has the list in hand, in milliseconds: something open, or the pointer or focus on it. */
  function held(kind) {
    if (!state.ranking || state.compact) return 0;
    const left = (time) => Math.max(0, lastTouch + time - performance.now());
    if (state.open > 0 || state.ahead.length > 0) return left(restOpen);
    const panels = [...document.querySelectorAll('#panel-list, #panel-wheel')];
    const inHand = panels.some((panel) => panel.matches(':hover, :focus-within'));
    return kind === 'auto' && inHand ? left(rest) : 0;
  }

  function display(next, fresh) {
    clearTimeout(holding);
    update({ ranking: next, waiting: null, ahead: [], open: 0, lit: 0, fresh });
  }

  /** Looks again when the rest may be over; every touch meanwhile puts that off. */
  function hold(kind) {
    clearTimeout(holding);
    holding = setTimeout(() => {
      if (!state.waiting) return;
      if (held(kind) > 0) hold(kind);
      else display(state.waiting, true);
    }, held(kind) + 20);
  }

  /** Every ranking enters here; it is shown at once unless that would pull a list from under the DJ. */
  function arrived(value, kind) {
    const next = ranking(value, kind);
    if (next.cards.length === 0) {
      update({ error: 'The answer held no suggestions.' });
      return;
    }
    night.remember({ kind: 'ranking', ranking: next });
    crate.lookUp(next.songs);
    if (stale(next, state.track) && state.ranking && !stale(state.ranking, state.track)) {
      Velmor.toast(`Late suggestions for ${text.display(next.track)} are in the history.`);
      return;
    }
    if (held(kind) > 0) {
      update({ waiting: next });
      hold(kind);
    } else {
      display(next, Boolean(state.ranking) || state.compact || kind === 'auto');
    }
  }

  function touched() {
    lastTouch = performance.now();
  }

  /** The "new" mark goes as soon as the list is touched. */
  function seen() {
    touched();
    if (!state.compact) update({ fresh: false });
  }

  const showWaiting = () => state.waiting && display(state.waiting, false);

  /** Settings and the crate decide what a card says, so what is shown is judged again. */
  function judgeAgain() {
    const again = (one) => {
      if (!one) return one;
      const track = filled(one.track);
      return { ...one, track, cards: judged(one.songs, track) };
    };
    update({ track: filled(state.track), ranking: again(state.ranking), waiting: again(state.waiting), ahead: state.ahead.map(again) });
  }

  /** The ranking that the list shows. */
  const shown = ({ ahead, ranking: last }) => ahead.at(-1) ?? last;

  for (const event of ['keydown', 'wheel', 'pointerdown']) {
    document.addEventListener(event, touched, { capture: true, passive: true });
  }

  Velmor.rankings = { setTrack, arrived, ranking, seen, showWaiting, judgeAgain, shown, stale };
})();
