// The wheel of keys: the current key, the keys that fit it, and the suggestions as numbered dots.
(() => {
  'use strict';

  const { camelot, dom, rankings, update } = Velmor;
  const { make } = dom;
  const panel = dom.byId('panel-wheel');
  const rings = { A: { inner: 31, outer: 64 }, B: { inner: 66, outer: 99 } };
  let drawn = { ranking: undefined, track: undefined };

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

  /** Where the dots of one segment stand: side by side, or in two rows when they would touch. */
  function spots(place, count) {
    const step = (radius) => (17 / radius) * (180 / Math.PI);
    const single = count * step(middle(place)) < 30;
    const rows = single ? [[count, 0]] : [[Math.ceil(count / 2), 8.5], [Math.floor(count / 2), -8.5]];
    return rows.flatMap(([size, shift]) => {
      const radius = middle(place) + shift;
      return Array.from({ length: size }, (_, i) =>
        at(radius, place.n * 30 + (i - (size - 1) / 2) * step(radius)));
    });
  }

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

  function dot(card, [x, y]) {
    const press = (event) => {
      if (event.key !== 'Enter' && event.key !== ' ') return;
      event.preventDefault();
      openCard(card.rank);
    };
    const label = [`${card.rank}, ${card.song}`, card.key, card.relation?.label].filter(Boolean).join(', ');
    const group = make(
      'g',
      {
        class: 'dot', role: 'button', tabindex: 0, 'aria-label': label, 'data-rank': card.rank,
        onclick: () => openCard(card.rank), onkeydown: press,
      },
      make('circle', { cx: x, cy: y, r: 8 }),
      make('text', { x, y, dy: '0.36em' }, card.rank),
    );
    return lights(group, card.rank);
  }

  /** The cards that have a place on the wheel, each with the spot where its dot stands. */
  function placed(cards) {
    const byKey = Map.groupBy(cards, (card) => card.key);
    return [...byKey].flatMap(([key, group]) => {
      const place = camelot.parse(key);
      if (!place) return [];
      const places = spots(place, group.length);
      return group.map((card, i) => ({ card, spot: places[i] }));
    });
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
    const dots = placed(cards);
    return make(
      'svg',
      { class: 'wheel', viewBox: '-100 -100 200 200', role: 'group', 'aria-label': 'Wheel of keys' },
      camelot.all.map((key) => segment(key, current, taken.has(key))),
      ways(dots, current),
      make('circle', { class: 'hub-ground', r: 29 }),
      make('text', { class: 'hub', dy: camelot.parse(current) ? '-0.02em' : '0.36em' }, current || '–'),
      make('text', { class: 'hub-name', dy: '1.3em' }, camelot.name(current)),
      dots.map(({ card, spot }) => dot(card, spot)),
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
    const cards = state.ranking?.cards ?? [];
    const current = (cards.length ? state.ranking.track : state.track)?.key ?? '';
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
    const { ranking, track, lit, view } = state;
    if (view !== 'wheel') return;
    if (ranking !== drawn.ranking || track !== drawn.track) build(state);
    drawn = { ranking, track };
    panel.classList.toggle('stale', rankings.stale(ranking, track));
    for (const element of panel.querySelectorAll('[data-rank]')) {
      element.classList.toggle('lit', Number(element.dataset.rank) === lit);
    }
  }

  panel.addEventListener('focusin', rankings.seen);
  panel.addEventListener('pointermove', rankings.seen);
  Velmor.view(['ranking', 'track', 'lit', 'view'], render);
})();
