// How the list is sorted and what it leaves out.
(() => {
  'use strict';

  const { rankings, state, update } = Velmor;

  const nothing = Object.freeze({ sort: 'rank', fits: false, near: false, owned: false, genre: '' });
  const nearPitch = 3.05;

  const sorts = {
    rank: { name: 'Rank', by: (card) => card.rank },
    tempo: { name: 'Tempo', by: (card) => (card.tempo ? Math.abs(card.tempo.pitch) : Infinity) },
    key: { name: 'Key', by: (card) => -card.why.key.grade },
    energy: { name: 'Energy', by: (card) => card.energy || Infinity },
  };

  const genres = (card) => card.genre.split(/[;,/]/).map((one) => one.trim()).filter(Boolean);

  const keeps = {
    fits: (card) => Boolean(card.relation?.fits),
    near: (card) => Boolean(card.tempo) && Math.abs(card.tempo.pitch) <= nearPitch,
    owned: (card) => Boolean(card.owned),
    genre: (card, wanted) => genres(card).includes(wanted),
  };

  const current = ({ sieve }) => sieve ?? nothing;

  /** Whether it leaves something out or sorts otherwise. */
  const isOn = (now) => JSON.stringify(current(now)) !== JSON.stringify(nothing);

  /** The cards of a ranking that the list shows, in its order. */
  function cards(now) {
    const all = rankings.shown(now)?.cards ?? [];
    const sieve = current(now);
    const tests = Object.keys(keeps).filter((name) => sieve[name]);
    const { by } = sorts[sieve.sort];
    return all
      .filter((card) => !now.out.includes(card.id) && tests.every((name) => keeps[name](card, sieve[name])))
      .sort((a, b) => by(a) - by(b) || a.rank - b.rank);
  }

  /** The genres of a ranking, those of most cards first. */
  function genresOf(all, most = 4) {
    const counts = new Map();
    for (const one of all.flatMap(genres)) counts.set(one, (counts.get(one) ?? 0) + 1);
    return [...counts].sort((a, b) => b[1] - a[1]).slice(0, most).map(([name]) => name);
  }

  const set = (change) => update({ sieve: { ...current(state), ...change } });
  const clear = () => update({ sieve: null });
  const toggleOpen = () => update({ sieveOpen: !state.sieveOpen, view: 'list' });

  Velmor.sieve = { sorts, current, isOn, cards, genresOf, set, clear, toggleOpen };
})();
