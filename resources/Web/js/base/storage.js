// What outlives the window: small JSON texts, written a moment after they change. Storage may be
// refused to a file page; everything then lasts as long as the window. Keys to services never come
// here.
(() => {
  'use strict';

  const prefix = 'velmor.';
  const due = new Map();
  let timer = 0;

  /** What was kept under a name; null when there is nothing that can be read. */
  function read(name) {
    try {
      return JSON.parse(localStorage.getItem(prefix + name));
    } catch {
      return null;
    }
  }

  function flush() {
    clearTimeout(timer);
    timer = 0;
    for (const [name, value] of due) {
      try {
        localStorage.setItem(prefix + name, JSON.stringify(value()));
      } catch {
        // Refused or full: nothing to do.
      }
    }
    due.clear();
  }

  /** Keeps what `value` gives when the writing is due. */
  function keep(name, value) {
    due.set(name, value);
    timer ||= setTimeout(flush, 300);
  }

  window.addEventListener('pagehide', flush);

  const list = (name) => {
    const value = read(name);
    return Array.isArray(value) ? value : [];
  };

  Velmor.storage = { read, list, keep };
})();
