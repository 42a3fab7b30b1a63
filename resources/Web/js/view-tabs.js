// The three views under the button, and the line beside them that says whose list is shown.
(() => {
  'use strict';

  const { dom, rankings, state, text, update } = Velmor;
  const names = ['list', 'wheel', 'history'];
  const tab = (name) => dom.byId(`tab-${name}`);

  function note({ ranking, track, fresh, view }) {
    if (!ranking || view === 'history') return '';
    if (rankings.stale(ranking, track)) return `For earlier: ${text.display(ranking.track)}`;
    return `${fresh ? 'New' : 'From'} ${text.clock(ranking.at)}`;
  }

  function render(current) {
    for (const name of names) {
      const selected = name === current.view;
      tab(name).setAttribute('aria-selected', String(selected));
      tab(name).tabIndex = selected ? 0 : -1;
      dom.show(dom.byId(`panel-${name}`), selected);
    }
    const line = dom.byId('views-note');
    dom.setText(line, note(current));
    line.classList.toggle('fresh', current.fresh);
    line.classList.toggle('stale', rankings.stale(current.ranking, current.track));
  }

  function move(event) {
    const step = { ArrowRight: 1, ArrowLeft: -1 }[event.key];
    if (!step) return;
    event.preventDefault();
    const next = names[(names.indexOf(state.view) + step + names.length) % names.length];
    update({ view: next });
    tab(next).focus();
  }

  for (const name of names) {
    tab(name).addEventListener('click', () => update({ view: name }));
    tab(name).addEventListener('keydown', move);
  }
  Velmor.view(['view', 'ranking', 'track', 'fresh'], render);
})();
