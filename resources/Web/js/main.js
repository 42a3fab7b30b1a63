// The start: what is stored, what is ready, which version, and then the listening.
(() => {
  'use strict';

  const { crate, dom, native, settings, state, suggest, text, update } = Velmor;

  function announce(words) {
    dom.setText(dom.byId('announcer'), words);
  }

  /** What a screen reader is told without being asked. */
  function listenForNews() {
    let track = null;
    let ranking = null;
    Velmor.view(['track', 'ranking'], (now) => {
      const news = [];
      if (now.track && now.track !== track && now.track.id !== track?.id) {
        news.push(`Now playing ${text.display(now.track)}.`);
      }
      if (now.ranking && now.ranking.number !== ranking?.number) {
        news.push(`${now.ranking.cards.length} suggestions, first ${text.display(now.ranking.cards[0])}.`);
      }
      ({ track, ranking } = now);
      if (news.length) announce(news.join(' '));
    });
  }

  async function start() {
    suggest.listen();
    listenForNews();
    try {
      await settings.read();
      await settings.readState();
      crate.read();
      update({ bridge: 'ready', info: text.object(await native.call('GetAppInfo')) });
      await native.call('StartAutoDetection');
    } catch (error) {
      if (state.bridge !== 'missing') update({ bridge: 'ready', error: error.message });
    }
  }

  dom.byId('open-settings').addEventListener('click', () => Velmor.openSettings());
  start();
})();
