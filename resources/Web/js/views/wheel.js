// The wheel of keys: the current key, the keys that fit it, and the suggestions as numbered dots.
(() => {
  'use strict';

  const { camelot, dom, rankings, sieve, update } = Velmor;
  const { make } = dom;
  const panel = dom.byId('panel-wheel');
  const rings = { A: { inner: 31, outer: 64 }, B: { inner: 66, outer: 99 } };
  let drawn = {};

  function at(radius, degrees) {
    const angle = ((degrees - 90) * Math.PI) / 180;
    return [radius * Math.cos(angle), radius * Math.sin(angle)].map((value) => value.toFixed(2));
  }

  function segmentPath({ n, mode }) {
    const { inner, outer } = rings[mode];
    const [from, to] = [n * 30 - 14.3, n * 30 + 14.3];
    return [
      `M${at(outer, from)}A${outer} ${outer} 0 0 1 ${at(outer, to)}`,
      `L${at(inner, to)}A${inner} ${inner} 0 0 0 ${at(inner, from)}Z`,
    ].join('');
  }

  const middle = ({ mode }) => (rings[mode].inner + rings[mode].outer) / 2;

  function segment(key, current, taken) {
    const place = camelot.parse(key);
    const relation = camelot.relation(current, key);
    const kind = key === current ? 'current' : relation?.fits ? 'fits' : 'other';
    const [x, y] = at(middle(place), place.n * 30);
    const group = make(
      'g',
      { class: `segment ${kind}`, 'aria-hidden': 'true' },
      make('path', { d: segmentPath(place) }),
      !taken && make('text', { x, y, dy: '0.36em' }, key),
    );
    dom.paint(group, place);
    return group;
  }

  // Rows of a segment's dots: how far from its middle, and how many fit side by side without
  // touching the next key.
  const rows = {
    A: [{ shift: 8.3, most: 1 }, { shift: -8.3, most: 1 }],
    B: [{ shift: 8.3, most: 2 }, { shift: -8.3, most: 2 }],
  };

  /** Where the dots of one segment stand: in its middle, side by side, or in two rows. */
  function spots(place, count) {
    const step = (radius) => (17.5 / radius) * (180 / Math.PI);
    const [{ most }] = rows[place.mode];
    const sizes = count <= most ? [[count, 0]]
      : [[Math.ceil(count / 2), rows[place.mode][0].shift], [Math.floor(count / 2), rows[place.mode][1].shift]];
    return sizes.flatMap(([size, shift]) => {
      const radius = middle(place) + shift;
      return Array.from({ length: size }, (_, i) =>
        at(radius, place.n * 30 + (i - (size - 1) / 2) * step(radius)));
    });
  }

  /** As many dots as a segment holds. */
  const room = ({ mode }) => rows[mode].reduce((sum, row) => sum + row.most, 0);

  function openCard(rank) {
    update({ view: 'list', open: rank });
    // After the redraw, and before the next key.
    queueMicrotask(() => Velmor.focusCard(rank));
  }

  function lights(element, rank) {
    for (const event of ['pointerenter', 'focusin']) {
      element.addEventListener(event, () => update({ lit: rank }));
    }
    for (const event of ['pointerleave', 'focusout']) {
      element.addEventListener(event, () => update({ lit: 0 }));
    }
    return element;
  }

  function pressable(attributes, act, [x, y], words) {
    const press = (event) => {
      if (event.key !== 'Enter' && event.key !== ' ') return;
      event.preventDefault();
      act();
    };
    return make(
      'g',
      { role: 'button', tabindex: 0, onclick: act, onkeydown: press, ...attributes },
      make('circle', { cx: x, cy: y, r: 8 }),
      make('text', { x, y, dy: '0.36em' }, words),
    );
  }

  function dot({ card, spot }) {
    const label = [`${card.rank}, ${card.song}`, card.key, card.relation?.label].filter(Boolean).join(', ');
    const attributes = { class: 'dot', 'aria-label': label, 'data-rank': card.rank };
    return lights(pressable(attributes, () => openCard(card.rank), spot, card.rank), card.rank);
  }

  /** Lights the rows of several cards beside the wheel. */
  function lightRows(cards, isLit) {
    const ranks = new Set(isLit ? cards.map((card) => String(card.rank)) : []);
    for (const one of panel.querySelectorAll('.wheel-row')) one.classList.toggle('lit', ranks.has(one.dataset.rank));
  }

  /** The dots of a key that has no room for all: the rest as one with their number. */
  function cluster({ cards, spot }) {
    const label = `+${cards.length} in ${cards[0].key}: ${cards.map((card) => `${card.rank}, ${card.song}`).join('; ')}`;
    const goTo = () => panel.querySelector(`.wheel-row[data-rank="${cards[0].rank}"]`)?.focus();
    const group = pressable({ class: 'dot cluster', 'aria-label': label }, goTo, spot, `+${cards.length}`);
    for (const event of ['pointerenter', 'focusin']) group.addEventListener(event, () => lightRows(cards, true));
    for (const event of ['pointerleave', 'focusout']) group.addEventListener(event, () => lightRows(cards, false));
    return group;
  }

  /** The cards that have a place on the wheel with the spots where their dots stand, and the clusters. */
  function placed(cards) {
    const byKey = [...Map.groupBy(cards, (card) => card.key)].filter(([key]) => camelot.parse(key));
    const dots = [];
    const clusters = [];
    for (const [key, group] of byKey) {
      const place = camelot.parse(key);
      const most = room(place);
      const places = spots(place, Math.min(group.length, most));
      const single = group.length > most ? most - 1 : group.length;
      dots.push(...group.slice(0, single).map((card, i) => ({ card, spot: places[i] })));
      if (single < group.length) clusters.push({ cards: group.slice(single), spot: places[single] });
    }
    return { dots, clusters };
  }

  /** Lines from the current key to each dot; one shows while its card is lit. */
  function ways(dots, current) {
    const home = camelot.parse(current);
    if (!home) return [];
    const [x1, y1] = at(middle(home), home.n * 30);
    return dots.map(({ card, spot: [x2, y2] }) =>
      make('line', { class: 'way', 'data-rank': card.rank, x1, y1, x2, y2 }));
  }

  function wheel(current, cards) {
    const taken = new Set(cards.map((card) => card.key));
    const { dots, clusters } = placed(cards);
    return make(
      'svg',
      { class: 'wheel', viewBox: '-100 -100 200 200', role: 'group', 'aria-label': 'Wheel of keys' },
      camelot.all.map((key) => segment(key, current, taken.has(key))),
      ways(dots, current),
      make('circle', { class: 'hub-ground', r: 29 }),
      make('text', { class: 'hub', dy: camelot.parse(current) ? '-0.02em' : '0.36em' }, current || '–'),
      make('text', { class: 'hub-name', dy: '1.3em' }, camelot.name(current)),
      dots.map(dot),
      clusters.map(cluster),
    );
  }

  function row(card) {
    const button = make(
      'button',
      { type: 'button', class: 'wheel-row', 'data-rank': card.rank, onclick: () => openCard(card.rank) },
      make('span', { class: 'rank' }, card.rank),
      make('span', { class: 'clip' }, make('bdi', {}, card.song || 'Untitled')),
      dom.chip(card.key, card.relation),
    );
    return make('li', {}, lights(button, card.rank));
  }

  function build(state) {
    const cards = sieve.cards(state);
    const current = (cards.length ? rankings.shown(state).track : state.track)?.key ?? '';
    panel.replaceChildren(
      make(
        'div',
        { class: 'wheel-view' },
        wheel(current, cards),
        cards.length > 0 && make('ol', { class: 'wheel-rows' }, cards.map(row)),
      ),
    );
  }

  function render(state) {
    const { ahead, ranking, track, lit, view, sieve: chosen, out, run } = state;
    if (view !== 'wheel') return;
    const now = { ranking, ahead, track, chosen, out };
    if (Object.keys(now).some((name) => now[name] !== drawn[name])) build(state);
    drawn = now;
    panel.classList.toggle('stale', Boolean(ranking) && (rankings.stale(ranking, track) || Boolean(run)));
    for (const element of panel.querySelectorAll('[data-rank]')) {
      element.classList.toggle('lit', Number(element.dataset.rank) === lit);
    }
  }

  panel.addEventListener('focusin', rankings.seen);
  panel.addEventListener('pointermove', rankings.seen);
  Velmor.view(['ranking', 'ahead', 'track', 'lit', 'view', 'sieve', 'out', 'run'], render);
})();
