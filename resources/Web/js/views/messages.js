// What needs the DJ's eye between the button and the list: an error with what helps next to it, and
// suggestions that wait.
(() => {
  'use strict';

  const { crate, dom, rankings, state, suggest, text, update } = Velmor;
  const { make } = dom;
  const place = dom.byId('messages');

  const again = ['Try again', suggest.ask];
  const settingsAt = (field) => ['Open settings', () => Velmor.openSettings(field())];
  const keySettings = settingsAt(suggest.keyField);
  const modelSettings = settingsAt(() => 'aiModel');

  // What an error says, what helps, and where the help is. The first that fits counts.
  const remedies = [
    [/status 40[13]\b|refuses the key|(incorrect|invalid|wrong)\b.*\bkey|unauthori[sz]ed/i,
      () => `${suggest.provider()} does not take the key. Check it in the settings.`, keySettings, 'key'],
    [/API key is required/i, () => '', keySettings, 'key'],
    [/status 404\b|model\b.*(not found|does not exist|not supported)|does not take the model/i,
      () => `${suggest.provider()} does not know the model. Check its name in the settings.`, modelSettings, 'model'],
    [/status (402|429)\b|rate limit|quota|sets a limit/i,
      () => 'That were too many requests, or the account is used up. Wait a moment.', again],
    [/status 5\d\d\b|overloaded/i, () => `${suggest.provider()} has trouble at the moment. Try again in a minute.`, again],
    [/cut off|fewer songs/i, () => 'Ask for fewer songs, or take a model that answers at greater length.',
      ['Ask for fewer', () => Velmor.openSettings('recommendationCount')]],
    [/asking you to log in/i, () => 'Open a web page in the browser to log in, then try again.', again],
    [/could not be (found|reached)|timed out|connection was lost|online\?/i, () => 'Is this computer online?', again],
    [/./, () => '', again],
  ];

  const remedyOf = (error) => remedies.find(([words]) => words.test(error)) ?? remedies.at(-1);

  const button = ([label, act]) => make('button', { type: 'button', class: 'small', onclick: act }, label);


  function errorMessage(error) {
    const [, hint, way] = remedyOf(error);
    const help = hint();
    const words = [make('p', {}, error), help && !error.includes(help) && make('p', { class: 'hint' }, help)];
    const own = state.facts.has(state.track?.id)
      ? ['Suggest from your crate instead', suggest.askCrate] : ['Use your own music', suggest.useCrate];
    const close = make('button', {
      type: 'button', class: 'tool', 'aria-label': 'Hide the message', title: 'Hide (Esc)', onclick: () => update({ error: '' }),
    }, dom.icon('close'));
    return make('div', { class: 'message bad', role: 'alert' },
      make('div', { class: 'message-words', tabindex: 0, role: 'group', 'aria-label': 'What went wrong' }, words),
      close,
      make('div', { class: 'message-acts' },
        button(way), crate.has() && !suggest.isCrate() && button(own)));
  }

  let told = '';

  function render({ error, waiting }) {
    if (error && error !== told) update({ refused: remedyOf(error)[3] ?? '' });
    told = error;
    const parts = [];
    if (error) parts.push(errorMessage(error));
    if (waiting) {
      parts.push(make('div', { class: 'message good', role: 'status' },
        make('p', { class: 'message-words' }, `For ${text.display(waiting.track)}`),
        button(['Show new suggestions (N)', rankings.showWaiting])));
    }
    place.replaceChildren(...parts);
  }

  Velmor.view(['error', 'waiting', 'crate', 'facts'], render);
})();
