// "What would follow this?": rankings for songs that are not played yet, one behind the other.
(() => {
  'use strict';

  const { crate, rankings, state, text, update } = Velmor;
  let asking = false;

  async function look(song) {
    if (asking) return;
    if (!state.facts.has(song.id)) {
      if (crate.has()) Velmor.toast('Only your crate knows what follows, and this song is not in it.');
      return;
    }
    asking = true;
    const { ranking } = state;
    try {
      const next = rankings.ranking(await crate.after(song), 'ahead');
      // A new list has come meanwhile: this one belongs to the old.
      if (state.ranking !== ranking && state.ranking?.number !== ranking?.number) return;
      if (next.cards.length === 0) Velmor.toast(`Your crate has nothing to follow ${text.display(song)}.`);
      else {
        update({ ahead: [...state.ahead, next], view: 'list', open: 0, lit: 0 });
        crate.lookUp(next.songs);
        queueMicrotask(() => Velmor.focusCard(1));
      }
    } catch (error) {
      Velmor.toast(error.message);
    } finally {
      asking = false;
    }
  }

  /** One step back; puts the focus on the card that was looked behind. */
  function back() {
    const gone = state.ahead.at(-1);
    if (!gone) return;
    update({ ahead: state.ahead.slice(0, -1), open: 0, lit: 0 });
    const card = rankings.shown(state)?.cards.find((one) => one.id === gone.track.id);
    queueMicrotask(() => Velmor.focusCard(card?.rank ?? 1));
  }

  Velmor.ahead = { look, back };
})();
