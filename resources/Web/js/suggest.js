// Asking for suggestions, by hand or by the automatic detection, and what can be said meanwhile.
(() => {
  'use strict';

  const { native, rankings, state, update } = Velmor;

  // The native side may listen for 15 s and wait 45 s for the model; past these limits the run is
  // given up here, so that the button never stays dead.
  const manualLimit = 180;
  const autoLimit = 120;
  let runs = 0;
  let autoTimer = 0;

  const needsPermission = (message) => /^Velmor needs \w+ (permission|access) for /.test(message);

  function failed(message) {
    if (needsPermission(message)) update({ playing: 'permission', permission: message, error: '' });
    else update({ error: message });
  }

  const provider = () => (/^gpt-/i.test((state.settings?.aiModel ?? '').trim()) ? 'OpenAI' : 'Tinker');

  const keyField = () => (provider() === 'OpenAI' ? 'openaiApiKey' : 'tinkerApiKey');

  /** What a run does, as far as the page can know. */
  const doing = () => `${state.app?.essentiaAvailable ? 'Listening and asking' : 'Asking'} ${provider()}`;

  async function ask() {
    if (state.run || state.bridge !== 'ready') return;
    const track = state.track?.id;
    const number = (runs += 1);
    update({ run: { kind: 'manual', number, startedAt: Date.now() }, error: '' });
    try {
      const result = await native.call('SuggestTracks', [], manualLimit);
      // A change of track meanwhile is newer knowledge than what the request began with.
      if (state.track?.id === track || !state.track) rankings.setTrack(result?.currentTrack);
      rankings.arrived(result, 'manual');
      if (state.playing === 'permission') update({ playing: 'unknown', permission: '' });
    } catch (error) {
      failed(error.message);
    } finally {
      if (state.run?.number === number) update({ run: null });
    }
  }

  function endAuto() {
    clearTimeout(autoTimer);
    if (state.run?.kind === 'auto') update({ run: null });
  }

  /** A new track starts a request on the native side when it is set to suggest and has a key. */
  function expectAuto() {
    endAuto();
    if (state.run || !state.settings?.autoSuggestTracks || !state.app?.aiAvailable) return;
    update({ run: { kind: 'auto', number: (runs += 1), startedAt: Date.now() } });
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
      rankings.setTrack(payload?.currentTrack);
      rankings.arrived(payload, 'auto');
    });
    native.on('analysis-error', (payload) => {
      endAuto();
      failed(Velmor.text.text(payload) || 'The suggestion failed without a reason.');
    });
  }

  Velmor.suggest = { ask, doing, endAuto, keyField, listen, provider };
})();
