// The page's end of the native bridge. The host installs this text at document start, before any
// script of the page; it is not referenced by index.html.
(() => {
  'use strict';

  const pending = new Map();
  let lastId = 0;

  function call(method, ...args) {
    return new Promise((resolve, reject) => {
      const handler = window.webkit?.messageHandlers?.velmor;
      if (!handler) {
        reject(new Error('The native side of Velmor is missing.'));
        return;
      }
      const id = String(++lastId);
      pending.set(id, { resolve, reject });
      try {
        handler.postMessage({ id, method, args });
      } catch (error) {
        pending.delete(id);
        reject(error);
      }
    });
  }

  // An id that is unknown or was answered before has no entry, and its reply is dropped.
  function settle(id, how, value) {
    const entry = pending.get(id);
    pending.delete(id);
    entry?.[how](value);
  }

  window.__velmorResolve = (id, value) => settle(id, 'resolve', value);
  window.__velmorReject = (id, message) => settle(id, 'reject', new Error(message));
  window.__velmorEmit = (name, payload) => {
    window.dispatchEvent(new CustomEvent(name, { detail: payload }));
  };
  window.velmor = Object.freeze({ call });
})();
