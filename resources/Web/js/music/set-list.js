// The sets that the DJ puts together, by date, and what was thrown out tonight.
(() => {
  'use strict';

  const { crate, state, storage, text, update } = Velmor;

  const setLimit = 30;
  const songLimit = 300;

  const clean = (value) => {
    const source = text.object(value);
    const song = text.song(source);
    return { ...song, played: text.text(source.played) };
  };

  function revived(value) {
    const { id, night, songs } = text.object(value);
    if (!/^\d{4}-\d\d-\d\d$/.test(night) || !Array.isArray(songs) || !text.text(id)) return null;
    return { id, night, songs: songs.slice(0, songLimit).map(clean) };
  }

  function change(sets, more = {}) {
    update({ sets: sets.slice(0, setLimit), ...more });
    storage.keep('sets', () => state.sets);
  }

  const tonight = () => text.night(new Date());

  /** The set that the view shows and that songs are put on: the chosen one, else tonight's newest. */
  const shown = ({ sets, setShown }) =>
    sets.find((set) => set.id === setShown) ?? sets.find((set) => set.night === tonight()) ?? null;

  function startNew() {
    const id = `${Date.now()}`;
    change([{ id, night: tonight(), songs: [] }, ...state.sets], { setShown: id });
    return state.sets[0];
  }

  function replaceSongs(set, songs) {
    change(state.sets.map((one) => (one.id === set.id ? { ...one, songs } : one)));
  }

  const has = (song) => Boolean(song.id && shown(state)?.songs.some((one) => one.id === song.id));

  function add(song, at = songLimit) {
    const set = shown(state) ?? startNew();
    if (set.songs.length >= songLimit) {
      Velmor.toast(`A set holds ${songLimit} songs.`);
      return;
    }
    const songs = [...set.songs];
    songs.splice(at, 0, clean(song));
    replaceSongs(set, songs);
    crate.lookUp([song]);
  }

  function remove(index) {
    const set = shown(state);
    const song = set?.songs[index];
    if (!song) return;
    replaceSongs(set, set.songs.filter((_, i) => i !== index));
    Velmor.toast(`${text.display(song)} is off the set.`, ['Undo (U)', () => add(song, index)]);
  }

  /** Puts a song on the set, or takes it off. */
  function toggle(song) {
    if (has(song)) {
      remove(shown(state).songs.findIndex((one) => one.id === song.id));
      return;
    }
    const isKnown = Boolean(song.id);
    if (isKnown) add(song);
    Velmor.toast(isKnown ? `${text.display(song)} is on the set.` : 'A song needs a title and an artist.',
      isKnown && ['Undo (U)', () => toggle(song)]);
  }

  /** Moves a song of the shown set; the place is counted without the song. */
  function move(from, to) {
    const set = shown(state);
    if (!set?.songs[from] || to < 0 || to >= set.songs.length) return;
    const songs = [...set.songs];
    songs.splice(to, 0, ...songs.splice(from, 1));
    replaceSongs(set, songs);
  }

  function tick(index, played) {
    const set = shown(state);
    replaceSongs(set, set.songs.map((one, i) => (i === index ? { ...one, played } : one)));
  }

  /** A song is heard: it ticks itself on the set. */
  function played(song) {
    const index = shown(state)?.songs.findIndex((one) => one.id && one.id === song.id && !one.played) ?? -1;
    if (index >= 0) tick(index, new Date().toISOString());
  }

  function removeSet(set) {
    change(state.sets.filter((one) => one.id !== set.id), { setShown: '' });
    const before = state.sets;
    Velmor.toast('The set is gone.', ['Undo (U)', () => change([set, ...before], { setShown: set.id })]);
  }

  function keepOut(out) {
    update({ out });
    storage.keep('out', () => ({ night: tonight(), songs: state.out }));
  }

  /** Throws a song out of every list until tomorrow. */
  function throwOut(song) {
    if (!song.id || state.out.includes(song.id)) return;
    keepOut([...state.out, song.id].slice(-songLimit));
    Velmor.toast(`${text.display(song)} is out for tonight.`,
      ['Undo (U)', () => keepOut(state.out.filter((id) => id !== song.id))]);
  }

  const bringBack = () => keepOut([]);

  const kept = text.object(storage.read('out'));
  const isTonight = kept.night === tonight() && Array.isArray(kept.songs);
  update({
    sets: storage.list('sets').map(revived).filter(Boolean).slice(0, setLimit),
    out: isTonight ? kept.songs.filter((id) => typeof id === 'string') : [],
  });

  Velmor.setList = { shown, startNew, has, toggle, remove, move, tick, played, removeSet, throwOut, bringBack, tonight };
})();
