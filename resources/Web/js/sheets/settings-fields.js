// The fields of the settings form as elements. Nothing here knows what is stored.
(() => {
  'use strict';

  const { dom } = Velmor;
  const { make } = dom;

  const fault = (name) => make('p', { class: 'fault', id: `fault-${name}` });
  const hint = (name, words) => make('p', { class: 'hint', id: `hint-${name}` }, words);

  function input(name, attributes) {
    return make('input', {
      id: `field-${name}`, name, type: 'text', autocomplete: 'off', spellcheck: 'false',
      'aria-describedby': `fault-${name} hint-${name}`, ...attributes,
    });
  }

  const labelled = (name, label, ...rest) =>
    make('div', { class: 'field' }, make('label', { for: `field-${name}` }, label), ...rest);

  /** A text field with proposals below it, [value, shown] pairs that fill it when pressed. */
  function proposals(name, label, values) {
    const field = input(name);
    const fill = (value) => {
      field.value = value;
      field.dispatchEvent(new Event('input', { bubbles: true }));
      field.focus();
    };
    const one = ([value, shown]) =>
      make('button', { type: 'button', class: 'proposal', 'data-value': value, onclick: () => fill(value) }, shown);
    return labelled(name, label, field, hint(name), fault(name),
      make('div', { class: 'proposals', role: 'group', 'aria-label': `Proposals: ${label}` }, values.map(one)));
  }

  /** A masked text field with a button that reveals it and one that empties it. */
  function secret(name, label, cleared) {
    const field = input(name, { type: 'password' });
    const reveal = make(
      'button',
      { type: 'button', class: 'tool', 'aria-pressed': 'false', 'aria-label': `Show: ${label}`, title: 'Show the key' },
      dom.icon('eye'),
    );
    reveal.addEventListener('click', () => {
      const shown = field.type === 'text';
      field.type = shown ? 'password' : 'text';
      reveal.setAttribute('aria-pressed', String(!shown));
    });
    const clear = () => {
      field.value = '';
      cleared(name);
      field.dispatchEvent(new Event('input', { bubbles: true }));
      field.focus();
    };
    return labelled(name, label,
      make('div', { class: 'joined' }, field, reveal,
        make('button', { type: 'button', class: 'small', 'aria-label': `Clear: ${label}`, onclick: clear }, 'Clear')),
      hint(name), fault(name));
  }

  function number(name, label, unit, words) {
    return labelled(name, [label, make('span', { class: 'unseen' }, ` in ${unit}`)],
      make('div', { class: 'joined' }, input(name, { inputmode: 'decimal', class: 'short' }), make('span', { 'aria-hidden': 'true' }, unit)),
      hint(name, words), fault(name));
  }

  /**
   * One of several values, as buttons in a row. The values are [value, shown] pairs; swatches stand
   * in the colours of the theme they name.
   */
  function choice(name, label, values, look = 'segments') {
    const one = ([value, shown]) =>
      make('label', { 'data-value': value, 'data-theme': look === 'swatches' && value },
        make('input', { type: 'radio', name, value }), make('span', {}, shown));
    return make('fieldset', { class: 'field' },
      make('legend', {}, label), make('div', { class: look }, values.map(one)), fault(name));
  }

  function toggle(name, label, words) {
    return make('div', { class: 'field' },
      make('label', { class: 'check' },
        make('input', { type: 'checkbox', name, 'aria-describedby': `hint-${name}` }),
        make('span', {}, label)),
      hint(name, words), fault(name));
  }

  Velmor.fields = { proposals, secret, number, choice, toggle };
})();
