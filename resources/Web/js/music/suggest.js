// Asking for suggestions, by hand or by the automatic detection, and what can be said meanwhile.
(() => {
  'use strict';

  const { crate, native, rankings, state, storage, text, update } = Velmor;

  // The native side may listen for 15 s and wait for the model; past these limits the run is given
  // up here, so that the button never stays dead.
  const manualLimit = 180;
  const autoLimit = 200;
  // An answer that comes this fast, in milliseconds, says that nobody listens any more.
  const prompt = 400;
  const runs = { manual: null, auto: null };
  let count = 0;
  let autoTimer = 0;
  let usualListening = Math.min(60, text.number(storage.read('listening')) || 18);

  const needsPermission = (message) => /^Velmor needs \w+ (permission|access) for /.test(message);

  function failed(message) {
    if (needsPermission(message) && !state.track) update({ playing: 'permission', permission: message, error: '' });
    else update({ error: message });
  }

  const modelName = () => (state.settings?.aiModel ?? '').trim().toLowerCase();
  const isCrate = () => modelName() === crate.model;

  const provider = () => {
    if (isCrate()) return 'Your crate';
    return modelName().startsWith('gpt-') ? 'OpenAI' : 'Tinker';
  };

  const keyField = () => (provider() === 'OpenAI' ? 'openaiApiKey' : 'tinkerApiKey');

  /** Whether a request can be sent at all. */
  const ready = () => state.app?.aiAvailable === true || (isCrate() && crate.has());

  /** What a run does, as far as the page can know. */
  function doing(now = Date.now()) {
    const { run } = state;
    if (run?.ahead || isCrate()) return 'Looking through your crate';
    if (run?.phase !== 'listening') return `Asking ${provider()}`;
    const left = Math.ceil(usualListening - (now - run.startedAt) / 1000);
    return left > 0 ? `Listening, about ${left} s more` : 'Listening, almost done';
  }

  const current = () => runs.manual ?? runs.auto;

  /**
   * The native side answers nothing while it listens, so a command that is answered promptly twice
   * in a row says that it has gone on to the model.
   */
  async function watchListening(run) {
    for (let times = 0; times < 2;) {
      await new Promise((next) => setTimeout(next, prompt));
      if (runs[run.kind]?.number !== run.number) return;
      const since = Date.now();
      const known = await native.call('GetAppInfo', [], manualLimit).catch(() => null);
      if (!known) return;
      times = Date.now() - since < prompt ? times + 1 : 0;
    }
    const now = runs[run.kind];
    if (now?.number !== run.number) return;
    const took = (Date.now() - run.startedAt) / 1000;
    if (took > 5) {
      usualListening = Math.min(60, took);
      storage.keep('listening', () => usualListening);
    }
    runs[run.kind] = { ...now, phase: 'asking' };
    update({ run: current() });
  }

  function begin(kind) {
    const listens = state.app?.essentiaAvailable === true && !isCrate();
    const run = { kind, number: (count += 1), startedAt: Date.now(), phase: listens ? 'listening' : 'asking' };
    runs[kind] = run;
    update({ run: current(), error: '' });
    if (listens) watchListening(run);
    return run;
  }

  function end(kind, number = runs[kind]?.number) {
    if (runs[kind]?.number !== number) return;
    runs[kind] = null;
    update({ run: current() });
  }

  /** Runs a request of the DJ's and shows what comes of it. */
  async function request(send) {
    if (state.run || state.bridge !== 'ready') return;
    const track = state.track?.id;
    const { number } = begin('manual');
    try {
      const result = await send();
      // A change of track meanwhile is newer knowledge than what the request began with.
      if (state.track?.id === track || !state.track) rankings.setTrack(result?.currentTrack);
      update({ refused: '' });
      rankings.arrived(result, 'manual');
      if (state.playing === 'permission') update({ playing: 'unknown', permission: '' });
    } catch (error) {
      failed(error.message);
      if (!state.track) await recall();
    } finally {
      end('manual', number);
    }
  }

  /** The track that was found before the request failed. */
  async function recall() {
    const found = await native.call('GetDetectedTrack', [], 5).catch(() => null);
    if (found && !state.track) rankings.setTrack(found);
  }

  const ask = () => request(() => native.call('SuggestTracks', [], manualLimit));

  /** The way on when the model does not answer, for a track that the crate has. */
  const askCrate = () => request(() => crate.after(state.track));

  /** Asks the DJ's own music from now on. */
  async function useCrate() {
    try {
      await Velmor.settings.save({ aiModel: crate.model });
      if (state.track) await ask();
    } catch (error) {
      update({ error: error.message });
    }
  }

  function endAuto() {
    clearTimeout(autoTimer);
    end('auto');
  }

  /** A new track starts a request on the native side when it is set to suggest and has a key. */
  function expectAuto() {
    endAuto();
    if (!state.settings?.autoSuggestTracks || !ready()) return;
    begin('auto');
    autoTimer = setTimeout(endAuto, autoLimit * 1000);
  }

  function listen() {
    native.on('track-changed', (payload) => {
      update({ error: '' });
      rankings.setTrack(payload);
      expectAuto();
    });
    native.on('track-stopped', () => {
      endAuto();
      if (state.track && state.playing === 'playing') update({ playing: 'stopped' });
    });
    native.on('suggestions-ready', (payload) => {
      endAuto();
      update({ refused: '' });
      rankings.setTrack(payload?.currentTrack);
      rankings.arrived(payload, 'auto');
    });
    native.on('analysis-error', (payload) => {
      endAuto();
      failed(text.text(payload) || 'The suggestion failed without a reason.');
    });
  }

  Velmor.suggest = { ask, askCrate, useCrate, doing, endAuto, isCrate, keyField, listen, provider, ready };
})();
