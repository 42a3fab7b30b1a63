// Where the set would go: tempo as a line and energy as bars, the current track first.
(() => {
  'use strict';

  const { dom, text } = Velmor;
  const { make } = dom;
  const strip = dom.byId('strip');
  const width = 300;
  const height = 36;
  let drawn;

  /** Songs in playing order with the tempo as it would be heard against the current track. */
  function points(ranking) {
    const heard = (card) =>
      card.tempo ? ranking.track.bpm + card.tempo.difference : card.bpm;
    return [
      { rank: 0, bpm: ranking.track.bpm, energy: ranking.track.energy },
      ...ranking.cards.map((card) => ({ rank: card.rank, bpm: heard(card), energy: card.energy })),
    ];
  }

  function scale(values) {
    const known = values.filter((value) => value > 0);
    const low = Math.min(...known);
    // Less than four beats of range would turn a steady set into mountains.
    const range = Math.max(4, Math.max(...known) - low);
    const floor = low - (range - (Math.max(...known) - low)) / 2;
    return (value) => height - 7 - ((value - floor) / range) * (height - 14);
  }

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
        class: song.rank ? 'strip-dot' : 'strip-dot now', 'data-rank': song.rank,
        d: `M${song.x} ${y(song.bpm)}h0.01`,
      }));
    return make(
      'svg',
      { viewBox: `0 0 ${width} ${height}`, preserveAspectRatio: 'none', 'aria-hidden': 'true' },
      bars,
      make('polyline', { class: 'strip-line', points: timed.map((song) => `${song.x},${y(song.bpm)}`).join(' ') }),
      dots,
    );
  }

  function describe(songs) {
    const known = songs.map((song) => song.bpm).filter((bpm) => bpm > 0);
    if (!known.length) return 'Tempo unknown';
    return `Tempo from ${text.bpm(Math.min(...known))} to ${text.bpm(Math.max(...known))} BPM`;
  }

  function legend(songs, lit) {
    const song = songs.find((one) => lit > 0 && one.rank === lit);
    const label = (kind, words) => make('span', { class: `strip-label of-${kind}` }, words);
    return song
      ? [label('tempo', `${text.bpm(song.bpm)} BPM`), label('energy', `Energy ${song.energy || '–'}`)]
      : [label('tempo', 'Tempo'), label('energy', 'Energy')];
  }

  function render({ ranking, lit, view }) {
    const visible = Boolean(ranking?.cards.length) && view !== 'history';
    dom.show(strip, visible);
    if (!visible) return;
    const songs = points(ranking);
    if (drawn !== ranking) {
      drawn = ranking;
      strip.replaceChildren(make('div', { class: 'strip-legend' }), chart(songs));
      strip.setAttribute('aria-label', describe(songs));
    }
    strip.firstElementChild.replaceChildren(...legend(songs, lit));
    for (const mark of strip.querySelectorAll('[data-rank]')) {
      mark.classList.toggle('lit', lit > 0 && Number(mark.dataset.rank) === lit);
    }
  }

  Velmor.view(['ranking', 'lit', 'view'], render);
})();
