// The native side as the page sees it. Runs in the page before its scripts; a test sets what each
// method answers in window.native.answers and reads window.native.calls.
(() => {
  const native = { calls: [], answers: {}, config: null, crate: null };

  const methods = {
    GetSettings: () => ({ ...native.config }),
    SaveSettings: (config) => {
      native.config = { ...config, ...native.normalise?.(config) };
      return null;
    },
    GetAppInfo: () => ({ version: '1.4.0', buildDate: '22.11.2026' }),
    GetState: () => {
      const openai = native.config.aiModel.startsWith('gpt-');
      const ready = Boolean(native.config[openai ? 'openaiApiKey' : 'tinkerApiKey']);
      const provider = ready ? `${openai ? 'OpenAI' : 'Tinker'} recommendations ready` : 'API key required';
      return { aiAvailable: ready || native.config.aiModel === 'velmor/crate', essentiaAvailable: true, provider };
    },
  };

  // What a program that knows the DJ's own music answers; without native.crate it is an older one.
  const key = ({ song, artist }) => `${artist} - ${song}`;
  const crateMethods = {
    GetCrate: () => native.crate.told,
    LookUpInCrate: (songs) => songs.map((song) => native.crate.songs[key(song)] ?? null),
    SuggestAfter: (song) => {
      if (!native.crate.songs[key(song)]) throw new Error(`Your crate has no track with the name "${key(song)}".`);
      return native.crate.after[key(song)] ?? { currentTrack: song, recommendations: [], source: '', notice: '' };
    },
    SetCrateKeys: (count) => { native.crate.told.keys = count; },
    ShowInFileManager: () => null,
  };
  const silent = ['StartAutoDetection', 'RestoreWindow', 'WindowMinimise', 'BrowserOpenURL', 'GetDetectedTrack', 'HoldWindow'];

  function run(method, args) {
    const command = methods[method] ?? (native.crate && crateMethods[method]);
    if (!command && !silent.includes(method)) throw new Error(`Unknown method ${method}`);
    return command?.(...args) ?? null;
  }

  // An answer is a value, an Error text in { reject }, or { wait: true } for none until a test gives it.
  function answer({ id, method, args }) {
    const set = native.answers[method];
    if (set?.wait) native.waiting = id;
    else if (set?.reject) window.__velmorReject(id, set.reject);
    else if (set !== undefined) window.__velmorResolve(id, structuredClone(set));
    else {
      try {
        window.__velmorResolve(id, structuredClone(run(method, args)));
      } catch ({ message }) {
        window.__velmorReject(id, message);
      }
    }
  }

  native.count = (method) => native.calls.filter((call) => call.method === method).length;
  native.handler = {
    postMessage(message) {
      native.calls.push(structuredClone(message));
      // While Velmor listens it answers nothing.
      if (native.busy) native.later.push(message);
      else setTimeout(() => answer(message));
    },
  };
  native.later = [];
  native.listen = (busy) => {
    native.busy = busy;
    if (!busy) native.later.splice(0).forEach(answer);
  };
  window.native = native;
  if (!window.noBridge) window.webkit = { messageHandlers: { velmor: native.handler } };
})();
