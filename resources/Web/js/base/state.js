// One state, changed only through update(). Views name the fields they show; those whose fields
// changed are drawn once, after the running task.
(() => {
  'use strict';

  const state = {
    bridge: 'starting', // 'starting', 'ready', 'missing'
    settings: null, // the stored settings without the keys
    app: null, // AppState
    info: null, // AppInfo
    crate: null, // the DJ's own music as crate.js knows it; null for a program without
    facts: new Map(), // what the crate knows of songs, by their ids
    track: null, // the song last seen, see text.song
    heardAt: null, // when it was seen last
    playing: 'unknown', // 'unknown', 'playing', 'stopped', 'permission'
    permission: '', // the sentence to show while permission is needed
    run: null, // the request that runs: { kind: 'manual' | 'auto', startedAt, phase }, see suggest.js
    ranking: null, // what was suggested last, see rankings.js
    ahead: [], // rankings for songs that might be played, each after one of those before
    fresh: false, // the ranking came by itself and was not touched yet
    waiting: null, // a ranking that came while the list was being read
    error: '',
    refused: '', // what the provider did not take: 'key', 'model'
    view: 'list', // 'list', 'wheel', 'set', 'history'
    open: 0, // rank of the opened card, 0 for none
    lit: 0, // rank under the pointer or focus, 0 for none
    sieve: null, // how the list is sorted and what it leaves out, see sieve.js
    sieveOpen: false,
    sets: [], // see set-list.js
    setShown: '', // id of the set that the view shows
    out: [], // songs that were thrown out tonight
    history: [], // see night.js
    compact: false,
  };

  const views = [];
  const changed = new Set();
  let scheduled = false;

  function draw() {
    scheduled = false;
    const fields = new Set(changed);
    changed.clear();
    for (const view of views) {
      if (view.fields.some((field) => fields.has(field))) view.render(state);
    }
  }

  function update(patch) {
    for (const [field, value] of Object.entries(patch)) {
      if (state[field] === value) continue;
      state[field] = value;
      changed.add(field);
    }
    if (scheduled || changed.size === 0) return;
    scheduled = true;
    queueMicrotask(draw);
  }

  /** Registers a view and draws it for the first time. */
  function view(fields, render) {
    views.push({ fields, render });
    render(state);
  }

  Velmor.state = state;
  Velmor.update = update;
  Velmor.view = view;
})();
