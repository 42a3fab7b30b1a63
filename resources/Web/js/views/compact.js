// The 82 by 82 square: key and tempo, a ring while a request runs, a dot for what is new, a sign for
// what failed. The
// style sheet shows it whenever the window is that small, so there is no moment of a wrong view.
(() => {
  'use strict';

  const { camelot, dom, native, text, update } = Velmor;
  const { make } = dom;
  const square = dom.byId('square');

  function label({ track, playing, run, fresh, waiting, error, settings }) {
    const parts = [
      track && playing !== 'permission' ? `Key ${track.key || 'unknown'}, ${text.bpm(track.bpm)} BPM` : 'Velmor',
      playing === 'permission' && 'permission needed',
      playing === 'stopped' && 'stopped',
      run && 'asking',
      error && !run && 'the last request failed',
      !track && !run && settings?.autoSuggestTracks && 'waiting for a track',
      (fresh || waiting) && 'new suggestions',
    ];
    return parts.filter(Boolean).join(', ');
  }

  function render(state) {
    const { track, playing, run, fresh, waiting, error, settings } = state;
    const on = track && playing === 'playing';
    const failed = (error || playing === 'permission') && !run;
    dom.paint(square, on ? camelot.parse(track.key) : null);
    square.classList.toggle('busy', Boolean(run));
    square.classList.toggle('waits', !track && !run && Boolean(settings?.autoSuggestTracks));
    square.setAttribute('aria-label', label(state));
    const parts = on
      ? [make('span', { class: 'compact-key' }, track.key || '–'),
        make('span', { class: 'compact-bpm' }, text.bpm(track.bpm))]
      : [dom.icon('mark')];
    const corner = failed ? make('span', { class: 'compact-failed' }, '!')
      : fresh || waiting ? make('span', { class: 'compact-new' }) : '';
    square.replaceChildren(...parts, make('span', { class: 'compact-ring' }), corner);
  }

  native.on('compact-mode', (compact) => update({ compact: compact === true }));
  Velmor.view(['track', 'playing', 'run', 'fresh', 'waiting', 'error', 'settings'], render);
})();
