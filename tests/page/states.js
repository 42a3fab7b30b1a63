// Every state of the page by name: what the native side answers and what is done to get there.
import * as demo from './demo.js';
import { emit } from './harness.js';

const auto = { autoSuggestTracks: true };
const ranked = { SuggestTracks: demo.result() };

/** Stops the page's clock at a time of the night. */
export const at = (page, time) => page.clock.setFixedTime(new Date(`2026-11-22T${time}`));

const shrink = (page) => page.setViewportSize({ width: 82, height: 82 });

/** What the native side tells of a track and the suggestions for it. */
export async function hear(page, track = demo.glue, picks = demo.picks) {
  await emit(page, 'track-changed', track);
  await emit(page, 'suggestions-ready', demo.result(track, picks));
}

/** Asks for suggestions and opens the card at this place, if any. */
async function ask(page, rank) {
  await page.click('#ask');
  await page.waitForSelector('.card');
  if (rank) await page.click(`[data-rank="${rank}"] .card-main`);
}

async function check(page) {
  await emit(page, 'show-about');
  await page.click('#about .primary');
  await page.waitForSelector('#about .primary:not([aria-disabled])');
}

const update = (more) => ({
  CheckForUpdate: {
    current: '1.4.0', latest: '', updateAvailable: false, downloadUrl: '', releaseNotesUrl: '', offline: false, ...more,
  },
});

export const states = {
  'first-run': { settings: { tinkerApiKey: '' } },
  idle: {},
  detecting: { settings: auto },
  playing: { settings: { ...auto, tinkerApiKey: '' }, run: (page) => emit(page, 'track-changed', demo.glue) },
  busy: {
    answers: { SuggestTracks: { wait: true } },
    run: async (page) => {
      await at(page, '23:14:00');
      await emit(page, 'track-changed', demo.glue);
      await page.click('#ask');
      await at(page, '23:14:12');
    },
  },
  list: { answers: ranked, run: (page) => ask(page) },
  'card-open': { answers: ranked, run: (page) => ask(page, 2) },
  contradiction: {
    answers: { SuggestTracks: demo.result(demo.glue, [demo.picks[9], demo.picks[7], demo.picks[0], demo.picks[0], demo.glue]) },
    run: (page) => ask(page, 1),
  },
  wheel: {
    answers: ranked,
    run: async (page) => {
      await ask(page);
      await page.click('#tab-wheel');
      await page.hover('.wheel-row[data-rank="8"]');
    },
  },
  waiting: {
    settings: auto,
    run: async (page) => {
      await hear(page, demo.earlier[0], demo.picks.slice(2));
      await page.click('[data-rank="1"] .card-main');
      await hear(page);
    },
  },
  history: {
    settings: auto,
    run: async (page) => {
      const times = ['23:02:00', '23:08:00', '23:14:00'];
      for (const [i, track] of [...demo.earlier, demo.glue].entries()) {
        await at(page, times[i]);
        await hear(page, track);
      }
      await page.click('#tab-history');
      await page.click('summary >> nth=0');
    },
  },
  stopped: {
    answers: ranked, settings: auto,
    run: async (page) => {
      await hear(page);
      await emit(page, 'track-stopped');
    },
  },
  permission: { answers: { SuggestTracks: { reject: demo.permission } }, run: (page) => page.click('#ask') },
  error: {
    answers: { SuggestTracks: { reject: 'No active media session found. Start playback in a supported DJ app, then try again.' } },
    run: (page) => page.click('#ask'),
  },
  'no-bridge': { bridge: false },
  'long-texts': {
    answers: { SuggestTracks: demo.result({ ...demo.longPicks[0], key: 'Unreadable ♯', other: '', confidence: 1 }, demo.longPicks) },
    run: (page) => ask(page, 1),
  },
  settings: { run: (page) => page.click('#open-settings') },
  'settings-wrong': {
    run: async (page) => {
      await page.click('#open-settings');
      await page.fill('#field-bpmTolerance', '80');
      await page.fill('#field-openaiApiKey', 'sk with blanks');
      await page.fill('#field-aiModel', '');
    },
  },
  'settings-unsaved': {
    run: async (page) => {
      await page.click('#open-settings');
      await page.click('#settings [data-value="3"]');
      await page.keyboard.press('Escape');
    },
  },
  help: { run: (page) => page.keyboard.press('?') },
  about: { run: (page) => emit(page, 'show-about') },
  'update-available': {
    answers: update({ latest: '1.5.0', updateAvailable: true, downloadUrl: 'https://example.test/d', releaseNotesUrl: 'https://example.test/n' }),
    run: check,
  },
  'update-none': { answers: update({ latest: '1.4.0' }), run: check },
  'update-offline': { answers: update({ offline: true }), run: check },
  'first-run-crate': { settings: { tinkerApiKey: '' }, crate: demo.crate },
  refused: {
    crate: demo.crate, answers: { SuggestTracks: { reject: 'request failed with status 401' } },
    run: async (page) => {
      await emit(page, 'track-changed', demo.glue);
      await page.click('#ask');
      await page.waitForSelector('[role=alert]');
    },
  },
  listening: {
    settings: auto,
    run: async (page) => {
      await at(page, '23:14:00');
      await hear(page, demo.earlier[0]);
      await page.waitForSelector('.card');
      await page.evaluate(() => window.native.listen(true));
      await emit(page, 'track-changed', demo.glue);
      await at(page, '23:14:06');
    },
  },
  owned: { answers: ranked, crate: demo.crate, run: (page) => ask(page, 2) },
  sieve: {
    answers: ranked, crate: demo.crate,
    run: async (page) => {
      await ask(page);
      await page.keyboard.press('f');
      await page.getByRole('button', { name: 'Tempo', exact: true }).click();
      await page.getByRole('button', { name: 'Fits my key' }).click();
    },
  },
  menu: {
    answers: ranked,
    run: async (page) => {
      await ask(page, 2);
      await page.click('.open [aria-haspopup=menu]');
    },
  },
  ahead: {
    answers: ranked, crate: demo.crate,
    run: async (page) => {
      await ask(page, 1);
      await page.getByRole('button', { name: 'What follows?: Overmono' }).click();
      await page.waitForSelector('.ahead');
    },
  },
  'thrown-out': {
    answers: ranked,
    run: async (page) => {
      await ask(page);
      await page.keyboard.press('2');
      await page.keyboard.press('x');
    },
  },
  set: {
    crate: demo.crate, stored: demo.kept,
    run: async (page) => {
      await at(page, '23:40:00');
      await page.reload();
      await page.keyboard.press('t');
      await page.waitForSelector('.set-row .owned');
    },
  },
  'set-empty': { run: (page) => page.keyboard.press('t') },
  'wheel-full': {
    answers: { SuggestTracks: demo.result(demo.glue, demo.picks.map((song, i) => ({ ...song, key: i < 7 ? '9A' : '9B' }))) },
    run: async (page) => {
      await ask(page);
      await page.keyboard.press('w');
    },
  },
  nights: {
    stored: demo.kept, settings: auto,
    run: async (page) => {
      await at(page, '23:14:00');
      await hear(page);
      await page.keyboard.press('h');
    },
  },
  'long-error': {
    answers: { SuggestTracks: { reject: 'The answer was not what it should be. '.repeat(400) } },
    run: async (page) => {
      await emit(page, 'track-changed', demo.glue);
      await page.click('#ask');
      await page.waitForSelector('[role=alert]');
    },
  },
  compact: {
    answers: ranked,
    run: async (page) => {
      await ask(page);
      await shrink(page);
    },
  },
  'compact-busy': {
    answers: { SuggestTracks: { wait: true } }, settings: { aiModel: 'gpt-4.1', openaiApiKey: 'k' },
    run: async (page) => {
      await emit(page, 'track-changed', demo.earlier[1]);
      await page.click('#ask');
      await shrink(page);
    },
  },
  'compact-new': {
    settings: auto,
    run: async (page) => {
      await emit(page, 'compact-mode', true);
      await shrink(page);
      await hear(page, demo.earlier[0]);
    },
  },
  'compact-failed': {
    answers: { SuggestTracks: { reject: 'request failed with status 500' } },
    run: async (page) => {
      await emit(page, 'track-changed', demo.glue);
      await page.click('#ask');
      await page.waitForSelector('[role=alert]');
      await shrink(page);
    },
  },
  'compact-waiting': { settings: auto, run: shrink },
  'compact-idle': { run: shrink },
};
