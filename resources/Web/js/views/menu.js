// A small menu under a button: it lies over everything, closes by itself, and is used with the
// arrow keys.
(() => {
  'use strict';

  const { dom } = Velmor;
  const { make } = dom;

  function place(list, button) {
    const at = button.getBoundingClientRect();
    const { width, height } = list.getBoundingClientRect();
    const left = Math.min(at.left, window.innerWidth - width - 4);
    const below = at.bottom + 2;
    const top = below + height > window.innerHeight - 4 ? Math.max(4, at.top - height - 2) : below;
    list.style.setProperty('left', `${Math.max(4, left)}px`);
    list.style.setProperty('top', `${top}px`);
  }

  function step(event, list) {
    const items = [...list.children];
    const at = items.indexOf(document.activeElement);
    const next = {
      ArrowDown: (at + 1) % items.length, ArrowUp: (at - 1 + items.length) % items.length,
      Home: 0, End: items.length - 1,
    }[event.key];
    if (next === undefined) return;
    event.preventDefault();
    event.stopPropagation();
    items[next].focus();
  }

  /** Opens a menu of [label, act] pairs. */
  function open(button, label, entries) {
    const list = make('div', { class: 'menu', role: 'menu', 'aria-label': label, popover: 'auto' });
    const choose = (act) => {
      list.hidePopover();
      act();
    };
    list.append(...entries.filter(Boolean).map(([words, act]) =>
      make('button', { type: 'button', role: 'menuitem', tabindex: '-1', onclick: () => choose(act) }, words)));
    list.addEventListener('keydown', (event) => {
      if (event.key === 'Tab') list.hidePopover();
      step(event, list);
    });
    const hide = () => list.hidePopover();
    window.addEventListener('resize', hide, { once: true });
    list.addEventListener('toggle', ({ newState }) => {
      if (newState !== 'closed') return;
      button.setAttribute('aria-expanded', 'false');
      if (list.contains(document.activeElement) || document.activeElement === document.body) button.focus();
      window.removeEventListener('resize', hide);
      list.remove();
    });
    (button.closest('main, dialog') ?? document.body).append(list);
    list.showPopover();
    place(list, button);
    button.setAttribute('aria-expanded', 'true');
    list.firstElementChild.focus();
  }

  /** A button with a menu; `entries` is asked each time. */
  function button(attributes, label, entries, ...children) {
    const element = make('button', {
      type: 'button', 'aria-haspopup': 'menu', 'aria-expanded': 'false', ...attributes,
      onclick: () => open(element, label, entries()),
    }, ...children);
    return element;
  }

  Velmor.menu = { button };
})();
