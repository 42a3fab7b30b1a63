// The line under the tabs, shown when asked for: sorting and what the list leaves out. While it is
// closed, what is active stays as one button.
(() => {
  'use strict';

  const { dom, rankings, setList, sieve, update } = Velmor;
  const { make } = dom;
  const place = dom.byId('sieve');
  const opener = dom.byId('open-sieve');

  function chip(label, isOn, act, id, name) {
    return make('button', {
      type: 'button', class: 'pick', 'aria-pressed': String(Boolean(isOn)), 'aria-label': name, 'data-id': id, onclick: act,
    }, label);
  }

  const sorting = (now) =>
    make('div', { class: 'picks', role: 'group', 'aria-label': 'Sort by' },
      make('span', { class: 'picks-name', 'aria-hidden': 'true' }, 'Sort'),
      Object.entries(sieve.sorts).map(([id, { name }]) =>
        chip(name, now.sort === id, () => sieve.set({ sort: id }), `sort-${id}`)));

  function keeping(now, state) {
    const { cards } = rankings.shown(state);
    const flip = (name) => () => sieve.set({ [name]: !now[name] });
    const genres = sieve.genresOf(cards);
    return make('div', { class: 'picks', role: 'group', 'aria-label': 'Show only' },
      make('span', { class: 'picks-name', 'aria-hidden': 'true' }, 'Only'),
      chip('Fits my key', now.fits, flip('fits'), 'fits'),
      chip('±3 %', now.near, flip('near'), 'near', 'No more than ±3 percent of pitch'),
      state.crate && chip('My crate', now.owned, flip('owned'), 'owned'),
      genres.length > 1 && genres.map((genre) =>
        chip(genre, now.genre === genre, () => sieve.set({ genre: now.genre === genre ? '' : genre }), `genre ${genre}`)));
  }

  /** What is left, and the way back to all; nothing when all is there in its order. */
  function summary(now, state) {
    const all = rankings.shown(state).cards;
    const left = sieve.cards(state).length;
    const words = [
      now.sort !== 'rank' && `by ${sieve.sorts[now.sort].name.toLowerCase()}`,
      left < all.length && `${left} of ${all.length}`,
    ].filter(Boolean).join(', ');
    const showAll = () => {
      sieve.clear();
      setList.bringBack();
    };
    return words && make('div', { class: 'sieve-foot' }, make('p', { class: 'sieve-sum' }, words),
      make('button', { type: 'button', class: 'pick', 'data-id': 'all', onclick: showAll }, 'Show all'));
  }

  function render(state) {
    const isUseful = state.view === 'list' && Boolean(rankings.shown(state)?.cards.length);
    const isOpen = state.sieveOpen && isUseful;
    dom.show(opener, isUseful);
    opener.setAttribute('aria-expanded', String(isOpen));
    opener.classList.toggle('on', sieve.isOn(state));
    const now = sieve.current(state);
    const sum = isUseful && summary(now, state);
    const parts = [...(isOpen ? [sorting(now), keeping(now, state)] : []), sum].filter(Boolean);
    dom.show(place, parts.length > 0);
    dom.replaceKeepingFocus(place, ...parts);
  }

  opener.addEventListener('click', sieve.toggleOpen);
  place.addEventListener('keydown', (event) => {
    if (event.key !== 'Escape') return;
    event.stopPropagation();
    update({ sieveOpen: false });
    opener.focus();
  });
  Velmor.view(['ranking', 'ahead', 'sieve', 'sieveOpen', 'view', 'out', 'crate'], render);
})();
