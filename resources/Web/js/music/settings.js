// Reading and saving the stored settings. The keys never enter the page's state; the settings
// form asks for them when it opens and forgets them when it closes.
(() => {
  'use strict';

  const { native, rankings, storage, suggest, text, update, state } = Velmor;

  const themes = ['light', 'dark', 'red-light', 'red', 'orange-light', 'orange'];
  // Seconds: Velmor answers nothing while it listens.
  const patience = 120;
  const themeKey = 'theme';
  const serviceKey = 'search';

  const services = {
    spotify: { name: 'Spotify', address: 'https://open.spotify.com/search/' },
    youtube: { name: 'YouTube', address: 'https://www.youtube.com/results?search_query=' },
    beatport: { name: 'Beatport', address: 'https://www.beatport.com/search?q=' },
  };

  function applyTheme(theme) {
    document.documentElement.dataset.theme = themes.includes(theme) ? theme : 'dark';
  }

  let chosen = storage.read(serviceKey);
  const service = () => (chosen in services ? chosen : 'spotify');

  function setService(name) {
    chosen = name;
    storage.keep(serviceKey, () => name);
  }

  // What the DJ has switched and the native side has not stored yet; null for nothing.
  let wish = null;

  const wished = (config) => (wish === null ? config : { ...config, autoSuggestTracks: wish });

  /** Takes over what the native side has stored, without the keys. */
  function accept(config) {
    const { tinkerApiKey, openaiApiKey, ...rest } = text.object(config);
    applyTheme(rest.theme);
    storage.keep(themeKey, () => rest.theme);
    update({ settings: wished(rest) });
  }

  async function read() {
    const config = text.object(await native.call('GetSettings', [], patience));
    accept(config);
    return wished(config);
  }

  async function readState() {
    update({ app: text.object(await native.call('GetState')) });
  }

  /**
   * Saves the given fields over a fresh copy, so that the format version and the window's frame go
   * back as they are stored. Gives the settings as the native side stored them.
   */
  async function saveNow(fields) {
    const fresh = text.object(await native.call('GetSettings', [], patience));
    await native.call('SaveSettings', [{ ...fresh, ...fields }], patience);
    const now = await read();
    await readState();
    if (!state.settings.autoSuggestTracks) suggest.endAuto();
    update({ refused: '' });
    rankings.judgeAgain();
    return now;
  }

  let last = Promise.resolve();

  /** One save after the other: each begins with what the one before has stored. */
  function save(fields) {
    const next = last.then(() => saveNow(fields));
    last = next.catch(() => {});
    return next;
  }

  /** Shows the switch as the DJ wants it and stores the last wish as soon as Velmor can. */
  async function toggleAuto() {
    if (!state.settings) return;
    const isSaving = wish !== null;
    wish = !state.settings.autoSuggestTracks;
    update({ settings: { ...state.settings, autoSuggestTracks: wish } });
    if (!wish) suggest.endAuto();
    if (isSaving) return;
    try {
      for (let saved = !wish; saved !== wish;) {
        saved = wish;
        await save({ autoSuggestTracks: saved });
      }
      wish = null;
    } catch (error) {
      wish = null;
      update({ error: error.message });
      await read().catch(() => {});
    }
  }

  applyTheme(storage.read(themeKey));

  Velmor.settings = {
    themes, services, service, setService, applyTheme, read, readState, save, toggleAuto,
  };
})();
