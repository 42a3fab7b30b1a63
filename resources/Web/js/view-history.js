// What was heard and suggested since the program started, newest first. Kept in memory only.
(() => {
  'use strict';

  const { actions, dom, state, text } = Velmor;
  const { make } = dom;
  const panel = dom.byId('panel-history');
  let drawn;

  const figures = (song) =>
    [song.bpm > 0 && `${text.bpm(song.bpm)} BPM`, song.key].filter(Boolean).join(', ');

  const line = (song) => [text.display(song), figures(song)].filter(Boolean).join('  ');

  /** The history as plain text, in the order it happened. */
  function exported(entries) {
    const lines = [...entries].reverse().flatMap((entry) => {
      const time = text.clock(entry.at);
      if (entry.kind === 'track') return [`${time}  ${line(entry.song)}`];
      const { cards, track } = entry.ranking;
      return [
        `${time}  Suggestions for ${text.display(track)}`,
        ...cards.map((card) => `       ${card.rank}. ${line(card)}`),
      ];
    });
    return lines.join('\n');
  }

  function trackRow({ at, song }) {
    return make(
      'li',
      { class: 'past' },
      make('time', {}, text.clock(at)),
      make(
        'span',
        { class: 'words' },
        make('span', { class: 'title clip' }, make('bdi', {}, song.song || 'Untitled')),
        make('span', { class: 'artist clip' }, make('bdi', {}, song.artist)),
      ),
      make('span', { class: 'tempo' }, text.bpm(song.bpm)),
      dom.chip(song.key),
    );
  }

  function rankingRow({ at, ranking }) {
    const count = ranking.cards.length;
    const how = ranking.kind === 'auto' ? 'by itself' : 'asked for';
    return make(
      'li',
      { class: 'past given' },
      make('time', {}, text.clock(at)),
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

  function render({ history, view }) {
    if (view !== 'history' || history === drawn) return;
    drawn = history;
    if (!history.length) {
      panel.replaceChildren(make('p', { class: 'empty' }, 'Tracks and suggestions of this session gather here.'));
      return;
    }
    const copy = () => actions.copy(exported(state.history), 'History copied');
    panel.replaceChildren(
      make('ol', { class: 'history' }, history.map((entry) =>
        entry.kind === 'track' ? trackRow(entry) : rankingRow(entry))),
      make('button', { type: 'button', class: 'small', onclick: copy }, 'Copy as text'),
    );
  }

  Velmor.view(['history', 'view'], render);
})();
