// The sheets that cover the window: help, about, settings. The browser's own dialog keeps the focus
// inside and gives it back.
(() => {
  'use strict';

  const { dom } = Velmor;
  const { make } = dom;

  /** The bar of a sheet: its title and the way out. */
  function head(dialog, title, close = () => dialog.close()) {
    return make(
      'header',
      { class: 'bar' },
      make('h2', { id: `${dialog.id}-title` }, title),
      make('button', { type: 'button', class: 'tool', 'aria-label': 'Close', title: 'Close (Esc)', onclick: close },
        dom.icon('close')),
    );
  }

  function open(dialog) {
    if (!dialog.open) dialog.showModal();
  }

  const keys = [
    ['S', 'Suggest next tracks'],
    ['N', 'Show the suggestions that wait'],
    ['A', 'Automatic suggestions on or off'],
    ['↑ ↓', 'Card before, card after'],
    ['1 … 9, 0', 'Card by its number'],
    ['Enter', 'Open or close a card'],
    ['C', 'Copy the card’s song'],
    ['F', 'Find the card’s song'],
    ['L W H', 'List, wheel, history'],
    ['M', 'Shrink to the square and back'],
    [',', 'Settings'],
    ['?', 'This help'],
    ['Esc', 'Close what is open'],
  ];

  function keyList() {
    const rows = keys.map(([key, action]) => [make('dt', {}, make('kbd', {}, key)), make('dd', {}, action)]);
    return make('dl', { class: 'keys' }, rows.flat());
  }

  function signs() {
    const rows = Object.values(Velmor.camelot.relations).map(({ sign, label }) => [
      make('dt', {}, make('span', { class: 'sign' }, sign)), make('dd', {}, label),
    ]);
    return make(
      'dl',
      { class: 'keys' },
      rows.flat(),
      make('dt', {}, make('span', { class: 'flag' }, '!')),
      make('dd', {}, 'the card’s own figures speak against it; open it to read why'),
    );
  }

  const help = dom.byId('help');
  help.append(
    head(help, 'Help'),
    make('div', { class: 'sheet', tabindex: 0, role: 'region', 'aria-label': 'Shortcuts and signs' },
      make('h3', {}, 'Keys'), keyList(), make('h3', {}, 'Beside a key'), signs(),
      make('p', { class: 'hint' }, '½ and 2× beside a tempo: it fits at half or double time.'),
      make('button', { type: 'button', class: 'small', onclick: () => Velmor.showAbout() }, 'About Velmor')),
  );

  dom.byId('open-help').addEventListener('click', () => open(help));
  Velmor.dialogs = { head, open, openHelp: () => open(help) };
})();
