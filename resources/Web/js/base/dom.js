// Elements are made here and filled with text nodes only: nothing from outside is ever parsed.
(() => {
  'use strict';

  const svgNames = new Set(['svg', 'use', 'g', 'path', 'circle', 'line', 'rect', 'polyline', 'text']);

  function assign(element, name, value) {
    if (value === undefined || value === null || value === false) return;
    if (name.startsWith('on')) element.addEventListener(name.slice(2), value);
    else if (name.startsWith('--')) element.style.setProperty(name, value);
    else element.setAttribute(name, value === true ? '' : value);
  }

  /** make('button', { class: 'x', onclick: f }, 'text', otherElement, …) */
  function make(tag, attributes = {}, ...children) {
    const element = svgNames.has(tag)
      ? document.createElementNS('http://www.w3.org/2000/svg', tag)
      : document.createElement(tag);
    for (const [name, value] of Object.entries(attributes)) assign(element, name, value);
    element.append(...children.flat().filter((child) => child || child === 0));
    return element;
  }

  const byId = (id) => document.getElementById(id);

  function show(element, visible) {
    element.hidden = !visible;
  }

  function setText(element, value) {
    if (element.textContent !== value) element.textContent = value;
  }

  const icon = (name) =>
    make('svg', { class: 'icon', 'aria-hidden': 'true' }, make('use', { href: `#icon-${name}` }));

  /** A model's figure that the crate contradicts. */
  const struck = (words, what) =>
    make('s', { class: 'struck' }, make('span', { class: 'unseen' }, `${what} said to be `), words);

  /** A key in its wheel colour; sign and relation are optional. */
  function chip(key, relation) {
    const place = Velmor.camelot.parse(key);
    const label = [key ? `Key ${key}` : 'Key unknown', Velmor.camelot.name(key), relation?.label];
    const element = make(
      'span',
      { class: 'chip', role: 'img', 'aria-label': label.filter(Boolean).join(', ') },
      make('span', { class: 'chip-key' }, key || '–'),
      relation && make('span', { class: 'chip-sign' }, relation.sign),
    );
    paint(element, place);
    element.title = label.filter(Boolean).join(', ');
    return element;
  }

  /** Gives an element the colour of a place on the wheel, or takes it away. */
  function paint(element, place) {
    element.classList.toggle('keyed', Boolean(place));
    element.classList.toggle('major', place?.mode === 'B');
    if (place) element.style.setProperty('--n', place.n);
  }

  /**
   * Replaces an element's children and leaves the focus on the control that has the same place: in
   * the child with the same data-id, the same of its controls.
   */
  function replaceKeepingFocus(element, ...children) {
    const controls = (part) => [...part.querySelectorAll('button, input, select, [tabindex]')];
    const focused = element.contains(document.activeElement) ? document.activeElement : null;
    const part = focused?.closest('[data-id]');
    const id = part?.dataset.id;
    const place = part ? controls(part).indexOf(focused) : -1;
    const top = element.scrollTop;
    element.replaceChildren(...children);
    element.scrollTop = top;
    if (!id) return;
    const again = [...element.querySelectorAll('[data-id]')].find((one) => one.dataset.id === id);
    (place < 0 ? again : again && controls(again)[place])?.focus({ preventScroll: true });
  }

  /** Texts that were cut short show in whole while the pointer rests on them. */
  document.addEventListener('pointerover', ({ target }) => {
    const element = target.closest('.clip');
    if (!element) return;
    const cut = element.scrollWidth > element.clientWidth || element.scrollHeight > element.clientHeight + 2;
    element.title = cut ? element.textContent : '';
  });

  Velmor.dom = { make, byId, show, setText, icon, chip, struck, paint, replaceKeepingFocus };
})();
