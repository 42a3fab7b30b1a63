// The native side as the page sees it. Runs in the page before its scripts; a test sets what each
// method answers in window.native.answers and reads window.native.calls.
(() => {
  const native = { calls: [], answers: {}, config: null };

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
      return { aiAvailable: ready, essentiaAvailable: true, provider };
    },
  };

  // An answer is a value, an Error text in { reject }, or { wait: true } for none until a test gives it.
  function answer({ id, method, args }) {
    const set = native.answers[method];
    if (set?.wait) native.waiting = id;
    else if (set?.reject) window.__velmorReject(id, set.reject);
    else if (set !== undefined) window.__velmorResolve(id, structuredClone(set));
    else window.__velmorResolve(id, methods[method]?.(...args) ?? null);
  }

  native.count = (method) => native.calls.filter((call) => call.method === method).length;
  native.handler = {
    postMessage(message) {
      native.calls.push(structuredClone(message));
      setTimeout(() => answer(message));
    },
  };
  window.native = native;
  if (!window.noBridge) window.webkit = { messageHandlers: { velmor: native.handler } };
})();
