// A set as it might be played, for the fake native side of the tests and the pictures.
const track = (song, artist, bpm, key, genre, more = {}) => ({
  song, artist, album: '', bpm, key, genre, energy: 0, other: '', confidence: 100, ...more,
});

const pick = (song, artist, bpm, key, energy, compatibilityScore, explanation, more = {}) => ({
  song, artist, album: '', bpm, key, genre: 'Electronica', energy, compatibilityScore, explanation, ...more,
});

export const glue = track('Glue', 'Bicep', 130, '9A', 'Breakbeat', {
  album: 'Bicep', other: 'Verified by rekordbox deck metadata',
});

export const earlier = [
  track('Kiara', 'Bonobo', 128, '8A', 'Downtempo', { album: 'Black Sands' }),
  track('Open Eye Signal', 'Jon Hopkins', 120, '4A', 'Techno', { album: 'Immunity' }),
];

export const picks = [
  pick('So U Kno', 'Overmono', 130, '9A', 74, 96,
    'Same key and tempo; the chopped vocal answers the pads of “Glue” and lifts the floor without a jump.'),
  pick('Delilah (pull me out of this)', 'Fred again..', 131.5, '10A', 78, 93,
    'One step up on the wheel. Bring it in on the break, its kick takes over on the one.'),
  pick('LesAlpx', 'Floating Points', 128, '8A', 81, 91,
    'A step down and darker; the rolling bass keeps the pace while the pads fade.'),
  pick('Never Come Back', 'Caribou', 126, '9B', 72, 88,
    'The relative major opens the mood after a long minor stretch.', { album: 'Suddenly', genre: 'House' }),
  pick('Your Mind', 'Adam Beyer & Bart Skils', 128, '11A', 86, 85,
    'A whole tone up: an energy boost for the next quarter of an hour.', { genre: 'Techno' }),
  pick('Archangel', 'Burial', 69.5, '9A', 58, 82,
    'Half time against the breakbeat; the swing sits well under the last chorus.', { album: 'Untrue', genre: 'Dubstep' }),
  pick('Talk to Me You’ll Understand', 'Ross From Friends', 123, '10A', 64, 79,
    'Lo-fi and warm, a breather that keeps the key close.', { genre: 'House' }),
  pick('Strobe', 'deadmau5', 128, '4B', 70, 84,
    'A long build that gives the room time.', { album: 'For Lack of a Better Name', genre: 'Progressive House' }),
  pick('U', 'DJ Seinfeld', 122, '8A', 61, 71, 'Soft drums and a vocal the room knows.', { genre: 'House' }),
  pick('Gorgon', 'Special Request', 148, '9B', 90, 64, 'Much faster, for a hard turn into the night.', { genre: 'Jungle' }),
];

export const result = (currentTrack = glue, recommendations = picks) => ({
  currentTrack,
  recommendations,
  source: 'rekordbox Deck Metadata + Tinker',
  notice: 'Detected through rekordbox deck metadata and analyzed with Essentia.',
});

export const config = {
  version: 8, tinkerApiKey: 'tk-demo-1234', openaiApiKey: '', aiModel: 'thinkingmachines/Inkling-Small',
  recommendationCount: 10, bpmTolerance: 10, autoSuggestTracks: false, theme: 'dark',
  window: { x: 20, y: 30, width: 507, height: 651 },
};

export const permission =
  'Velmor needs Accessibility access for rekordbox. In System Settings → Privacy & Security → ' +
  'Accessibility, remove and re-enable Velmor, then restart from ~/Applications/Velmor.app.';

export const longPicks = [
  pick('A Very Long Title That Goes On and On (Somebody’s Extremely Extended Sunrise Terrace Remix) [Remastered]',
    'An Artist With a Long Name, Another One & The Third Who Also Wanted a Credit', 130.7, '12B', 55, 100,
    'Reason '.repeat(40)),
  pick('عمرو دياب — نور العين', 'عمرو دياب', 128, '8A', 60, 90, 'سبب الاختيار'),
  pick('プラスティック・ラヴ 東京ナイトクルージング真夜中のドア', '竹内まりや', 103.4, '1A', 65, 80, '理由'),
  pick('<img src=x onerror="document.title=1"><b>Bold</b>', '<script>document.title=1</script>', 130, '9A', 50, 70,
    '</p><a href="http://127.0.0.1/">link</a> &amp; {{x}}'),
];

const owned = ({ song, artist, bpm, key, genre }, more = {}) => ({
  song, artist, bpm, key, genre, lastPlayed: '', uri: `file:///music/${encodeURIComponent(artist)}/${encodeURIComponent(song)}.flac`, ...more,
});

const name = ({ song, artist }) => `${artist} - ${song}`;

/** A crate that holds some of the picks; of one it knows tempo and key better than the model. */
export const crate = {
  told: {
    tracks: 4212, withoutTempo: 12, withoutKey: 40, skipped: 3, sources: [{ name: 'Mixxx', tracks: 4212 }],
    keys: true, reading: false, progress: 1, status: 'Your crate: 4,212 tracks',
  },
  songs: Object.fromEntries([
    owned(glue), owned(picks[0], { lastPlayed: '2026-10-03' }), owned(picks[1], { bpm: 136, key: '4A' }), owned(picks[3]), owned(picks[5]),
  ].map((song) => [name(song), song])),
  after: {
    [name(picks[0])]: { currentTrack: { ...picks[0], other: '', confidence: 100 }, recommendations: [picks[3], picks[5]],
      source: 'Your crate', notice: 'Found in your crate.' },
  },
};

/** Sets and a night as an earlier window has kept them. */
const slim = ({ song, artist, album, bpm, key, genre, energy }) => ({ song, artist, album, bpm, key, genre, energy });
export const kept = {
  sets: [
    { id: 'b', night: '2026-11-22', songs: [glue, ...picks.slice(0, 6)].map((song, i) =>
      ({ ...slim(song), energy: song.energy || 66, played: i < 2 ? `2026-11-22T22:${10 + i * 5}:00.000Z` : '' })) },
    { id: 'a', night: '2026-11-15', songs: [slim(earlier[0])] },
  ],
  history: [
    [picks[4], '2026-11-15T23:20'], [picks[3], '2026-11-15T23:14'], [glue, '2026-11-15T23:08'], [earlier[0], '2026-11-15T23:02'],
  ].map(([song, at]) => ({ at: new Date(at).getTime(), kind: 'track', song: slim(song) })),
};
