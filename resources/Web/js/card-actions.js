// What can be done with a song: copy its name, look for it elsewhere.
(() => {
  'use strict';

  const { dom, native, settings, text } = Velmor;

  let toastTimer = 0;

  /** A short word at the foot of the window, read out as well. */
  function toast(message) {
    const element = dom.byId('toast');
    clearTimeout(toastTimer);
    dom.setText(element, message);
    element.classList.add('shown');
    toastTimer = setTimeout(() => {
      element.classList.remove('shown');
      dom.setText(element, '');
    }, 3500);
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

  const copySong = (song) => copy(text.display(song), `Copied “${text.display(song)}”`);

  function search(song) {
    const query = encodeURIComponent([song.artist, song.song].filter(Boolean).join(' '));
    native.openLink(settings.services[settings.service()].address + query);
  }

  Velmor.toast = toast;
  Velmor.actions = { copy, copySong, search };
})();
