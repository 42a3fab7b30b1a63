// Reading and saving the stored settings. The keys never enter the page's state; the settings
// form asks for them when it opens and forgets them when it closes.
(() => {
  'use strict';

  const { native, rankings, suggest, text, update, state } = Velmor;

  const themes = ['light', 'dark', 'red-light', 'red', 'orange-light', 'orange'];
  const themeKey = 'velmor.theme';
  const serviceKey = 'velmor.search';

  const services = {
    spotify: { name: 'Spotify', address: 'https://open.spotify.com/search/' },
    youtube: { name: 'YouTube', address: 'https://www.youtube.com/results?search_query=' },
    beatport: { name: 'Beatport', address: 'https://www.beatport.com/search?q=' },
  };

  // Storage may be refused to a file page; the page then works with what it has.
  function stored(key) {
    try {
      return localStorage.getItem(key);
    } catch {
      return null;
    }
  }

  function store(key, value) {
    try {
      localStorage.setItem(key, value);
    } catch {
      // Nothing to do: the choice then lasts as long as the window.
    }
  }

  function applyTheme(theme) {
    document.documentElement.dataset.theme = themes.includes(theme) ? theme : 'dark';
  }

  let chosen = stored(serviceKey);
  const service = () => (chosen in services ? chosen : 'spotify');

  function setService(name) {
    chosen = name;
    store(serviceKey, name);
  }

  /** Takes over what the native side has stored, without the keys. */
  function accept(config) {
    const { tinkerApiKey, openaiApiKey, ...rest } = text.object(config);
    applyTheme(rest.theme);
    store(themeKey, rest.theme);
    update({
      settings: rest,
      hasKey: { tinker: Boolean(tinkerApiKey), openai: Boolean(openaiApiKey) },
    });
  }

  async function read() {
    const config = text.object(await native.call('GetSettings'));
    accept(config);
    return config;
  }

  async function readState() {
    update({ app: text.object(await native.call('GetState')) });
  }

  /**
   * Saves the given fields over a fresh copy, so that the format version and the window's frame go
   * back as they are stored. Gives the settings as the native side stored them.
   */
  async function save(fields) {
    const fresh = text.object(await native.call('GetSettings'));
    await native.call('SaveSettings', [{ ...fresh, ...fields }]);
    const now = await read();
    await readState();
    if (!now.autoSuggestTracks) suggest.endAuto();
    rankings.judgeAgain();
    return now;
  }

  let toggling = false;
  async function toggleAuto() {
    if (!state.settings || toggling) return;
    toggling = true;
    try {
      await save({ autoSuggestTracks: !state.settings.autoSuggestTracks });
    } catch (error) {
      update({ error: error.message });
    }
    toggling = false;
  }

  applyTheme(stored(themeKey));

  Velmor.settings = {
    themes, services, service, setService, applyTheme, read, readState, save, toggleAuto,
  };
})();
