// What stands in place of the list before the first ranking: what is ready, what is missing, and
// where suggestions can come from.
(() => {
  'use strict';

  const { crate, dom, native, suggest, text } = Velmor;
  const { make } = dom;

  const sources = [
    'Mixxx', 'rekordbox', 'djay Pro', 'VirtualDJ', 'Serato', 'Spotify', 'Music', 'a browser',
  ];

  // What a provider is, roughly what it costs, and where its key comes from.
  const services = {
    Tinker: {
      about: 'Tinker runs open language models. Ten suggestions cost about a cent or less; the key comes from your account there.',
    },
    OpenAI: {
      about: 'OpenAI runs the GPT models. Ten suggestions cost about a cent or less; the key comes from your account there.',
      address: 'https://platform.openai.com/api-keys',
    },
  };

  function step(ready, title, ...rest) {
    const sign = make('span', { class: 'step-sign' }, ready && dom.icon('check'));
    return make('li', { class: ready ? 'step ready' : 'step' }, sign,
      make('div', { class: 'words' }, make('p', { class: 'title' }, title), rest));
  }

  const hint = (words) => make('p', { class: 'hint' }, words);
  const button = (label, act, look = 'small') => make('button', { type: 'button', class: look, onclick: act }, label);

  const many = (count) => `${count.toLocaleString('en')} ${count === 1 ? 'track' : 'tracks'}`;

  /** Where the music was found: "4,212 tracks found in Mixxx". */
  function found({ tracks, sources: places }) {
    const names = places.filter((one) => one.tracks > 0).map((one) => one.name);
    return `${many(tracks)} found${names.length ? ` in ${names.slice(0, 2).join(' and ')}` : ''}`;
  }

  function crateStep({ crate: music }) {
    if (!music) return false;
    if (music.reading && !crate.has()) return step(false, 'Looking for your own music', hint(`${Math.round(music.progress * 100)} % done`));
    if (suggest.isCrate()) return step(crate.has(), crate.has() ? `Your own music: ${many(music.tracks)}` : music.status);
    if (!crate.has()) return false;
    return step(false, 'Your own music', hint(`${found(music)}. No key, no account, no network, no cost.`),
      button('Use your own music', suggest.useCrate, 'primary'));
  }

  function keyStep({ app, refused }) {
    if (suggest.isCrate()) return false;
    const provider = suggest.provider();
    const open = () => Velmor.openSettings(refused === 'model' ? 'aiModel' : suggest.keyField());
    if (app.aiAvailable && !refused) return step(true, `${provider} is ready`);
    if (app.aiAvailable) {
      return step(false, `${provider} did not take the ${refused}`, button('Open settings', open));
    }
    const { about, address } = services[provider];
    return step(false, `${provider} needs a key`, hint(about),
      make('div', { class: 'row' }, button('Enter a key', open), address && button('Get a key', () => native.openLink(address))));
  }

  function trackStep({ track, playing }) {
    if (track && playing === 'playing') return step(true, make('bdi', {}, text.display(track)));
    return step(false, 'Play a track', hint('Velmor finds it in one of these.'),
      make('ul', { class: 'sources' }, sources.map((source) => make('li', {}, source))));
  }

  function soundStep({ app }) {
    if (suggest.isCrate()) return false;
    return app.essentiaAvailable
      ? step(true, 'Tempo and key are measured from the sound')
      : step(false, 'The sound is not measured',
        hint('Tempo and key are those of the source. Install the Essentia extractor to measure them.'));
  }

  /** The list of steps; empty while it is not known what is ready. */
  function start(state) {
    if (state.bridge !== 'ready' || !state.app) return [];
    const steps = [crateStep(state), keyStep(state), trackStep(state), soundStep(state)];
    return [make('ol', { class: 'steps' }, steps)];
  }

  Velmor.start = start;
})();
