// The ranking as cards. A card is one large button; what can be done with its song lies beside it.
(() => {
  'use strict';

  const { dom, rankings, sieve, setList, state, text, update } = Velmor;
  const { make } = dom;
  const panel = dom.byId('panel-list');
  let drawn = {};

  function figure(card) {
    const { claimed, tempo } = card;
    const far = card.marks.some((mark) => mark.includes('BPM away'));
    const under = claimed.bpm
      ? dom.struck(text.bpm(claimed.bpm), 'tempo')
      : tempo && make('span', { class: 'pitch' }, make('span', { class: 'unseen' }, 'pitch '), text.percent(tempo.pitch));
    return make(
      'span',
      { class: far ? 'tempo far' : 'tempo', title: `Tempo: ${card.why.tempo.words}` },
      make('span', { class: 'bpm' }, tempo?.sign && make('span', { class: 'way-sign', title: tempo.label }, tempo.sign), text.bpm(card.bpm), make('span', { class: 'unseen' }, ' BPM ')),
      under,
    );
  }

  const keyOf = (card) =>
    make('span', { class: 'key' }, dom.chip(card.key, card.relation),
      card.claimed.key && dom.struck(card.claimed.key, 'key'));

  /** Three small columns: how tempo, key and energy stand to the track on air. */
  function levels(card) {
    const words = Object.entries(card.why).map(([name, why]) => `${name} ${why.words}`).join('; ');
    return make('span', { class: 'levels', role: 'img', 'aria-label': words, title: words },
      Object.values(card.why).map((why) => make('span', { class: `level of-${why.grade}` })));
  }

  const score = (card) =>
    make('span', { class: 'score' },
      make('span', { class: 'score-figure', title: `Fits ${card.score} of 100` },
        make('span', { class: 'unseen' }, 'fits '), card.score, make('span', { class: 'unseen' }, ' of 100')),
      levels(card));

  const flag = (card) =>
    card.marks.length > 0 &&
    make('span', { class: 'flag', role: 'img', 'aria-label': 'Contradiction found', title: card.marks.join('\n') }, '!');

  function mainButton(card) {
    const { rank } = card;
    return make(
      'button',
      {
        type: 'button', class: 'card-main', 'aria-expanded': 'false', 'aria-controls': `details-${rank}`,
        onclick: () => update({ open: state.open === rank ? 0 : rank }),
      },
      make('span', { class: 'rank' }, rank),
      make(
        'span',
        { class: 'words' },
        make('span', { class: 'title clip' },
          card.owned && make('span', { class: 'owned', role: 'img', 'aria-label': 'In your crate', title: 'In your crate' }),
          make('bdi', {}, card.song || 'Untitled')),
        make('span', { class: 'artist clip' }, make('bdi', {}, card.artist)),
      ),
      flag(card),
      figure(card),
      keyOf(card),
      score(card),
    );
  }

  const star = (card) =>
    make('button', {
      type: 'button', class: 'star', 'aria-pressed': 'false', 'aria-label': `On the set: ${text.display(card)}`,
      title: 'Put on the set (P)', onclick: () => setList.toggle(card),
    }, dom.icon('star'));

  function cardElement(card) {
    const { rank } = card;
    const more = Velmor.cardDetails(card);
    const item = make('li', { class: 'card', 'data-rank': rank, 'data-id': card.id || `${rank}` },
      mainButton(card), star(card), more.details, more.tools);
    for (const event of ['pointerenter', 'focusin']) {
      item.addEventListener(event, () => update({ lit: rank }));
    }
    item.addEventListener('pointerleave', () => update({ lit: 0 }));
    Velmor.actions.draggable(item, card);
    return item;
  }

  function aheadBar({ ahead }) {
    const last = ahead.at(-1);
    return last && make('div', { class: 'ahead', role: 'group', 'aria-label': 'What would follow' },
      make('button', { type: 'button', class: 'small', onclick: () => Velmor.ahead.back() }, '← Back'),
      make('p', { class: 'clip' }, 'After ', make('b', {}, make('bdi', {}, text.display(last.track)))));
  }

  function nothingLeft() {
    return make('div', { class: 'empty' }, make('p', {}, 'No suggestion is left with this choice.'),
      make('button', { type: 'button', class: 'small', onclick: () => { sieve.clear(); setList.bringBack(); } }, 'Show all'));
  }

  function content(now) {
    const shown = rankings.shown(now);
    if (!shown?.cards.length) return Velmor.start(now);
    const cards = sieve.cards(now);
    return [aheadBar(now), cards.length ? make('ol', { class: 'cards' }, cards.map(cardElement)) : nothingLeft()];
  }

  function build(now) {
    const shown = rankings.shown(now);
    drawn = { shown, sieve: now.sieve, out: now.out };
    dom.replaceKeepingFocus(panel, ...content(now).filter(Boolean));
  }

  function paint(now, item) {
    const rank = Number(item.dataset.rank);
    const isOpen = rank === now.open;
    item.classList.toggle('open', isOpen);
    item.classList.toggle('lit', rank === now.lit);
    item.firstElementChild.setAttribute('aria-expanded', String(isOpen));
    const isOn = setList.has({ id: item.dataset.id });
    item.classList.toggle('starred', isOn);
    item.querySelector('.star').setAttribute('aria-pressed', String(isOn));
  }

  function render(now) {
    const shown = rankings.shown(now);
    const isSame = shown && shown === drawn.shown && now.sieve === drawn.sieve && now.out === drawn.out;
    if (!isSame) build(now);
    const isOld = now.ahead.length === 0 && (rankings.stale(shown, now.track) || Boolean(now.run));
    panel.classList.toggle('stale', Boolean(shown) && isOld);
    for (const item of panel.querySelectorAll('.card')) paint(now, item);
  }

  /** Puts the focus on the card of a rank. */
  function focusCard(rank) {
    panel.querySelector(`[data-rank="${rank}"] .card-main`)?.focus();
  }

  /** From the focused card up or down, in the order that is shown. */
  function focusNext(step) {
    const all = [...panel.querySelectorAll('.card-main')];
    const at = all.indexOf(document.activeElement?.closest('.card')?.firstElementChild);
    all[at < 0 ? 0 : Math.min(all.length - 1, Math.max(0, at + step))]?.focus();
  }

  for (const event of ['pointerdown', 'focusin', 'pointermove']) {
    panel.addEventListener(event, rankings.seen);
  }
  const fields = [
    'ranking', 'ahead', 'track', 'playing', 'open', 'lit', 'app', 'settings', 'bridge', 'sieve', 'out', 'sets', 'setShown',
    'run', 'crate', 'refused',
  ];
  Velmor.view(fields, render);
  Velmor.focusCard = focusCard;
  Velmor.focusNext = focusNext;
  Velmor.redrawList = () => {
    build(state);
    render(state);
  };
})();
