// The track on air: its name, its figures, and what is known when there is none.
(() => {
  'use strict';

  const { camelot, dom, text, suggest } = Velmor;
  const { byId, setText, show } = dom;

  /** One of: missing, permission, playing, heard, stopped, finding, starting, listening, idle. */
  function situation(state) {
    if (state.bridge === 'missing') return 'missing';
    if (state.playing === 'permission' && !state.track) return 'permission';
    if (state.track && state.playing === 'stopped') return 'stopped';
    // Without the automatic detection nobody looks whether it still plays.
    if (state.track) return state.settings?.autoSuggestTracks ? 'playing' : 'heard';
    if (state.run) return 'finding';
    if (state.bridge === 'starting') return 'starting';
    return state.settings?.autoSuggestTracks ? 'listening' : 'idle';
  }

  const labels = {
    starting: 'Starting',
    missing: 'Not connected',
    permission: 'Permission needed',
    playing: 'Now playing',
    stopped: 'Stopped',
    finding: 'Detecting',
    listening: 'Detecting',
    idle: 'Nothing playing yet',
  };

  const titles = {
    starting: 'Velmor',
    missing: 'Velmor is not answering',
    finding: 'Looking for the track',
    listening: 'Waiting for a track',
    idle: 'Play something',
    permission: 'Velmor needs your permission',
  };

  function words(state, now) {
    if (now === 'missing') return Velmor.native.missing;
    if (now === 'permission') return state.permission;
    if (now === 'finding') return `${suggest.doing()}.`;
    if (now === 'starting') return '';
    return now === 'listening'
      ? 'The next track shows up here by itself.'
      : 'Start a track, then ask for the next. With “Auto” on, Velmor asks by itself.';
  }

  // What the native side calls the source, on a system that has a name of its own for it.
  const isMac = /mac/i.test(navigator.platform);

  /** "Media player · Tinker" for "macOS Media Control + Tinker". */
  function sourceWords(source) {
    const [name, ...rest] = source.split(' + ');
    return [!isMac && name === 'macOS Media Control' ? 'Media player' : name, ...rest].join(' · ');
  }

  const noticeWords = (notice) =>
    isMac ? notice : notice.replace('macOS media session', 'media player').replace('macOS now-playing metadata', 'the media player');

  function renderTrack(state) {
    const { track } = state;
    setText(byId('now-title'), track.song || 'Untitled');
    const facts = [track.album !== track.artist && track.album, track.genre].filter(Boolean);
    byId('now-artist').replaceChildren(
      dom.make('bdi', {}, track.artist),
      ...facts.map((fact) => dom.make('span', { class: 'fact' }, ' · ', dom.make('bdi', {}, fact))),
    );
    setText(byId('now-bpm'), text.bpm(track.bpm));
    byId('now-key').replaceChildren(dom.chip(track.key));
    const shown = state.ranking;
    const notice = shown?.track.id === track.id ? shown.notice : '';
    setText(byId('now-more'), noticeWords(notice));
  }

  function renderWords(state, now) {
    setText(byId('now-title'), titles[now] ?? labels[now]);
    setText(byId('now-artist'), '');
    setText(byId('now-more'), words(state, now));
  }

  function render(state) {
    const now = situation(state);
    const hasTrack = now === 'playing' || now === 'heard' || now === 'stopped';
    byId('now').dataset.state = now;
    byId('lamp').dataset.state = now;
    setText(byId('now-state'), now === 'heard' ? `Heard at ${text.clock(state.heardAt)}` : labels[now]);
    show(byId('now-figures'), hasTrack);
    if (hasTrack) renderTrack(state);
    else renderWords(state, now);
    const place = hasTrack ? camelot.parse(state.track.key) : null;
    dom.paint(byId('now'), place);
    setText(byId('source-text'), sourceWords(state.ranking?.source || state.app?.provider || 'Velmor'));
  }

  Velmor.view(['bridge', 'playing', 'permission', 'track', 'heardAt', 'run', 'ranking', 'settings', 'app'], render);
  Velmor.situation = situation;
})();
