// What the page does with what a DJ does and with what the native side answers, in time and not.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import * as demo from './demo.js';
import { calls, emit, launch, on as onPage } from './harness.js';
import { hear } from './states.js';

const [kiara] = demo.earlier;
const auto = { autoSuggestTracks: true };
let browser;
before(async () => { browser = await launch(); });
after(() => browser.close());
const on = (name, options, run) => onPage(test, () => browser, name, options, run);

const sent = (page, method) =>
  page.evaluate((name) => window.native.calls.filter((call) => call.method === name).at(-1).args[0], method);
const set = (page, method, answer) =>
  page.evaluate(([name, value]) => { window.native.answers[name] = value; }, [method, answer]);
const focused = (page) => page.evaluate(() => document.activeElement.id);
const theme = (page) => page.evaluate(() => document.documentElement.dataset.theme);
const listen = (page, busy) => page.evaluate((value) => window.native.listen(value), busy);
const reply = (page, value) => page.evaluate((v) => window.__velmorResolve(window.native.waiting, v), value);
const waits = { SuggestTracks: { wait: true } };

on('a second press sends no second request, and the time runs', { answers: waits }, async (page, says) => {
  await page.click('#ask');
  await page.click('#ask', { force: true });
  await page.keyboard.press('s');
  // What answers promptly has listened already.
  await says('#ask', 'Listening, about');
  await says('#ask', 'Asking Tinker');
  await says('#ask-side', '1 s');
  assert.equal(await calls(page, 'SuggestTracks'), 1);
  await reply(page, demo.result());
  await page.waitForSelector('.card');
  await says('#ask', 'Suggest next tracks');
  // Nobody looks whether it still plays.
  await says('#now-state', 'Heard at');
  await page.keyboard.press('s');
  assert.equal(await calls(page, 'SuggestTracks'), 2);
});

on('while Velmor listens every control answers at once', {}, async (page, says) => {
  await listen(page, true);
  await page.keyboard.press('s');
  await says('#ask', 'Listening, about');
  const toggle = page.getByRole('switch', { name: 'suggest automatically' });
  await toggle.click();
  assert.equal(await toggle.getAttribute('aria-checked'), 'true');
  await page.getByRole('button', { name: 'Settings' }).click();
  await page.getByLabel('Tempo tolerance').fill('6');
  await page.getByText('Orange, dark').click();
  assert.equal(await theme(page), 'orange');
  assert.equal(await page.getByLabel('Tinker API key', { exact: true }).isDisabled(), true);
  await page.getByRole('button', { name: 'Save' }).click();
  await says('#settings', 'as soon as Velmor has listened');
  await set(page, 'SuggestTracks', demo.result());
  await listen(page, false);
  await page.waitForSelector('#settings:not([open])', { state: 'attached' });
  const saved = await sent(page, 'SaveSettings');
  assert.deepEqual(saved, { ...demo.config, bpmTolerance: 6, theme: 'orange', autoSuggestTracks: true });
});

on('a switch in doubt ends as the DJ wants it', {}, async (page) => {
  await listen(page, true);
  for (let i = 0; i < 3; i += 1) await page.keyboard.press('a');
  await listen(page, false);
  await page.waitForFunction(() => window.native.config.autoSuggestTracks);
  await page.waitForSelector('#auto[aria-checked="true"]');
  await set(page, 'SaveSettings', { reject: 'The disk is full.' });
  await page.keyboard.press('a');
  await page.getByRole('alert').getByText('The disk is full.').waitFor();
  await page.waitForSelector('#auto[aria-checked="true"]');
});

on('of an automatic and a manual request one is seen as long as one runs', { settings: auto, answers: waits }, async (page, says) => {
  await emit(page, 'track-changed', demo.glue);
  await says('#ask', 'Asking Tinker');
  await page.click('#ask', { force: true });
  await emit(page, 'suggestions-ready', demo.result());
  await says('#views-note', 'New');
  assert.equal(await calls(page, 'SuggestTracks'), 0);
  await page.keyboard.press('s');
  await emit(page, 'track-changed', kiara);
  await reply(page, demo.result());
  await page.keyboard.press('s');
  assert.equal(await calls(page, 'SuggestTracks'), 1);
});

on('the first request after the switch is seen', {}, async (page, says) => {
  await page.getByRole('switch').click();
  // The track may be told before the settings are read back.
  await emit(page, 'track-changed', demo.glue);
  await says('#ask', 'Asking Tinker');
});

on('a list in use stays until the DJ asks or rests', { settings: auto }, async (page, says) => {
  await hear(page, kiara, demo.picks.slice(2));
  await page.click('[data-rank="1"] .card-main');
  await emit(page, 'track-changed', demo.glue);
  await says('#views-note', 'For earlier: Bonobo – Kiara');
  const color = () => page.evaluate(() => getComputedStyle(document.querySelector('.card .title')).color);
  const dimmed = await color();
  await emit(page, 'suggestions-ready', demo.result());
  await says('#messages', 'For Bicep – Glue');
  await says('[data-rank="1"] .title', 'LesAlpx');
  await page.keyboard.press('n');
  await says('[data-rank="1"] .title', 'So U Kno');
  assert.notEqual(await color(), dimmed);
  assert.equal(await page.locator('#messages .message').count(), 0);
  await page.mouse.move(1, 1);
  await page.hover('[data-rank="3"]');
  await hear(page, kiara, demo.picks.slice(2));
  await page.getByRole('button', { name: 'Show new suggestions' }).waitFor();
  await says('[data-rank="1"] .title', 'LesAlpx');
});

on('a late answer for a track that is gone does not touch the newer list', { answers: waits }, async (page, says) => {
  await emit(page, 'track-changed', kiara);
  await page.click('#ask');
  await hear(page);
  await page.waitForSelector('.card');
  await reply(page, demo.result(kiara, demo.picks.slice(2)));
  await says('#toast', 'Late suggestions for Bonobo – Kiara');
  await says('[data-rank="1"] .title', 'So U Kno');
  await says('#now-title', 'Glue');
  await page.click('#tab-history');
  assert.equal(await page.locator('.given').count(), 2);
});

on('a later report keeps what the sound gave', { settings: auto }, async (page, says) => {
  await emit(page, 'suggestions-ready', demo.result());
  await emit(page, 'track-changed', { ...demo.glue, bpm: 0, key: '', song: 'GLUE ' });
  await says('#now-bpm', '130');
  await emit(page, 'track-changed', kiara);
  await says('#now-bpm', '128');
  await emit(page, 'track-stopped');
  await says('#now-state', 'Stopped');
});

// The program's own words and those of providers, and what helps.
const failures = [
  ['request failed with status 401', 'does not take the key', 'Open settings', 'field-tinkerApiKey'],
  ['Incorrect API key provided: sk-x.', 'does not take the key', 'Open settings', 'field-tinkerApiKey'],
  ['Tinker API key is required for recommendations', '', 'Open settings', 'field-tinkerApiKey'],
  ['request failed with status 404', 'does not know the model', 'Open settings', 'field-aiModel'],
  ['The model `gpt-9` does not exist', 'does not know the model', 'Open settings', 'field-aiModel'],
  ['request failed with status 429', 'Wait a moment', 'Try again'],
  ['request failed with status 503', 'has trouble', 'Try again'],
  ['Tinker\'s answer was cut off; ask for fewer songs', 'Ask for fewer songs', 'Ask for fewer', ''],
  ['Tinker answered with a web page: is this network asking you to log in?', 'browser', 'Try again'],
  ['The server could not be found. Is this computer online?', '', 'Try again'],
];

for (const [error, help, way, field] of failures) {
  on(`after "${error}" the page says what helps`, { answers: { SuggestTracks: { reject: error } } }, async (page, says) => {
    await emit(page, 'track-changed', demo.glue);
    await page.click('#ask');
    await says('[role=alert]', error);
    await says('[role=alert]', help);
    await says('#now-title', 'Glue');
    assert.equal(await page.locator('.step.ready', { hasText: 'Tinker is ready' }).count(), /tinker|model/i.test(field) ? 0 : 1);
    await page.getByRole('alert').getByRole('button', { name: way }).click();
    if (field !== undefined) await page.waitForSelector('#settings[open]');
    if (field) await page.waitForFunction((id) => document.activeElement.id === id, field);
    if (field === undefined) assert.equal(await calls(page, 'SuggestTracks'), 2);
  });
}

on('a failure keeps the track that was found, and its text keeps its place', {
  answers: { SuggestTracks: { reject: 'x '.repeat(8000) }, GetDetectedTrack: demo.glue },
}, async (page, says) => {
  await page.click('#ask');
  await says('#now-title', 'Glue');
  const { height } = await page.getByRole('alert').boundingBox();
  assert.ok(height < 200, `${height} px`);
  await set(page, 'SuggestTracks', { reject: demo.permission });
  await page.click('#ask');
  await says('[role=alert]', demo.permission);
  await says('#now-title', 'Glue');
});

on('markup in any text shows as text', { settings: auto }, async (page, says) => {
  const evil = '<img src=x onerror="document.title=1"><script>document.title=2</script>';
  const track = { song: evil, artist: evil, album: evil, bpm: 1, key: evil, genre: evil, energy: 1, other: evil, confidence: 1 };
  const pick = { ...track, song: `${evil}2`, compatibilityScore: 5, explanation: evil };
  await emit(page, 'track-changed', track);
  await emit(page, 'suggestions-ready', { currentTrack: track, recommendations: [pick, { ...pick, song: `${evil}3`, genre: 'B' }], source: evil, notice: evil });
  await page.keyboard.press('f');
  await page.keyboard.press('1');
  await page.keyboard.press('p');
  await emit(page, 'analysis-error', evil);
  for (const place of ['#now-title', '.card .title', '.reason', '#source', '#now-more', '.message', '#toast']) await says(place, evil);
  await says('#sieve', '<img src=x');
  await page.keyboard.press('t');
  await says('.set-row', evil);
  await page.keyboard.press('h');
  await says('.past .title', evil);
  assert.equal(await page.evaluate(() => document.querySelectorAll('img, script:not([src])').length), 0);
  assert.equal(await page.title(), 'Velmor');
});

on('a missing field, an unknown event or id never ends in a dead page', {
  stored: { sets: [null, { id: 1 }, { id: 'x', night: '2026-11-22', songs: [3, {}] }], history: [{ at: 'x' }, { at: 5, kind: 'ranking' }], out: 7, draft: 'x' },
}, async (page, says) => {
  const odd = [null, 7, 'x', [], {}, { currentTrack: null, recommendations: 'none' },
    { currentTrack: { song: 5 }, recommendations: [null, 3, { song: {} }] }];
  const events = ['track-changed', 'suggestions-ready', 'analysis-error', 'compact-mode', 'track-stopped', 'crate-changed', 'never-heard-of'];
  for (const value of odd) {
    for (const name of events) await emit(page, name, value);
  }
  await page.evaluate(() => {
    window.__velmorResolve('no such id', {});
    window.__velmorReject(undefined, 'x');
    window.__velmorResolve(window.native.calls[0].id, null);
  });
  await emit(page, 'suggestions-ready', { currentTrack: { song: 'Glue' }, recommendations: [{ song: 'Only a title' }] });
  await says('.card .title', 'Only a title');
  for (const tab of ['wheel', 'set', 'history']) await page.click(`#tab-${tab}`);
  await set(page, 'SuggestTracks', { currentTrack: {}, recommendations: [], source: '', notice: '' });
  await page.click('#ask');
  await says('[role=alert] p', 'no suggestions');
});

on('without a native side the page says so', { bridge: false }, async (page, says) => {
  await says('#now-more', 'cannot reach Velmor');
  await page.keyboard.press('?');
  assert.ok(await page.locator('#help').isVisible());
});

on('links of an update leave only as web addresses', {
  answers: { CheckForUpdate: { latest: '2.0.0', updateAvailable: true, downloadUrl: 'https://example.test/d', releaseNotesUrl: 'file:///etc/passwd' } },
}, async (page, says) => {
  await emit(page, 'show-about');
  await says('.about-version', 'Version 1.4.0, built 22.11.2026');
  await page.click('#about .primary');
  await says('.about-outcome', 'Version 2.0.0 is available');
  assert.equal(await page.locator('.about-outcome button').count(), 1);
  await page.click('text=Download');
  assert.equal(await sent(page, 'BrowserOpenURL'), 'https://example.test/d');
});

on('everything can be reached with Tab alone, and shows where the focus is', { answers: { SuggestTracks: demo.result() } }, async (page) => {
  await page.click('#ask');
  await page.waitForSelector('.card');
  await page.evaluate(() => {
    window.left = new Set([...document.querySelectorAll('#app button')].filter((one) => one.tabIndex === 0 && one.checkVisibility()));
  });
  const count = await page.evaluate(() => window.left.size);
  for (let i = 0; i <= count; i += 1) {
    await page.keyboard.press('Tab');
    await page.evaluate(() => {
      const one = document.activeElement;
      const faded = [one, one.parentElement].some((part) => getComputedStyle(part).opacity < 1);
      if (getComputedStyle(one).outlineStyle === 'solid' && !faded) window.left.delete(one);
    });
  }
  assert.deepEqual(await page.evaluate(() => [...window.left].map((one) => one.outerHTML)), []);
});

on('a first start leads to the missing key', { settings: { tinkerApiKey: '', aiModel: 'GPT-4.1' } }, async (page, says) => {
  await says('.steps', 'OpenAI needs a key');
  await page.click('text=Get a key');
  assert.match(await sent(page, 'BrowserOpenURL'), /^https:/);
  await page.click('text=Enter a key');
  await page.waitForFunction(() => document.activeElement.id === 'field-openaiApiKey');
});

on('nothing moves for a reader who wants no motion', { answers: waits }, async (page) => {
  await page.click('#ask');
  await page.waitForSelector('.busy .ask-run');
  for (const reducedMotion of ['reduce', 'no-preference']) {
    await page.emulateMedia({ reducedMotion });
    const moving = await page.evaluate(() => document.getAnimations().length);
    assert.equal(moving === 0, reducedMotion === 'reduce');
  }
});

on('the square tells what is new, what failed and what it waits for', { settings: auto }, async (page) => {
  const words = (expected) => page.waitForFunction((value) => document.querySelector('#square').ariaLabel === value, expected);
  await words('Velmor, waiting for a track');
  await emit(page, 'compact-mode', true);
  await emit(page, 'track-changed', kiara);
  await words('Key 8A, 128 BPM, asking');
  await emit(page, 'analysis-error', 'request failed with status 500');
  await words('Key 8A, 128 BPM, the last request failed');
  await hear(page, kiara);
  await page.waitForSelector('#square:not(.busy) .compact-new', { state: 'attached' });
  await emit(page, 'show-about');
  await page.keyboard.press('Escape');
  await page.keyboard.press('m');
  assert.equal(await calls(page, 'RestoreWindow'), 2);
  await words('Key 8A, 128 BPM, new suggestions');
  await emit(page, 'compact-mode', false);
  await page.hover('.card');
  await words('Key 8A, 128 BPM');
  assert.equal(await focused(page), '');
});
