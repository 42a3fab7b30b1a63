// The settings sheet: open at once with what is known, filled from a fresh read, checked while typed,
// saved as a whole, and never closed over unsaved changes without asking. What was typed stays until
// it is saved or discarded, even when the window goes; a key never does.
(() => {
  'use strict';

  const { crate, dialogs, dom, fields, native, settings, settingsRules, state, storage, text, update } = Velmor;
  const { make } = dom;
  const sheet = dom.byId('settings');

  const names = ['thinkingmachines/Inkling-Small', 'gpt-4.1', 'gpt-4.1-mini', 'gpt-5-mini'];
  const models = [[crate.model, 'Your own music'], ...names.map((name) => [name, name])];
  const draftKey = 'draft';
  const keyNames = ['tinkerApiKey', 'openaiApiKey'];
  const themeNames = {
    light: 'Light', dark: 'Dark', red: 'Red, dark', 'red-light': 'Red, light', orange: 'Orange, dark', 'orange-light': 'Orange, light',
  };

  let stored = null; // what the native side holds, keys included, while the sheet is open and it was read
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
      fields.number('bpmTolerance', 'Tempo tolerance', '± BPM', 'From 1 to 30. Rounded to whole BPM.'),
      fields.toggle('autoSuggestTracks', 'Suggest automatically',
        'For each new track. With a model, each is one request that costs.'),
      fields.toggle('crateKeys', 'Keys count in your own music', 'Off when harmony does not matter to you.'),
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
      crateKeys: control('crateKeys').checked,
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
    const model = values().aiModel.trim().toLowerCase();
    const own = model === crate.model;
    const openai = model.startsWith('gpt-');
    const asks = own ? `Looks through your own music. ${state.crate?.status ?? ''}` : `Asks ${openai ? 'OpenAI' : 'Tinker'}.`;
    dom.setText(form.querySelector('#hint-aiModel'), asks.trim());
    for (const name of keyNames) {
      const used = !own && (name === 'openaiApiKey') === openai;
      const gone = cleared[name] && !control(name).value && 'Removed when you save.';
      const environment = used && state.app?.aiAvailable && !stored?.[name] && 'A key from the environment is in use.';
      const words = gone || environment || (used ? 'Used by the model above.' : 'Not used by the model above.');
      dom.setText(form.querySelector(`#hint-${name}`), words);
    }
  }

  function fill(config) {
    cleared = {};
    for (const name of ['aiModel', ...keyNames]) control(name).value = text.text(config[name]);
    for (const name of keyNames) control(name).type = 'password';
    for (const eye of form.querySelectorAll('[aria-pressed]')) eye.setAttribute('aria-pressed', 'false');
    control('recommendationCount').value = String(config.recommendationCount ?? '');
    control('bpmTolerance').value = String(config.bpmTolerance ?? '');
    control('autoSuggestTracks').checked = config.autoSuggestTracks === true;
    control('theme').value = text.text(config.theme);
    control('crateKeys').checked = config.crateKeys ?? state.crate?.keys ?? true;
    control('service').value = config.service ?? settings.service();
    before = JSON.stringify(values());
    sayAll({});
    hints();
  }

  /** The fresh values come: they fill what the DJ has not changed meanwhile. */
  function refill(config) {
    const was = JSON.parse(before);
    const typed = Object.fromEntries(Object.entries(values()).filter(([name, value]) => value !== was[name]));
    stored = config;
    fill(config);
    retype(typed);
  }

  /** Puts back what was typed before. */
  function retype(typed) {
    for (const [name, value] of Object.entries(typed)) {
      const field = control(name);
      if (typeof value === 'boolean') field.checked = value;
      else field.value = value;
    }
    settings.applyTheme(control('theme').value);
    if (stored) sayAll(faultsNow());
    hints();
  }

  function lockKeys(isLocked) {
    for (const name of keyNames) {
      control(name).disabled = isLocked;
      control(name).placeholder = isLocked ? 'Reading …' : '';
    }
  }

  /** What was typed and not saved, without the keys. */
  function keepDraft() {
    const was = JSON.parse(before);
    const typed = Object.entries(values()).filter(([name, value]) => !keyNames.includes(name) && value !== was[name]);
    storage.keep(draftKey, () => (typed.length ? Object.fromEntries(typed) : null));
  }

  const forgetDraft = () => storage.keep(draftKey, () => null);

  function takeDraft() {
    const was = JSON.parse(before);
    const draft = Object.entries(text.object(storage.read(draftKey)))
      .filter(([name, value]) => name in was && !keyNames.includes(name) && typeof value === typeof was[name]);
    if (!draft.length) return;
    retype(Object.fromEntries(draft));
    if (!dirty()) return;
    dom.setText(status, 'What you had typed is here again.');
    holdWindow();
  }

  async function openSettings(field) {
    if (sheet.open || !state.settings) return;
    stored = null;
    fill(state.settings);
    lockKeys(true);
    dom.setText(status, '');
    dom.show(guard, false);
    dom.show(form.querySelector(`[data-value="${crate.model}"]`), Boolean(state.crate));
    dom.show(control('crateKeys').closest('.field'), state.crate?.canSwitchKeys === true);
    dialogs.open(sheet);
    takeDraft();
    const focus = () => form.querySelector(`#field-${field ?? 'aiModel'}, [name="${field}"]:checked`)?.focus();
    focus();
    try {
      const config = await settings.read();
      if (!sheet.open) return;
      lockKeys(false);
      refill(config);
      if (keyNames.includes(field)) focus();
    } catch (error) {
      dom.setText(status, error.message);
    }
  }

  /** Closes without saving; the keys leave the page and the stored theme comes back. */
  function close() {
    forgetDraft();
    stored = null;
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
    holdWindow();
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
    dom.setText(status, state.run ? 'Saving as soon as Velmor has listened …' : 'Saving …');
    try {
      if (!stored) refill(await settings.read());
      lockKeys(false);
      const asked = settingsRules.record(values());
      settings.setService(values().service);
      const { crateKeys } = values();
      if (state.crate && crateKeys !== state.crate.keys) await crate.setKeys(crateKeys);
      const now = await settings.save(asked);
      const changed = differences(asked, now);
      stored = now;
      fill(now);
      forgetDraft();
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

  // The window's own button then comes here before it closes the window.
  let isHeld = false;
  function holdWindow() {
    if (isHeld === dirty()) return;
    isHeld = dirty();
    native.call('HoldWindow', [isHeld]).catch(() => {});
  }
  native.on('close-asked', () => {
    isHeld = false;
    if (dirty()) leave();
  });
  sheet.addEventListener('close', holdWindow);

  form.addEventListener('submit', save);
  form.addEventListener('input', () => {
    settings.applyTheme(control('theme').value);
    if (stored) sayAll(faultsNow());
    hints();
    keepDraft();
    holdWindow();
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
