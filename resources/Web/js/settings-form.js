// The settings sheet: filled from a fresh read, checked while typed, saved as a whole, and never
// closed over unsaved changes without asking.
(() => {
  'use strict';

  const { dialogs, dom, fields, settings, settingsRules, state, text, update } = Velmor;
  const { make } = dom;
  const sheet = dom.byId('settings');

  const models = ['thinkingmachines/Inkling-Small', 'gpt-4.1', 'gpt-4.1-mini', 'gpt-5-mini'];
  const keyNames = ['tinkerApiKey', 'openaiApiKey'];
  const themeNames = {
    light: 'Light', dark: 'Dark', 'red-light': 'Red, light', red: 'Red', 'orange-light': 'Orange, light', orange: 'Orange',
  };

  let stored = null; // what the native side holds, keys included, while the sheet is open
  let before = ''; // the form as it was filled
  let cleared = {};

  const saveButton = make('button', { type: 'submit', class: 'primary' }, 'Save');
  const status = make('p', { class: 'form-status', role: 'status' });
  const guard = make('div', { class: 'message warn', role: 'alertdialog', 'aria-label': 'Unsaved changes', hidden: true },
    make('p', {}, 'There are unsaved changes.'),
    make('button', { type: 'button', class: 'small', onclick: () => close() }, 'Discard'),
    make('button', { type: 'button', class: 'small', onclick: () => keepEditing() }, 'Keep editing'));
  const form = make('form', { novalidate: true, autocomplete: 'off' },
    make('div', { class: 'sheet' },
      fields.proposals('aiModel', 'Model', models),
      fields.secret('tinkerApiKey', 'Tinker API key', (name) => { cleared[name] = true; }),
      fields.secret('openaiApiKey', 'OpenAI API key', (name) => { cleared[name] = true; }),
      fields.choice('recommendationCount', 'Suggestions each time', settingsRules.counts.map((n) => [n, n])),
      fields.number('bpmTolerance', 'Tempo tolerance', '± BPM', 'From 1 to 30. The model is told whole beats.'),
      fields.toggle('autoSuggestTracks', 'Suggest by itself when the track changes',
        'Every new track then costs one request.'),
      fields.choice('theme', 'Theme', Object.entries(themeNames), 'swatches'),
      fields.choice('service', 'Search songs on',
        Object.entries(settings.services).map(([id, service]) => [id, service.name]))),
    make('footer', { class: 'form-foot' }, guard, status,
      make('button', { type: 'button', class: 'small', onclick: () => leave() }, 'Cancel'), saveButton));
  sheet.append(dialogs.head(sheet, 'Settings', () => leave()), form);

  const control = (name) => form.elements[name];

  function values() {
    return {
      aiModel: control('aiModel').value,
      tinkerApiKey: control('tinkerApiKey').value,
      openaiApiKey: control('openaiApiKey').value,
      recommendationCount: control('recommendationCount').value,
      bpmTolerance: control('bpmTolerance').value,
      autoSuggestTracks: control('autoSuggestTracks').checked,
      theme: control('theme').value,
      service: control('service').value,
    };
  }

  const dirty = () => sheet.open && JSON.stringify(values()) !== before;

  function say(name, words) {
    const element = form.querySelector(`#fault-${name}`);
    dom.setText(element, words);
    form.querySelector(`#field-${name}`)?.setAttribute('aria-invalid', String(Boolean(words)));
  }

  function sayAll(faults) {
    for (const name of Object.keys(settingsRules.record(values()))) say(name, faults[name] ?? '');
  }

  const faultsNow = () =>
    settingsRules.faults({
      ...values(), cleared, had: Object.fromEntries(keyNames.map((name) => [name, Boolean(stored?.[name])])),
    });

  function hints() {
    const openai = /^gpt-/i.test(values().aiModel.trim());
    dom.setText(form.querySelector('#hint-aiModel'), `Asks ${openai ? 'OpenAI' : 'Tinker'}.`);
    for (const name of keyNames) {
      const used = (name === 'openaiApiKey') === openai;
      const gone = cleared[name] && !control(name).value && 'Removed when you save.';
      const environment = used && state.app?.aiAvailable && !stored?.[name] && 'A key from the environment is in use.';
      const words = gone || environment || (used ? 'Used by the model above.' : 'Not used by the model above.');
      dom.setText(form.querySelector(`#hint-${name}`), words);
    }
  }

  function fill(config) {
    stored = config;
    cleared = {};
    for (const name of ['aiModel', ...keyNames]) control(name).value = text.text(config[name]);
    for (const name of keyNames) control(name).type = 'password';
    for (const eye of form.querySelectorAll('[aria-pressed]')) eye.setAttribute('aria-pressed', 'false');
    control('recommendationCount').value = String(config.recommendationCount ?? '');
    control('bpmTolerance').value = String(config.bpmTolerance ?? '');
    control('autoSuggestTracks').checked = config.autoSuggestTracks === true;
    control('theme').value = text.text(config.theme);
    control('service').value = settings.service();
    before = JSON.stringify(values());
    sayAll({});
    hints();
  }

  async function openSettings(field) {
    if (sheet.open) return;
    try {
      fill(await settings.read());
    } catch (error) {
      update({ error: error.message });
      return;
    }
    dom.setText(status, '');
    dom.show(guard, false);
    dialogs.open(sheet);
    form.querySelector(`#field-${field ?? 'aiModel'}`)?.focus();
  }

  /** Closes without saving; the keys leave the page and the stored theme comes back. */
  function close() {
    fill({ ...state.settings });
    settings.applyTheme(state.settings?.theme);
    sheet.close();
  }

  function leave() {
    if (!dirty()) {
      close();
      return;
    }
    dom.show(guard, true);
    guard.querySelector('button:last-child').focus();
  }

  function keepEditing() {
    dom.show(guard, false);
    control('aiModel').focus();
  }

  /** Says beside each field what the native side stored otherwise than asked. */
  function differences(asked, now) {
    const names = Object.keys(asked).filter((name) => asked[name] !== now[name]);
    const secret = (name) => keyNames.includes(name);
    return Object.fromEntries(
      names.map((name) => [name, secret(name) ? 'Stored otherwise than typed.' : `Stored as ${now[name]}.`]),
    );
  }

  async function save(event) {
    event.preventDefault();
    const faults = faultsNow();
    sayAll(faults);
    const [first] = Object.keys(faults);
    if (first) {
      form.querySelector(`#field-${first}`).focus();
      return;
    }
    saveButton.disabled = true;
    dom.setText(status, 'Saving …');
    try {
      const asked = settingsRules.record(values());
      settings.setService(values().service);
      const now = await settings.save(asked);
      const changed = differences(asked, now);
      fill(now);
      sayAll(changed);
      Velmor.redrawList();
      if (Object.keys(changed).length) dom.setText(status, 'Saved; see what was changed.');
      else {
        close();
        Velmor.toast('Settings saved');
      }
    } catch (error) {
      dom.setText(status, error.message);
    }
    saveButton.disabled = false;
  }

  form.addEventListener('submit', save);
  form.addEventListener('input', () => {
    settings.applyTheme(control('theme').value);
    sayAll(faultsNow());
    hints();
    dom.setText(status, '');
    dom.show(guard, false);
  });
  // A dialog may close itself on the second Escape in a row, whatever its cancel event is told.
  sheet.addEventListener('keydown', (event) => {
    if (event.key !== 'Escape') return;
    event.preventDefault();
    if (guard.hidden) leave();
    else keepEditing();
  });
  sheet.addEventListener('cancel', (event) => event.preventDefault());

  Velmor.openSettings = openSettings;
})();
