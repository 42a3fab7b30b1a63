// Keys of the main view. They are silent while something is typed or a sheet is open.
(() => {
  'use strict';

  const { actions, ahead, dialogs, native, rankings, setList, settings, sieve, state, suggest, update } = Velmor;

  const focusedRank = () => Number(document.activeElement?.closest('.card')?.dataset.rank) || 0;
  const chosenCard = () => {
    const rank = focusedRank() || state.lit || state.open;
    return rankings.shown(state)?.cards.find((card) => card.rank === rank);
  };

  function withCard(act) {
    const card = chosenCard();
    if (card) act(card);
    else Velmor.toast('Choose a card first.');
  }

  /** Throws a song out; the focus goes on to the card that takes its place. */
  function throwOut(card) {
    const next = Math.max(0, sieve.cards(state).indexOf(card));
    setList.throwOut(card);
    queueMicrotask(() => Velmor.focusCard((sieve.cards(state)[next] ?? sieve.cards(state).at(-1))?.rank));
  }

  function step(by) {
    update({ view: 'list' });
    queueMicrotask(() => Velmor.focusNext(by));
  }

  function close() {
    if (!state.error && state.open === 0 && state.ahead.length) ahead.back();
    else update({ error: '', open: 0 });
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
    c: (event) => withCard(event.shiftKey ? actions.copyText : actions.copyQuery),
    f: sieve.toggleOpen,
    o: () => withCard(actions.search),
    p: () => withCard(setList.toggle),
    x: () => withCard(throwOut),
    u: actions.takeBack,
    l: () => update({ view: 'list' }),
    w: () => update({ view: 'wheel' }),
    t: () => update({ view: 'set' }),
    h: () => update({ view: 'history' }),
    m: resize,
    ',': () => Velmor.openSettings(),
    '?': dialogs.openHelp,
    ArrowDown: () => step(1),
    ArrowUp: () => step(-1),
    ArrowRight: () => withCard(ahead.look),
    ArrowLeft: ahead.back,
    Escape: close,
  };
  for (let digit = 0; digit <= 9; digit += 1) table[digit] = () => goTo(digit || 10);

  function pressed(event) {
    const { key, target } = event;
    if (event.ctrlKey || event.metaKey || event.altKey || document.querySelector('dialog[open]')) return;
    if (target.closest('input, textarea, select, summary, [role=menu]')) return;
    const isArrow = key.startsWith('Arrow');
    if (isArrow && (target.closest('[role=tab]') || !state.ranking || !['list', 'wheel'].includes(state.view))) return;
    const act = table[key.length === 1 ? key.toLowerCase() : key];
    if (!act) return;
    event.preventDefault();
    act(event);
  }

  document.addEventListener('keydown', pressed);
})();
