// Calls to the native side with a limit on waiting, and the events that come from it.
(() => {
  'use strict';

  const { update } = Velmor;

  const missing =
    'The page cannot reach Velmor. Close the window and start Velmor again; ' +
    'if this stays, install it again.';

  function withLimit(promise, seconds, method) {
    return new Promise((resolve, reject) => {
      const late = () => reject(new Error(`Velmor did not answer within ${seconds} s (${method}).`));
      const timer = setTimeout(late, seconds * 1000);
      promise.then(resolve, reject).finally(() => clearTimeout(timer));
    });
  }

  /**
   * Runs a command of the native side; rejects with an Error whose message can be shown. A command
   * may have to wait until Velmor has listened.
   */
  function call(method, args = [], seconds = 60) {
    if (!window.velmor || !window.webkit?.messageHandlers?.velmor) {
      update({ bridge: 'missing' });
      return Promise.reject(new Error(missing));
    }
    return withLimit(window.velmor.call(method, ...args), seconds, method);
  }

  /** Links leave the page only through the native side, and only as web addresses. */
  function openLink(address) {
    if (!/^https?:\/\//i.test(address)) return;
    call('BrowserOpenURL', [address]).catch((error) => update({ error: error.message }));
  }

  function on(event, handler) {
    window.addEventListener(`velmor:${event}`, ({ detail }) => handler(detail));
  }

  Velmor.native = { call, on, openLink, missing };
})();
