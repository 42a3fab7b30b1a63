// The 82 by 82 square: key and tempo, a ring while a request runs, a dot for what is new. The
// style sheet shows it whenever the window is that small, so there is no moment of a wrong view.
(() => {
  'use strict';

  const { camelot, dom, native, text, update } = Velmor;
  const { make } = dom;
  const square = dom.byId('square');

  function label({ track, playing, run, fresh, waiting }) {
    const parts = [
      track && playing !== 'permission' ? `Key ${track.key || 'unknown'}, ${text.bpm(track.bpm)} BPM` : 'Velmor',
      playing === 'permission' && 'permission needed',
      playing === 'stopped' && 'stopped',
      run && 'asking',
      (fresh || waiting) && 'new suggestions',
    ];
    return parts.filter(Boolean).join(', ');
  }

  function render(state) {
    const { track, playing, run, fresh, waiting } = state;
    const on = track && playing === 'playing';
    dom.paint(square, on ? camelot.parse(track.key) : null);
    square.classList.toggle('busy', Boolean(run));
    square.setAttribute('aria-label', label(state));
    const parts = on
      ? [make('span', { class: 'compact-key' }, track.key || '–'),
        make('span', { class: 'compact-bpm' }, text.bpm(track.bpm))]
      : [dom.icon('mark')];
    square.replaceChildren(
      ...parts,
      make('span', { class: 'compact-ring' }),
      fresh || waiting ? make('span', { class: 'compact-new' }) : '',
    );
  }

  native.on('compact-mode', (compact) => update({ compact: compact === true }));
  Velmor.view(['track', 'playing', 'run', 'fresh', 'waiting'], render);
})();
