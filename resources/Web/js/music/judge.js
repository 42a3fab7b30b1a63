// What the page can work out itself about a ranking. Models invent; a card whose own figures speak
// against its place gets a mark with the reason in words.
(() => {
  'use strict';

  const { camelot, text } = Velmor;

  // Tempos that lie no further apart are shown as the same.
  const noticeable = 0.05;

  /**
   * Distance of a tempo from the current one in BPM, also taken at half and double time, whichever
   * lies closest. `pitch` is the change in percent at which the next song matches. Null when either
   * tempo is unknown.
   */
  function tempo(current, next) {
    if (!(current > 0 && next > 0)) return null;
    const ways = [
      { factor: 1, sign: '', label: '' },
      { factor: 2, sign: '½', label: 'half time' },
      { factor: 0.5, sign: '2×', label: 'double time' },
    ];
    const measured = ways.map((way) => {
      const heard = next * way.factor;
      return { ...way, difference: heard - current, pitch: (current / heard - 1) * 100 };
    });
    return measured.reduce((best, way) =>
      Math.abs(way.difference) < Math.abs(best.difference) ? way : best,
    );
  }

  /** The key that a song sounds in when its pitch is changed without key lock. */
  function unlockedKey(key, pitch) {
    return camelot.shifted(key, Math.round(12 * Math.log2(1 + pitch / 100)));
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
      let best = { length: 0, before: null };
      for (let j = 0; j < i; j += 1) {
        if (scores[j] >= score && runs[j].length > best.length) best = runs[j];
      }
      runs.push({ length: best.length + 1, index: i, before: best.length ? best : null });
    }
    const left = new Set(scores.keys());
    let run = runs.reduce((a, b) => (b.length > (a?.length ?? 0) ? b : a), null);
    for (; run; run = run.before) left.delete(run.index);
    return left;
  }

  const grade = (value, good, fair) => (value <= good ? 3 : value <= fair ? 2 : 1);

  function tempoWhy({ bpm, tempo: fit }) {
    if (!fit) return { grade: 0, words: bpm > 0 ? `${text.bpm(bpm)} BPM` : 'unknown' };
    const way = fit.label ? `, ${fit.label}` : '';
    const match = Math.abs(fit.difference) < noticeable ? 'the same' : `${text.percent(fit.pitch)} to match`;
    return { grade: grade(Math.abs(fit.pitch), 2, 6), words: `${text.bpm(bpm)} BPM, ${match}${way}` };
  }

  function keyWhy({ key, relation, tempo: fit }, current) {
    if (!relation) return { grade: 0, words: key || 'unknown' };
    const unlocked = fit ? unlockedKey(key, fit.pitch) : key;
    const without = unlocked === key ? '' : `; ${unlocked} without key lock`;
    return { grade: relation.grade, words: `${current.key} → ${key}, ${relation.label}${without}` };
  }

  function energyWhy({ energy }, current) {
    if (!(energy > 0)) return { grade: 0, words: 'unknown' };
    if (!(current.energy > 0)) return { grade: 0, words: `${energy} of 100` };
    const step = energy - current.energy;
    const words = step === 0 ? 'the same' : `${Math.abs(step)} ${step > 0 ? 'higher' : 'lower'}`;
    return { grade: grade(Math.abs(step), 10, 25), words: `${energy} of 100, ${words}` };
  }

  /** How a card stands to the current song in tempo, key and energy: a grade and words for each. */
  const why = (card, current) => ({
    tempo: tempoWhy(card), key: keyWhy(card, current), energy: energyWhy(card, current),
  });

  function marks(card, cards, current, tolerance) {
    const found = [];
    if (sameSong(card, current)) found.push('This is the track playing now.');
    const twin = cards.find((other) => other.rank < card.rank && sameSong(card, other));
    if (twin) found.push(`The same song as number ${twin.rank}.`);
    if (card.tempo && Math.abs(card.tempo.difference) > tolerance + noticeable) {
      const away = Math.abs(card.tempo.difference).toFixed(1);
      found.push(`${away} BPM away, your tolerance is ±${text.bpm(tolerance)}.`);
    }
    if (card.relation && !card.relation.fits) {
      found.push(`${card.key} clashes with ${current.key}.`);
    }
    return found;
  }

  const sameTempo = (a, b) => [0.5, 1, 2].some((way) => Math.abs(a * way - b) <= b * 0.01);

  /** A song with what the crate knows of it. What the model claimed otherwise stays as `claimed`. */
  function corrected(song, fact) {
    if (!fact) return { ...song, owned: null, claimed: {} };
    const claimed = {};
    if (fact.bpm > 0 && song.bpm > 0 && !sameTempo(song.bpm, fact.bpm)) claimed.bpm = song.bpm;
    if (fact.key && song.key && fact.key !== song.key) claimed.key = song.key;
    return {
      ...song, owned: fact, claimed,
      bpm: fact.bpm || song.bpm, key: fact.key || song.key, genre: song.genre || fact.genre,
    };
  }

  /**
   * The ranking's songs with everything the page adds: rank, tempo, key relation and marks. `facts`
   * holds what the crate knows, by the songs' ids.
   */
  function cards(recommendations, current, tolerance, facts = new Map()) {
    const list = recommendations.map((given, index) => {
      const song = corrected(given, facts.get(given.id));
      return {
        ...song,
        rank: index + 1,
        tempo: tempo(current.bpm, song.bpm),
        relation: camelot.relation(current.key, song.key),
      };
    });
    const outOfOrder = misplaced(list.map((card) => card.score));
    return list.map((card, index) => {
      const found = marks(card, list, current, tolerance);
      if (outOfOrder.has(index)) found.push(`Scored ${card.score}, out of order at this place.`);
      return { ...card, marks: found, why: why(card, current) };
    });
  }

  Velmor.judge = { tempo, cards };
})();
