// What an opened card tells, and what can be done with its song.
(() => {
  'use strict';

  const { actions, ahead, crate, dom, menu, setList, settings, state, text } = Velmor;
  const { make } = dom;

  const names = { tempo: 'Tempo', key: 'Key', energy: 'Energy' };

  function claim(card, name) {
    if (name === 'tempo' && card.claimed.bpm) return dom.struck(text.bpm(card.claimed.bpm), 'tempo');
    if (name === 'key' && card.claimed.key) return dom.struck(card.claimed.key, 'key');
    return false;
  }

  /** The three relations in words. */
  const reasons = (card) =>
    make('dl', { class: 'why' }, Object.entries(card.why).flatMap(([name, why]) => [
      make('dt', {}, make('span', { class: `level of-${why.grade}` }), names[name]),
      make('dd', {}, why.words, claim(card, name) && [' (the model: ', claim(card, name), ')']),
    ]));

  function lastPlayed({ owned }) {
    const date = owned?.lastPlayed ? new Date(owned.lastPlayed) : null;
    return date && !Number.isNaN(date.getTime()) && `you played it on ${text.day(date)}`;
  }

  const facts = (card) => [
    `Fits ${card.score} of 100`, card.album, card.genre, card.owned && 'in your crate', lastPlayed(card),
  ].filter(Boolean).join(' · ');

  const details = (card) =>
    make(
      'div',
      { class: 'details', id: `details-${card.rank}` },
      card.marks.map((words) => make('p', { class: 'contradiction' }, words)),
      reasons(card),
      make('p', { class: 'reason' }, card.reason || 'The model gave no reason.'),
      make('p', { class: 'facts' }, facts(card)),
    );

  const copies = (card) => [
    [`For search: ${text.query(card)}`, () => actions.copyQuery(card)],
    [`As text: ${text.plain(card)}`, () => actions.copyText(card)],
  ];

  const label = (words) => make('span', { class: 'tool-label', 'aria-hidden': 'true' }, words);

  /** A tool; those that show only in an opened card are `late`. */
  function tool(card, name, icon, words, act, late = false) {
    const attributes = { class: late ? 'tool late' : 'tool', 'aria-label': `${name}: ${text.display(card)}`, title: name };
    return make('button', { type: 'button', ...attributes, onclick: act }, dom.icon(icon), label(words));
  }

  function tools(card) {
    const service = settings.services[settings.service()].name;
    const uri = card.owned?.uri;
    const copyAttributes = { class: 'tool', 'aria-label': `Copy: ${text.display(card)}`, title: 'Copy (C)' };
    return make(
      'div',
      { class: 'card-tools' },
      menu.button(copyAttributes, 'Copy', () => copies(card), dom.icon('copy'), label('Copy')),
      tool(card, service, 'search', service, () => actions.search(card), true),
      uri && tool(card, 'Show file', 'folder', 'Show file', () => crate.showFile(uri), true),
      card.owned && tool(card, 'What follows?', 'follow', 'What follows?', () => ahead.look(card), true),
      tool(card, 'Not tonight', 'close', 'Not tonight', () => setList.throwOut(card)),
    );
  }

  Velmor.cardDetails = (card) => ({ details: details(card), tools: tools(card) });
  Velmor.view(['crate'], () => { if (state.ranking) Velmor.redrawList?.(); });
})();
