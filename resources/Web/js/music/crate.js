// The DJ's own music as the native side knows it. An older program knows none; everything here is
// then silent.
(() => {
  'use strict';

  const { native, state, text, update } = Velmor;

  const model = 'velmor/crate';
  const atOnce = 100;
  const asked = new Set();
  let polling = 0;

  /** Takes over what the native side tells of the crate. */
  function accept(value) {
    const told = text.object(value);
    const sources = Array.isArray(told.sources) ? told.sources.map(text.object) : [];
    const before = state.crate;
    update({
      crate: {
        tracks: Math.max(0, text.number(told.tracks)),
        sources: sources.map(({ name, tracks }) => ({ name: text.text(name), tracks: text.number(tracks) })),
        reading: told.reading === true,
        progress: Math.min(1, Math.max(0, text.number(told.progress))),
        status: text.text(told.status),
        keys: told.keys !== false,
        canSwitchKeys: typeof told.keys === 'boolean',
      },
    });
    if (before?.tracks !== state.crate.tracks) lookUpAgain();
    clearTimeout(polling);
    if (state.crate.reading) polling = setTimeout(read, 1500);
  }

  async function read() {
    try {
      accept(await native.call('GetCrate'));
    } catch {
      update({ crate: null });
    }
  }

  function fact(value) {
    const { uri, lastPlayed, ...rest } = text.object(value);
    const address = text.text(uri);
    return { ...text.song(rest), uri: /^file:\/\/\/\S+$/.test(address) ? address : '', lastPlayed: text.text(lastPlayed) };
  }

  async function lookUpSome(songs) {
    const answer = await native.call('LookUpInCrate', [songs.map(({ song, artist }) => ({ song, artist }))]);
    if (!Array.isArray(answer)) return;
    const facts = new Map(state.facts);
    for (const [i, song] of songs.entries()) {
      if (answer[i]) facts.set(song.id, fact(answer[i]));
    }
    update({ facts });
    Velmor.rankings.judgeAgain();
  }

  /** Asks for songs that were not asked for before. */
  async function lookUp(songs) {
    if (!has()) return;
    const news = songs.filter(({ id }) => id && !asked.has(id) && asked.add(id));
    try {
      for (let i = 0; i < news.length; i += atOnce) await lookUpSome(news.slice(i, i + atOnce));
    } catch {
      for (const { id } of news) asked.delete(id);
    }
  }

  function lookUpAgain() {
    asked.clear();
    const track = state.track ? [state.track] : [];
    const known = [state.ranking, state.waiting, ...state.ahead].flatMap((one) => one?.songs ?? []);
    lookUp([...track, ...known, ...state.sets.flatMap((set) => set.songs)]);
  }

  /** There is music in the crate. */
  const has = () => (state.crate?.tracks ?? 0) > 0;

  /** What the native side would suggest from the crate after a song, as SuggestTracks answers. */
  const after = ({ song, artist }) => native.call('SuggestAfter', [{ song, artist }]);

  /** Whether keys count when the crate is ranked. */
  const setKeys = (count) => native.call('SetCrateKeys', [count]).then(read);

  function showFile(uri) {
    native.call('ShowInFileManager', [uri]).catch((error) => update({ error: error.message }));
  }

  native.on('crate-changed', accept);

  Velmor.crate = { model, read, lookUp, has, after, setKeys, showFile };
})();
