// Keys of the main view. They are silent while something is typed or a sheet is open.
(() => {
  'use strict';

  const { actions, dialogs, native, rankings, settings, state, suggest, update } = Velmor;

  const focusedRank = () => Number(document.activeElement?.closest('.card')?.dataset.rank) || 0;
  const chosenCard = () => {
    const rank = focusedRank() || state.lit || state.open;
    return state.ranking?.cards.find((card) => card.rank === rank);
  };

  function withCard(act) {
    const card = chosenCard();
    if (card) act(card);
    else Velmor.toast('Choose a card first.');
  }

  function goTo(rank) {
    update({ view: 'list' });
    // After the redraw, and before the next key.
    queueMicrotask(() => Velmor.focusCard(rank));
  }

  const resize = () =>
    native.call(state.compact ? 'RestoreWindow' : 'WindowMinimise')
      .catch((error) => update({ error: error.message }));

  const table = {
    s: suggest.ask,
    n: rankings.showWaiting,
    a: settings.toggleAuto,
    c: () => withCard(actions.copySong),
    f: () => withCard(actions.search),
    l: () => update({ view: 'list' }),
    w: () => update({ view: 'wheel' }),
    h: () => update({ view: 'history' }),
    m: resize,
    ',': () => Velmor.openSettings(),
    '?': dialogs.openHelp,
    ArrowDown: () => goTo(focusedRank() + 1),
    ArrowUp: () => goTo(focusedRank() ? focusedRank() - 1 : 1),
    Escape: () => update({ error: '', open: 0 }),
  };
  for (let digit = 0; digit <= 9; digit += 1) table[digit] = () => goTo(digit || 10);

  function pressed(event) {
    const { key, target } = event;
    if (event.ctrlKey || event.metaKey || event.altKey || document.querySelector('dialog[open]')) return;
    if (target.closest('input, textarea, select, summary')) return;
    if (key.startsWith('Arrow') && target.closest('[role=tab]')) return;
    const act = table[key.length === 1 ? key.toLowerCase() : key];
    if (!act || (key.startsWith('Arrow') && !state.ranking)) return;
    event.preventDefault();
    act();
  }

  document.addEventListener('keydown', pressed);
})();
