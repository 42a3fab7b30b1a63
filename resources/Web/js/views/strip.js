// Where the night would go: tempo as a line and energy as bars. Of a ranking, the current track
// first; of the set, its songs in order with the steps between their keys.
(() => {
  'use strict';

  const { camelot, dom, judge, rankings, sieve, text } = Velmor;
  const { make } = dom;
  const strip = dom.byId('strip');
  const width = 300;
  const height = 36;
  let drawn = [];

  /** A ranking's songs with the tempo as it would be heard against the current track. */
  function pointsOf(ranking, cards) {
    const heard = (card) =>
      card.tempo ? ranking.track.bpm + card.tempo.difference : card.bpm;
    return [
      { rank: 0, bpm: ranking.track.bpm, energy: ranking.track.energy },
      ...cards.map((card) => ({ rank: card.rank, bpm: heard(card), energy: card.energy })),
    ];
  }

  /** The set's songs, each tempo as it would be heard after the one before. */
  function pointsOfSet(songs) {
    let last = 0;
    return songs.map((song, i) => {
      const tempo = judge.tempo(last, song.bpm);
      last = tempo ? last + tempo.difference : song.bpm || last;
      const step = i > 0 ? camelot.relation(songs[i - 1].key, song.key) : null;
      return { rank: 0, bpm: song.bpm > 0 ? last : 0, energy: song.energy, step };
    });
  }

  function scale(values) {
    const known = values.filter((value) => value > 0);
    const low = known.length ? Math.min(...known) : 0;
    // Less than four beats of range would turn a steady set into mountains.
    const high = Math.max(low, ...known);
    const range = Math.max(4, high - low);
    const floor = low - (range - (high - low)) / 2;
    return (value) => height - 7 - ((value - floor) / range) * (height - 14);
  }

  /** Between two songs of a set: a line in the colour of how their keys fit, broken when they clash. */
  const steps = (songs, x) =>
    songs.map((song, i) => song.step && make('path', {
      class: `strip-step of-${song.step.grade}`, d: `M${x(i - 1)} ${height - 2}H${x(i)}`,
    }));

  function chart(songs) {
    const step = width / songs.length;
    const x = (i) => (i + 0.5) * step;
    const y = scale(songs.map((song) => song.bpm));
    const timed = songs.map((song, i) => ({ ...song, x: x(i) })).filter((song) => song.bpm > 0);
    const bars = songs.map((song, i) =>
      make('rect', {
        class: 'strip-energy', 'data-rank': song.rank,
        x: x(i) - step * 0.32, width: step * 0.64,
        y: height - Math.max(1, (song.energy / 100) * height), height: Math.max(1, (song.energy / 100) * height),
      }));
    const dots = timed.map((song) =>
      make('path', {
        class: song.rank || 'step' in song ? 'strip-dot' : 'strip-dot now', 'data-rank': song.rank,
        d: `M${song.x} ${y(song.bpm)}h0.01`,
      }));
    return make(
      'svg',
      { viewBox: `0 0 ${width} ${height}`, preserveAspectRatio: 'none', 'aria-hidden': 'true' },
      bars,
      steps(songs, x),
      make('polyline', { class: 'strip-line', points: timed.map((song) => `${song.x},${y(song.bpm)}`).join(' ') }),
      dots,
    );
  }

  function describe(songs) {
    const known = songs.map((song) => song.bpm).filter((bpm) => bpm > 0);
    const steps = songs.map((song) => song.step).filter(Boolean);
    const keys = steps.length ? `, ${steps.filter((step) => step.fits).length} of ${steps.length} key steps fit` : '';
    if (!known.length) return `Tempo unknown${keys}`;
    return `Tempo from ${text.bpm(Math.min(...known))} to ${text.bpm(Math.max(...known))} BPM${keys}`;
  }

  function legend(songs, lit) {
    const song = songs.find((one) => lit > 0 && one.rank === lit);
    const label = (kind, words) => make('span', { class: `strip-label of-${kind}` }, words);
    return song
      ? [label('tempo', `${text.bpm(song.bpm)} BPM`), label('energy', `Energy ${song.energy || '–'}`)]
      : [label('tempo', 'Tempo'), label('energy', 'Energy'), songs.some((one) => one.step) && label('step', 'Keys')].filter(Boolean);
  }

  /** What the strip shows now, and what it was made of; null for nothing. */
  function subject(now) {
    if (now.view === 'history') return null;
    if (now.view === 'set') {
      const songs = Velmor.songsOfSet();
      return songs.length > 1 ? { points: pointsOfSet(songs), of: [now.sets, now.setShown, now.facts] } : null;
    }
    const ranking = rankings.shown(now);
    const cards = sieve.cards(now);
    return cards.length ? { points: pointsOf(ranking, cards), of: [ranking, now.sieve, now.out] } : null;
  }

  function render(now) {
    const found = subject(now);
    dom.show(strip, Boolean(found));
    if (!found) return;
    const { points, of } = found;
    if (of.some((one, i) => one !== drawn[i]) || of.length !== drawn.length) {
      drawn = of;
      strip.replaceChildren(make('div', { class: 'strip-legend' }), chart(points));
      strip.setAttribute('aria-label', describe(points));
    }
    const { lit } = now;
    strip.firstElementChild.replaceChildren(...legend(points, lit));
    for (const mark of strip.querySelectorAll('[data-rank]')) {
      mark.classList.toggle('lit', lit > 0 && Number(mark.dataset.rank) === lit);
    }
  }

  Velmor.view(['ranking', 'ahead', 'lit', 'view', 'sets', 'setShown', 'facts', 'sieve', 'out'], render);
})();
