// The night: what was heard and suggested, newest first, as a line of times that can be searched
// and taken along.
(() => {
  'use strict';

  const { actions, dom, exports, menu, night, setList, state, text } = Velmor;
  const { make } = dom;
  const panel = dom.byId('panel-history');
  const most = 400;
  let words = '';
  let drawn = {};

  const search = make('input', {
    type: 'search', id: 'history-search', placeholder: 'Search', 'aria-label': 'Search the history', autocomplete: 'off',
    spellcheck: 'false', oninput: ({ target }) => { words = text.fold(target.value); fill(); },
  });
  const after = make('p', { class: 'last-time' });
  const list = make('div', { class: 'nights' });
  const tools = make('div', { class: 'set-head' }, search,
    menu.button({ class: 'small' }, 'The history', entries, 'Export …'));

  const figures = (song) =>
    [song.bpm > 0 && `${text.bpm(song.bpm)} BPM`, song.key].filter(Boolean).join(', ');

  function fits(entry) {
    if (!words) return true;
    const songs = entry.kind === 'track' ? [entry.song] : [entry.ranking.track, ...entry.ranking.cards];
    return songs.some((song) => text.fold(`${song.artist} ${song.song} ${song.key}`).includes(words));
  }

  const shown = () => state.history.filter(fits);

  function entries() {
    const copy = (label, write) => [`Copy as ${label}`, () => actions.copy(write(shown()), `History copied as ${label}`)];
    return [
      copy('text', exports.nightAsText), copy('CSV', exports.nightAsTable), copy('cue sheet', exports.nightAsCue),
      ['Forget the history', night.forget],
    ];
  }

  function trackRow({ at, song }) {
    return make(
      'li',
      { class: 'past', 'data-id': `${at.getTime()}` },
      make('time', { datetime: at.toISOString() }, text.clock(at)),
      make(
        'span',
        { class: 'words' },
        make('span', { class: 'title clip' }, make('bdi', {}, song.song || 'Untitled')),
        make('span', { class: 'artist clip' }, make('bdi', {}, song.artist)),
      ),
      make('span', { class: 'tempo' }, text.bpm(song.bpm), make('span', { class: 'unseen' }, ' BPM')),
      dom.chip(song.key),
    );
  }

  function rankingRow({ at, ranking }) {
    const count = ranking.cards.length;
    const how = ranking.kind === 'auto' ? 'by itself' : 'asked for';
    return make(
      'li',
      { class: 'past given' },
      make('time', { datetime: at.toISOString() }, text.clock(at)),
      make(
        'details',
        {},
        make('summary', {}, `${count} suggestion${count === 1 ? '' : 's'}, ${how}`),
        make('p', { class: 'artist' }, `For ${text.display(ranking.track)}`),
        make('ol', {}, ranking.cards.map((card) =>
          make('li', {}, make('span', { class: 'rank' }, card.rank), make('bdi', {}, text.display(card)),
            make('span', { class: 'figures' }, figures(card))))),
      ),
    );
  }

  function fill() {
    const found = shown();
    const byNight = Map.groupBy(found.slice(0, most), (entry) => text.night(entry.at));
    const nights = [...byNight].map(([date, rows]) => {
      const name = date === setList.tonight() ? 'Tonight' : text.day(new Date(`${date}T12:00:00`));
      return [make('h2', {}, name),
        make('ol', { class: 'history' }, rows.map((entry) => (entry.kind === 'track' ? trackRow(entry) : rankingRow(entry))))];
    });
    const empty = make('p', { class: 'empty' }, words ? 'Nothing in the history fits.' : 'Tracks and suggestions gather here.');
    const rest = found.length > most && make('p', { class: 'empty' }, `${found.length - most} older entries. Search to see them.`);
    list.replaceChildren(...(found.length ? nights.flat() : [empty]), rest || '');
  }

  function lastTime({ track }) {
    const next = night.afterLastTime(track);
    dom.show(after, Boolean(next));
    if (!next) return;
    after.replaceChildren('After this you played ', make('b', {}, make('bdi', {}, text.display(next.song))),
      ` (${text.night(next.at) === setList.tonight() ? text.clock(next.at) : text.day(next.at)})`);
  }

  function render(now) {
    if (now.view !== 'history' || (now.history === drawn.history && now.track === drawn.track)) return;
    drawn = { history: now.history, track: now.track };
    dom.show(tools, now.history.length > 0);
    lastTime(now);
    fill();
  }

  panel.append(tools, after, list);
  Velmor.view(['history', 'view', 'track'], render);
})();
