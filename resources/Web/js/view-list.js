// The ranking as cards. A card is one large button; what can be done with its song lies beside it.
(() => {
  'use strict';

  const { actions, dom, rankings, settings, state, text, update } = Velmor;
  const { make } = dom;
  const panel = dom.byId('panel-list');
  let shown = null;

  function figure(card) {
    if (!card.tempo) return make('span', { class: 'tempo' }, text.bpm(card.bpm));
    const far = card.marks.some((mark) => mark.includes('BPM away'));
    return make(
      'span',
      { class: far ? 'tempo far' : 'tempo', title: `${text.bpm(card.bpm)} BPM ${card.tempo.label}`.trim() },
      make('span', { class: 'tempo-difference' }, text.signed(card.tempo.difference)),
      make('span', { class: 'tempo-bpm' }, [card.tempo.sign, text.bpm(card.bpm)].filter(Boolean).join(' ')),
    );
  }

  const score = (card) =>
    make(
      'span',
      { class: 'score', title: `Fits ${card.score} of 100` },
      make('span', { class: 'score-figure' }, card.score),
      make('span', { class: 'score-bar', '--score': card.score }),
    );

  const mark = (card) =>
    card.marks.length > 0 &&
    make('span', { class: 'flag', role: 'img', 'aria-label': 'Contradiction found', title: card.marks.join('\n') }, '!');

  function details(card) {
    const facts = [
      `Fits ${card.score} of 100`,
      card.album,
      card.genre,
      card.energy > 0 && `Energy ${card.energy}`,
      card.bpm > 0 && `${text.bpm(card.bpm)} BPM${card.tempo?.label ? `, ${card.tempo.label}` : ''}`,
      card.relation?.label,
    ];
    return make(
      'div',
      { class: 'details', id: `details-${card.rank}` },
      card.marks.map((words) => make('p', { class: 'contradiction' }, words)),
      make('p', { class: 'reason' }, card.reason || 'The model gave no reason.'),
      make('p', { class: 'facts' }, facts.filter(Boolean).join(' · ')),
    );
  }

  function tools(card) {
    const service = settings.services[settings.service()].name;
    const one = (name, icon, label, act) =>
      make('button', { type: 'button', class: 'tool', 'aria-label': name, title: name, onclick: act },
        dom.icon(icon), make('span', { class: 'tool-label', 'aria-hidden': 'true' }, label));
    return make(
      'div',
      { class: 'card-tools' },
      one(`Copy: ${text.display(card)}`, 'copy', 'Copy', () => actions.copySong(card)),
      one(`${service}: ${text.display(card)}`, 'search', service, () => actions.search(card)),
    );
  }

  function cardElement(card) {
    const { rank } = card;
    const main = make(
      'button',
      {
        type: 'button',
        class: 'card-main',
        'aria-expanded': 'false',
        'aria-controls': `details-${rank}`,
        onclick: () => update({ open: state.open === rank ? 0 : rank }),
      },
      make('span', { class: 'rank' }, rank),
      make(
        'span',
        { class: 'words' },
        make('span', { class: 'title clip' }, make('bdi', {}, card.song || 'Untitled')),
        make('span', { class: 'artist clip' }, make('bdi', {}, card.artist)),
      ),
      mark(card),
      figure(card),
      dom.chip(card.key, card.relation),
      score(card),
    );
    const item = make('li', { class: 'card', 'data-rank': rank }, main, details(card), tools(card));
    for (const event of ['pointerenter', 'focusin']) {
      item.addEventListener(event, () => update({ lit: rank }));
    }
    item.addEventListener('pointerleave', () => update({ lit: 0 }));
    return item;
  }

  function build(current) {
    shown = current.ranking;
    const cards = shown?.cards ?? [];
    const content = cards.length ? [make('ol', { class: 'cards' }, cards.map(cardElement))] : Velmor.start(current);
    panel.replaceChildren(...content);
  }

  function render(current) {
    if (current.ranking !== shown || !current.ranking) build(current);
    panel.classList.toggle('stale', rankings.stale(current.ranking, current.track));
    for (const item of panel.querySelectorAll('.card')) {
      const rank = Number(item.dataset.rank);
      item.classList.toggle('open', rank === current.open);
      item.classList.toggle('lit', rank === current.lit);
      item.firstElementChild.setAttribute('aria-expanded', String(rank === current.open));
    }
  }

  /** Puts the focus on a card, the first or last one when the rank lies outside. */
  function focusCard(rank) {
    const all = [...panel.querySelectorAll('.card-main')];
    all[Math.min(all.length, Math.max(1, rank)) - 1]?.focus();
  }

  for (const event of ['pointerdown', 'focusin', 'pointermove']) {
    panel.addEventListener(event, rankings.seen);
  }
  Velmor.view(['ranking', 'track', 'playing', 'open', 'lit', 'app', 'settings', 'bridge'], render);
  Velmor.focusCard = focusCard;
  Velmor.redrawList = () => build(state);
})();
