// What stands in place of the list before the first ranking: what is ready and what is missing.
(() => {
  'use strict';

  const { dom, suggest, text } = Velmor;
  const { make } = dom;

  const sources = [
    'Mixxx', 'rekordbox', 'djay Pro', 'VirtualDJ', 'Serato', 'Spotify', 'Music', 'a browser',
  ];

  function step(ready, title, ...rest) {
    const sign = make('span', { class: 'step-sign' }, ready && dom.icon('check'));
    return make('li', { class: ready ? 'step ready' : 'step' }, sign,
      make('div', { class: 'words' }, make('p', { class: 'title' }, title), rest));
  }

  const hint = (words) => make('p', { class: 'hint' }, words);

  function keyStep({ app }) {
    const provider = suggest.provider();
    if (app.aiAvailable) return step(true, `${provider} is ready`);
    return step(false, `${provider} needs a key`, hint('Without one nothing can be suggested.'),
      make('button', { type: 'button', class: 'small', onclick: () => Velmor.openSettings(suggest.keyField()) },
        'Enter the key'));
  }

  function trackStep({ track, playing }) {
    if (track && playing === 'playing') return step(true, make('bdi', {}, text.display(track)));
    return step(false, 'Play a track', hint('Velmor finds it in one of these.'),
      make('ul', { class: 'sources' }, sources.map((source) => make('li', {}, source))));
  }

  const soundStep = ({ app }) =>
    app.essentiaAvailable
      ? step(true, 'Tempo and key are measured from the sound')
      : step(false, 'The sound is not measured',
        hint('Tempo and key are those of the source. Install the Essentia extractor to measure them.'));

  /** The list of steps; empty while it is not known what is ready. */
  function start(state) {
    if (state.bridge !== 'ready' || !state.app) return [];
    return [make('ol', { class: 'steps' }, keyStep(state), trackStep(state), soundStep(state))];
  }

  Velmor.start = start;
})();
