// What can be done with a song: copy its name, look for it elsewhere, drag it onto a deck.
(() => {
  'use strict';

  const { dom, native, settings, text } = Velmor;

  const undoTime = 10_000;
  let toastTimer = 0;
  let undo = null;

  function hideToast() {
    dom.byId('toast').replaceChildren();
    undo = null;
  }

  /** A short word at the foot of the window, read out as well, with one thing to do beside it if any. */
  function toast(message, action = null) {
    clearTimeout(toastTimer);
    const [label, act] = action || [];
    undo = act ?? null;
    dom.byId('toast').replaceChildren(
      dom.make('p', {}, message),
      act ? dom.make('button', { type: 'button', class: 'small', onclick: takeBack }, label) : '',
    );
    toastTimer = setTimeout(hideToast, act ? undoTime : Math.max(4000, 1500 + 60 * message.length));
  }

  /** Does what the last word offered. */
  function takeBack() {
    const act = undo;
    hideToast();
    act?.();
  }

  // A file page may have no clipboard object; the older way needs a selection to copy.
  function copyBySelection(value) {
    const area = dom.make('textarea', { class: 'unseen', 'aria-hidden': 'true', readonly: true });
    area.value = value;
    const focused = document.activeElement;
    (document.querySelector('dialog[open]') ?? document.body).append(area);
    area.select();
    const copied = document.execCommand('copy');
    area.remove();
    focused?.focus({ preventScroll: true });
    return copied;
  }

  async function copy(value, word = 'Copied') {
    let copied = true;
    try {
      await navigator.clipboard.writeText(value);
    } catch {
      copied = copyBySelection(value);
    }
    toast(copied ? word : 'The clipboard refused the text.');
  }

  const copyWords = (value) => copy(value, `Copied “${value}”`);
  /** For the search of a DJ program. */
  const copyQuery = (song) => copyWords(text.query(song));
  const copyText = (song) => copyWords(text.plain(song));

  function search(song) {
    native.openLink(settings.services[settings.service()].address + encodeURIComponent(text.query(song)));
  }

  /** Lets an element be dragged onto a deck or into a folder when the song's file is known. */
  function draggable(element, song) {
    const uri = song.owned?.uri;
    if (!uri) return;
    element.draggable = true;
    element.addEventListener('dragstart', (event) => {
      const { dataTransfer } = event;
      dataTransfer.effectAllowed = 'copy';
      dataTransfer.setData('text/uri-list', uri);
      const ghost = dom.make('span', { class: 'ghost' }, text.display(song));
      document.body.append(ghost);
      dataTransfer.setDragImage(ghost, 8, 8);
      setTimeout(() => ghost.remove());
    });
    element.addEventListener('dragend', ({ dataTransfer }) => {
      if (dataTransfer.dropEffect === 'copy') toast(`${text.display(song)} was taken.`);
    });
  }

  Velmor.toast = toast;
  Velmor.actions = { copy, copyQuery, copyText, draggable, search, takeBack };
})();
