// What needs the DJ's eye between the button and the list: an error with one thing to do next to
// it, and suggestions that wait.
(() => {
  'use strict';

  const { dom, rankings, suggest, text, update } = Velmor;
  const { make } = dom;
  const place = dom.byId('messages');

  /** The one thing to do about an error. */
  function remedy(error) {
    if (/API key|HTTP 40[13]|unauthori[sz]ed/i.test(error)) {
      return ['Open settings', () => Velmor.openSettings(suggest.keyField())];
    }
    if (/model/i.test(error) && /not found|does not exist|HTTP 404/i.test(error)) {
      return ['Open settings', () => Velmor.openSettings('aiModel')];
    }
    return ['Try again', suggest.ask];
  }

  function message(kind, words, [label, act], role) {
    return make(
      'div',
      { class: `message ${kind}`, role },
      make('p', {}, words),
      make('button', { type: 'button', class: 'small', onclick: act }, label),
    );
  }

  function errorMessage(error) {
    const element = message('bad', error, remedy(error), 'alert');
    const hide = () => update({ error: '' });
    element.append(
      make('button', { type: 'button', class: 'tool', 'aria-label': 'Hide the message', onclick: hide },
        dom.icon('close')),
    );
    return element;
  }

  function render({ error, waiting }) {
    const parts = [];
    if (error) parts.push(errorMessage(error));
    if (waiting) {
      const words = `New suggestions for ${text.display(waiting.track)}`;
      parts.push(message('good', words, ['Show (N)', rankings.showWaiting], 'status'));
    }
    place.replaceChildren(...parts);
  }

  Velmor.view(['error', 'waiting'], render);
})();
