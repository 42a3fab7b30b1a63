// What the page can work out itself about a ranking. Models invent; a card whose own figures speak
// against its place gets a mark with the reason in words.
(() => {
  'use strict';

  const { camelot, text } = Velmor;

  /**
   * Distance of a tempo from the current one, also taken at half and double time, whichever lies
   * closest. Null when either is unknown.
   */
  function tempo(current, next) {
    if (!(current > 0 && next > 0)) return null;
    const ways = [
      { factor: 1, sign: '', label: '' },
      { factor: 2, sign: '½', label: 'half time' },
      { factor: 0.5, sign: '2×', label: 'double time' },
    ];
    const measured = ways.map((way) => ({ ...way, difference: next * way.factor - current }));
    return measured.reduce((best, way) =>
      Math.abs(way.difference) < Math.abs(best.difference) ? way : best,
    );
  }

  // "Song (Extended Mix)" after "Song" is the same song again; a named remix is another one.
  const versions = /\s*[([](original|extended|radio|club|album)( (mix|edit|version))?[)\]]\s*$/i;
  const version = (title) => text.fold(title).replace(versions, '');
  const sameSong = (a, b) =>
    a.id !== '' && b.id !== '' && text.fold(a.artist) === text.fold(b.artist) &&
    version(a.song) === version(b.song);

  /**
   * Indexes of the fewest scores that break a falling order: what a longest non-rising run of them
   * leaves over.
   */
  function misplaced(scores) {
    const runs = [];
    for (const [i, score] of scores.entries()) {
      let best = [];
      for (let j = 0; j < i; j += 1) {
        if (scores[j] >= score && runs[j].length > best.length) best = runs[j];
      }
      runs.push([...best, i]);
    }
    const longest = runs.reduce((a, b) => (b.length > a.length ? b : a), []);
    return new Set([...scores.keys()].filter((i) => !longest.includes(i)));
  }

  function marks(card, cards, current, tolerance) {
    const found = [];
    if (sameSong(card, current)) found.push('This is the track playing now.');
    const twin = cards.find((other) => other.rank < card.rank && sameSong(card, other));
    if (twin) found.push(`The same song as number ${twin.rank}.`);
    if (card.tempo && Math.abs(card.tempo.difference) > tolerance) {
      const away = Math.abs(card.tempo.difference).toFixed(1);
      found.push(`${away} BPM away, your tolerance is ±${text.bpm(tolerance)}.`);
    }
    if (card.relation && !card.relation.fits) {
      found.push(`${card.key} clashes with ${current.key}.`);
    }
    return found;
  }

  /** The ranking's songs with everything the page adds: rank, tempo, key relation and marks. */
  function cards(recommendations, current, tolerance) {
    const list = recommendations.map((song, index) => ({
      ...song,
      rank: index + 1,
      tempo: tempo(current.bpm, song.bpm),
      relation: camelot.relation(current.key, song.key),
    }));
    const outOfOrder = misplaced(list.map((card) => card.score));
    return list.map((card, index) => {
      const found = marks(card, list, current, tolerance);
      if (outOfOrder.has(index)) found.push(`Scored ${card.score}, out of order at this place.`);
      return { ...card, marks: found };
    });
  }

  Velmor.judge = { tempo, cards };
})();
