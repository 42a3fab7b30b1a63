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
    ['A', 'Suggest automatically, on or off'],
    ['N', 'Show new suggestions'],
    ['↑ ↓', 'Card before, card after'],
    ['1 … 9, 0', 'Card by its number'],
    ['Enter', 'Open or close a card'],
    ['P', 'Put the card on the set, or take it off'],
    ['X', 'Not tonight: throw the card out'],
    ['U', 'Undo'],
    ['→ ←', 'What would follow the card, and back'],
    ['C', 'Copy the song for a search, Shift + C as text'],
    ['O', 'Look the song up online'],
    ['F', 'Sort and filter'],
    ['L W T H', 'List, wheel, set, history'],
    ['Alt + ↑ ↓', 'Move a song of the set'],
    ['M', 'Shrink to the square and back'],
    [',', 'Settings'],
    ['?', 'These shortcuts'],
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
      make('dt', {}, make('span', { class: 'levels' }, [3, 2, 1].map((grade) => make('span', { class: `level of-${grade}` })))),
      make('dd', {}, 'how tempo, key and energy fit: the higher, the better'),
      make('dt', {}, make('span', { class: 'owned' })),
      make('dd', {}, 'in your crate; drag it onto a deck'),
      make('dt', {}, make('s', { class: 'struck' }, '128')),
      make('dd', {}, 'the model’s figure, where your crate knows better'),
    );
  }

  const help = dom.byId('help');
  help.append(
    head(help, 'Shortcuts'),
    make('div', { class: 'sheet', tabindex: 0, role: 'region', 'aria-label': 'Shortcuts and signs' },
      keyList(), make('h3', {}, 'Signs'), signs(),
      make('p', { class: 'hint' }, 'Below a tempo stands the pitch at which it matches; ½ and 2× say half or double time.'),
      make('button', { type: 'button', class: 'small', onclick: () => Velmor.showAbout() }, 'About Velmor')),
  );

  dom.byId('open-help').addEventListener('click', () => open(help));
  Velmor.dialogs = { head, open, openHelp: () => open(help) };
})();
