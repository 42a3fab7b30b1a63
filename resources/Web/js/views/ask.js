// The one large button: it asks, and tells how far the asking is.
(() => {
  'use strict';

  const { dom, settings, state, suggest, text } = Velmor;
  const button = dom.byId('ask');
  const auto = dom.byId('auto');
  let ticking = 0;

  function tick() {
    if (!state.run) return;
    dom.setText(dom.byId('ask-words'), suggest.doing());
    dom.setText(dom.byId('ask-side'), text.seconds(state.run.startedAt));
  }

  function render({ run, bridge, settings: stored }) {
    button.classList.toggle('busy', Boolean(run));
    // Not the disabled attribute: the button keeps its focus and its words stay readable.
    button.setAttribute('aria-disabled', String(Boolean(run) || bridge !== 'ready'));
    clearInterval(ticking);
    if (run) {
      ticking = setInterval(tick, 1000);
    } else {
      dom.setText(dom.byId('ask-words'), 'Suggest next tracks');
      dom.setText(dom.byId('ask-side'), 'S');
    }
    tick();
    auto.setAttribute('aria-checked', String(Boolean(stored?.autoSuggestTracks)));
  }

  button.addEventListener('click', suggest.ask);
  auto.addEventListener('click', settings.toggleAuto);
  Velmor.view(['run', 'bridge', 'settings', 'app'], render);
})();
