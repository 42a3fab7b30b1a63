// The four views under the button, and the line beside them that says whose list is shown.
(() => {
  'use strict';

  const { dom, rankings, setList, state, text, update } = Velmor;
  const names = ['list', 'wheel', 'set', 'history'];
  const tab = (name) => dom.byId(`tab-${name}`);

  function note({ ranking, track, fresh, view }) {
    if (!ranking || view === 'history' || view === 'set') return '';
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
    const count = setList.shown(current)?.songs.length ?? 0;
    dom.setText(tab('set'), count > 0 ? `Set ${count}` : 'Set');
    const line = dom.byId('views-note');
    dom.setText(line, note(current));
    line.classList.toggle('fresh', current.fresh);
    line.classList.toggle('stale', rankings.stale(current.ranking, current.track));
  }

  function move(event) {
    const at = names.indexOf(state.view);
    const places = { ArrowRight: at + 1, ArrowLeft: at - 1, Home: 0, End: names.length - 1 };
    if (!(event.key in places)) return;
    event.preventDefault();
    const next = names.at(places[event.key] % names.length);
    update({ view: next });
    tab(next).focus();
  }

  for (const name of names) {
    tab(name).addEventListener('click', () => update({ view: name }));
    tab(name).addEventListener('keydown', move);
  }
  Velmor.view(['view', 'ranking', 'track', 'fresh', 'sets', 'setShown'], render);
})();
