// The set: its songs in order, what lies between them, and what can be done with it.
(() => {
  'use strict';

  const { actions, camelot, crate, dom, exports, judge, menu, setList, state, text, update } = Velmor;
  const { make } = dom;
  const panel = dom.byId('panel-set');
  let drawn = {};

  const uriOf = (song) => state.facts.get(song.id)?.uri ?? '';
  const dateOf = (night) => new Date(`${night}T12:00:00`);

  /** "Tonight", "3 October", and a number when there are several of a date. */
  function nameOf(set) {
    const same = state.sets.filter((one) => one.night === set.night);
    const day = set.night === setList.tonight() ? 'Tonight' : text.day(dateOf(set.night));
    const number = same.length > 1 ? `, ${same.length - same.indexOf(set)}` : '';
    return `${day}${number}`;
  }

  /** Moves a song and keeps the focus on its grip. */
  function moveTo(from, to) {
    setList.move(from, to);
    queueMicrotask(() => panel.querySelectorAll('.grip')[to]?.focus());
  }

  function rowKeys(event, index) {
    const step = { ArrowUp: -1, ArrowDown: 1 }[event.key];
    const isGrip = event.target.closest('.grip');
    if (step && (event.altKey || isGrip)) {
      event.preventDefault();
      event.stopPropagation();
      moveTo(index, index + step);
    } else if (event.key === 'Delete') {
      event.preventDefault();
      setList.remove(index);
    }
  }

  /** The place where a song would go when it is let go at this height. */
  function placeAt(y, from) {
    const rows = [...panel.querySelectorAll('.set-row')];
    const above = rows.filter((row, i) => {
      const box = row.getBoundingClientRect();
      return i !== from && box.top + box.height / 2 < y;
    });
    return above.length;
  }

  /** A grip moves its song with the pointer; a line shows where it would go. */
  function gripped(event, index) {
    const grip = event.currentTarget;
    const rows = [...panel.querySelectorAll('.set-row')];
    if (event.button !== 0) return;
    grip.setPointerCapture(event.pointerId);
    rows[index].classList.add('moving');
    // The row as a whole can be dragged out of the window.
    const { draggable } = rows[index];
    rows[index].draggable = false;
    let to = index;
    const unmark = () => rows.forEach((row) => row.classList.remove('before', 'after'));
    const follow = ({ clientY }) => {
      to = placeAt(clientY, index);
      unmark();
      if (to !== index) rows[to].classList.add(to < index ? 'before' : 'after');
    };
    const leave = (letGo) => {
      grip.removeEventListener('pointermove', follow);
      rows[index].classList.remove('moving');
      rows[index].draggable = draggable;
      unmark();
      if (letGo.type === 'pointerup' && to !== index) moveTo(index, to);
    };
    grip.addEventListener('pointermove', follow);
    grip.addEventListener('pointerup', leave, { once: true });
    grip.addEventListener('pointercancel', leave, { once: true });
  }

  function known(song) {
    const fact = state.facts.get(song.id);
    return { ...song, bpm: fact?.bpm || song.bpm, key: fact?.key || song.key, owned: fact ?? null };
  }

  function between(song, before) {
    const tempo = before && judge.tempo(before.bpm, song.bpm);
    return make('span', { class: 'tempo' },
      make('span', { class: 'bpm' }, tempo?.sign && make('span', { class: 'way-sign', title: tempo.label }, tempo.sign), text.bpm(song.bpm), make('span', { class: 'unseen' }, ' BPM ')),
      tempo && make('span', { class: 'pitch', title: 'Pitch at which it matches the song before' }, text.percent(tempo.pitch)));
  }

  function row(song, index, songs) {
    const before = songs[index - 1];
    const name = text.display(song);
    const tick = () => setList.tick(index, song.played ? '' : new Date().toISOString());
    const grip = make('button', {
      type: 'button', class: 'tool grip', 'aria-label': `Move ${name}, number ${index + 1}: arrow keys`, title: 'Drag, or use the arrow keys',
      onpointerdown: (event) => gripped(event, index),
    }, dom.icon('grip'));
    const item = make(
      'li',
      { class: song.played ? 'set-row played' : 'set-row', 'data-id': song.id || `${index}`, onkeydown: (event) => rowKeys(event, index) },
      grip,
      make('button', {
        type: 'button', class: 'tick', role: 'checkbox', 'aria-checked': String(Boolean(song.played)), 'aria-label': `Played: ${name}`,
        title: song.played ? `Played at ${text.clock(new Date(song.played))}` : 'Not played yet', onclick: tick,
      }, song.played ? dom.icon('check') : make('span', { 'aria-hidden': 'true' }, index + 1)),
      make('span', { class: 'words' },
        make('span', { class: 'title clip' },
          song.owned && make('span', { class: 'owned', role: 'img', 'aria-label': 'In your crate', title: 'In your crate' }),
          make('bdi', {}, song.song)),
        make('span', { class: 'artist clip' }, make('bdi', {}, song.artist))),
      between(song, before),
      dom.chip(song.key, before && camelot.relation(before.key, song.key)),
      make('button', {
        type: 'button', class: 'tool', 'aria-label': `Take off the set: ${name}`, title: 'Take off the set (Delete)',
        onclick: () => setList.remove(index),
      }, dom.icon('close')),
    );
    actions.draggable(item, song);
    return item;
  }

  function exportEntries(set) {
    const songs = set.songs.map(known);
    return [
      ['Copy as text', () => actions.copy(exports.setAsText(songs), 'Set copied as text')],
      ['Copy as CSV', () => actions.copy(exports.setAsTable(songs), 'Set copied as CSV')],
      ['Copy as M3U', () => actions.copy(exports.setAsList(songs, uriOf), 'Set copied as M3U')],
      ['Delete this set', () => setList.removeSet(set)],
    ];
  }

  function head(set) {
    const choose = make('select', {
      'aria-label': 'Which set', 'data-id': 'choose', onchange: ({ target }) => update({ setShown: target.value }),
    }, state.sets.map((one) => make('option', { value: one.id, selected: one === set }, `${nameOf(one)} · ${one.songs.length}`)));
    return make('div', { class: 'set-head' }, choose,
      make('button', { type: 'button', class: 'small', 'data-id': 'new', onclick: setList.startNew }, 'New set'),
      menu.button({ class: 'small', 'data-id': 'more' }, 'This set', () => exportEntries(set), 'Export …'));
  }

  function build(now) {
    const set = setList.shown(now);
    if (!set) {
      const words = 'Put suggestions on the set with ★ or the P key. Tracks tick themselves when they play.';
      const start = make('button', { type: 'button', class: 'small', onclick: setList.startNew }, 'Start a set');
      const older = now.sets.length > 0 && [head(now.sets[0])];
      panel.replaceChildren(make('div', { class: 'empty' }, make('p', {}, words), older || start));
      return;
    }
    const songs = set.songs.map(known);
    const list = songs.length
      ? make('ol', { class: 'set' }, songs.map(row))
      : make('p', { class: 'empty' }, 'Nothing on this set yet. ★ puts a suggestion here.');
    dom.replaceKeepingFocus(panel, head(set), list);
  }

  function render(now) {
    const { view, sets, setShown, facts } = now;
    if (view !== 'set') return;
    if (drawn.sets === sets && drawn.setShown === setShown && drawn.facts === facts) return;
    drawn = { sets, setShown, facts };
    crate.lookUp(setList.shown(now)?.songs ?? []);
    build(now);
  }

  Velmor.view(['view', 'sets', 'setShown', 'facts'], render);
  Velmor.songsOfSet = () => (setList.shown(state)?.songs ?? []).map(known);
})();
