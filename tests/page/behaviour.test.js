// What the page does with what a DJ does and with what the native side answers, in time and not.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import * as demo from './demo.js';
import { calls, emit, launch, open } from './harness.js';
import { hear } from './states.js';

const [kiara] = demo.earlier;
const auto = { autoSuggestTracks: true };
let browser;
before(async () => { browser = await launch(); });
after(() => browser.close());

/** A test with a page of its own that must end without a fault in the page. */
function on(name, options, run) {
  test(name, async () => {
    const page = await open(browser.context, options);
    const says = (selector, words) => page.waitForFunction(
      ([where, what]) => document.querySelector(where)?.textContent.includes(what), [selector, words], { timeout: 30000 });
    await run(page, says);
    assert.deepEqual(page.problems, []);
    await page.close();
  });
}

const sent = (page, method) =>
  page.evaluate((name) => window.native.calls.filter((call) => call.method === name).at(-1).args[0], method);
const set = (page, method, answer) =>
  page.evaluate(([name, value]) => { window.native.answers[name] = value; }, [method, answer]);
const focused = (page) => page.evaluate(() => document.activeElement.id);
const theme = (page) => page.evaluate(() => document.documentElement.dataset.theme);
const copied = (page) => page.evaluate(() => navigator.clipboard.readText());
const reply = (page, value) => page.evaluate((v) => window.__velmorResolve(window.native.waiting, v), value);
const waits = { SuggestTracks: { wait: true } };

on('a second press sends no second request, and the time runs', { answers: waits }, async (page, says) => {
  await page.click('#ask');
  await page.click('#ask', { force: true });
  await page.keyboard.press('s');
  await says('#ask', 'Listening and asking Tinker');
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

on('an automatic request counts as one that runs', { settings: auto }, async (page, says) => {
  await emit(page, 'track-changed', demo.glue);
  await says('#ask', 'asking Tinker');
  await page.click('#ask', { force: true });
  await emit(page, 'suggestions-ready', demo.result());
  await says('#views-note', 'New');
  assert.equal(await calls(page, 'SuggestTracks'), 0);
});

on('a list in use is not replaced until the DJ asks for it', { settings: auto }, async (page, says) => {
  await hear(page, kiara, demo.picks.slice(2));
  await page.click('[data-rank="1"] .card-main');
  await emit(page, 'track-changed', demo.glue);
  await says('#views-note', 'For earlier: Bonobo – Kiara');
  await emit(page, 'suggestions-ready', demo.result());
  await says('#messages', 'New suggestions for Bicep – Glue');
  await says('[data-rank="1"] .title', 'LesAlpx');
  await page.keyboard.press('n');
  await says('[data-rank="1"] .title', 'So U Kno');
  assert.equal(await page.locator('#messages .message').count(), 0);
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

on('errors stand as they come, with a way on', { settings: { tinkerApiKey: '' } }, async (page, says) => {
  const missing = 'Tinker API key is required for recommendations';
  await set(page, 'SuggestTracks', { reject: missing });
  await page.click('#ask');
  await says('[role=alert] p', missing);
  await page.click('text=Open settings');
  await page.waitForSelector('#settings[open]');
  assert.equal(await focused(page), 'field-tinkerApiKey');
  await page.keyboard.press('Escape');
  await set(page, 'SuggestTracks', { reject: demo.permission });
  await page.click('#ask');
  await says('#now-more', demo.permission);
  await emit(page, 'analysis-error', '<b>x</b>');
  await says('[role=alert] p', '<b>x</b>');
});

on('markup in any text shows as text', { settings: auto }, async (page, says) => {
  const evil = '<img src=x onerror="document.title=1"><script>document.title=2</script>';
  const track = { song: evil, artist: evil, album: evil, bpm: 1, key: evil, genre: evil, energy: 1, other: evil, confidence: 1 };
  const pick = { ...track, compatibilityScore: 5, explanation: evil };
  await emit(page, 'track-changed', track);
  await emit(page, 'suggestions-ready', { currentTrack: track, recommendations: [pick], source: evil, notice: evil });
  await emit(page, 'analysis-error', evil);
  for (const place of ['#now-title', '.card .title', '.reason', '#source', '#now-more', '.message']) await says(place, evil);
  assert.equal(await page.evaluate(() => document.querySelectorAll('img, script:not([src])').length), 0);
  assert.equal(await page.title(), 'Velmor');
});

on('a missing field, an unknown event or id never ends in a dead page', {}, async (page, says) => {
  const odd = [null, 7, 'x', [], {}, { currentTrack: null, recommendations: 'none' },
    { currentTrack: { song: 5 }, recommendations: [null, 3, { song: {} }] }];
  for (const value of odd) {
    for (const name of ['track-changed', 'suggestions-ready', 'analysis-error', 'compact-mode', 'track-stopped', 'never-heard-of']) {
      await emit(page, name, value);
    }
  }
  await page.evaluate(() => {
    window.__velmorResolve('no such id', {});
    window.__velmorReject(undefined, 'x');
    window.__velmorResolve(window.native.calls[0].id, null);
  });
  await emit(page, 'suggestions-ready', { currentTrack: { song: 'Glue' }, recommendations: [{ song: 'Only a title' }] });
  await says('.card .title', 'Only a title');
  await page.click('#tab-wheel');
  await page.click('#tab-history');
  await set(page, 'SuggestTracks', { currentTrack: {}, recommendations: [], source: '', notice: '' });
  await page.click('#ask');
  await says('[role=alert] p', 'no suggestions');
});

on('without a native side the page says so', { bridge: false }, async (page, says) => {
  await says('#now-more', 'cannot reach Velmor');
  await page.keyboard.press('?');
  assert.ok(await page.locator('#help').isVisible());
});

on('a save goes over a fresh copy and shows what was stored', {}, async (page, says) => {
  await page.click('#open-settings');
  await page.evaluate(() => {
    window.native.config.window = { x: 1, y: 2, width: 800, height: 900 };
    window.native.config.version = 9;
    window.native.normalise = () => ({ recommendationCount: 10 });
  });
  await page.click('#settings [data-value="5"]');
  await page.fill('#field-bpmTolerance', '7,5');
  await page.keyboard.press('Enter');
  await says('#fault-recommendationCount', 'Stored as 10.');
  const saved = await sent(page, 'SaveSettings');
  assert.deepEqual(saved, {
    ...demo.config, version: 9, window: { x: 1, y: 2, width: 800, height: 900 }, recommendationCount: 5, bpmTolerance: 7.5,
  });
});

on('bad values are said beside their field and not saved', {}, async (page, says) => {
  await page.click('#open-settings');
  for (const bad of ['0.5', '31', '', '1e1']) {
    await page.fill('#field-bpmTolerance', bad);
    await says('#fault-bpmTolerance', 'from 1 to 30');
  }
  await page.fill('#field-bpmTolerance', '30');
  await page.fill('#field-tinkerApiKey', '');
  await says('#fault-tinkerApiKey', 'press Clear');
  await page.keyboard.press('Enter');
  assert.equal(await calls(page, 'SaveSettings'), 0);
  await page.click('[aria-label="Clear: Tinker API key"]');
  await says('#hint-tinkerApiKey', 'Removed when you save');
  await page.keyboard.press('Enter');
  await page.waitForSelector('#settings:not([open])', { state: 'attached' });
  assert.equal((await sent(page, 'SaveSettings')).tinkerApiKey, '');
});

on('unsaved changes are not lost by accident, and keys do not stay in the page', {}, async (page, says) => {
  await page.click('#open-settings');
  assert.equal(await page.getAttribute('#field-tinkerApiKey', 'type'), 'password');
  await page.click('[aria-label="Show: Tinker API key"]');
  assert.equal(await page.getAttribute('#field-tinkerApiKey', 'type'), 'text');
  await page.click('[data-value="red"]');
  assert.equal(await theme(page), 'red');
  for (let i = 0; i < 4; i += 1) await page.keyboard.press('Escape');
  await emit(page, 'show-about');
  for (let i = 0; i < 2; i += 1) await page.keyboard.press('Escape');
  await page.click('text=Keep editing');
  await page.click('#settings .bar .tool');
  await page.click('text=Discard');
  assert.equal(await page.locator('#settings').isVisible(), false);
  assert.equal(await theme(page), 'dark');
  assert.equal(await page.evaluate(() => document.querySelector('#field-tinkerApiKey').value + JSON.stringify(Velmor.state)
    .match(/tk-demo/)), 'null');
  assert.equal(await calls(page, 'SaveSettings'), 0);
});

on('the switch saves, once for two presses', {}, async (page) => {
  await page.evaluate(() => { for (let i = 0; i < 2; i += 1) document.querySelector('#auto').click(); });
  await page.waitForSelector('#auto[aria-checked="true"]');
  assert.equal(await calls(page, 'SaveSettings'), 1);
  assert.deepEqual(await sent(page, 'SaveSettings'), { ...demo.config, autoSuggestTracks: true });
});

on('a card can be reached, copied and looked for by keys alone', { answers: { SuggestTracks: demo.result() } }, async (page, says) => {
  await browser.context.grantPermissions(['clipboard-read', 'clipboard-write']);
  await page.keyboard.press('s');
  await page.waitForSelector('.card');
  for (const key of ['ArrowDown', 'ArrowDown', 'Enter']) await page.keyboard.press(key);
  await page.waitForSelector('[data-rank="2"].open .reason');
  await page.keyboard.press('c');
  await says('#toast', 'Copied');
  assert.equal(await copied(page), 'Fred again.. – Delilah (pull me out of this)');
  await page.keyboard.press('f');
  assert.equal(await sent(page, 'BrowserOpenURL'),
    'https://open.spotify.com/search/Fred%20again..%20Delilah%20(pull%20me%20out%20of%20this)');
  await page.keyboard.press('w');
  await page.hover('.wheel-row[data-rank="3"]');
  await page.waitForSelector('.dot[data-rank="3"].lit');
  await page.focus('.dot[data-rank="5"]');
  await page.waitForSelector('.wheel-row[data-rank="5"].lit');
  await page.keyboard.press('Enter');
  await page.waitForSelector('#panel-list [data-rank="5"].open');
  await page.keyboard.press('h');
  await page.click('text=Copy as text');
  await says('#toast', 'History copied');
  assert.match(await copied(page),
    /^\d\d:\d\d {2}Bicep – Glue {2}130 BPM, 9A\n\d\d:\d\d {2}Suggestions for Bicep – Glue\n {7}1\. Overmono – So U Kno/);
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
    window.left = new Set([...document.querySelectorAll('#app button')].filter((one) => one.tabIndex === 0));
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
  await page.click('text=Enter the key');
  await page.waitForSelector('#settings[open]');
  assert.equal(await focused(page), 'field-openaiApiKey');
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

on('the square tells what is new until the list is touched', { settings: auto }, async (page) => {
  const words = () => page.getAttribute('#square', 'aria-label');
  await emit(page, 'compact-mode', true);
  await emit(page, 'track-changed', kiara);
  await page.waitForSelector('#square.busy', { state: 'attached' });
  await emit(page, 'suggestions-ready', demo.result(kiara));
  await page.waitForSelector('#square:not(.busy) .compact-new', { state: 'attached' });
  await emit(page, 'show-about');
  await page.keyboard.press('Escape');
  await page.keyboard.press('m');
  assert.equal(await calls(page, 'RestoreWindow'), 2);
  assert.equal(await words(), 'Key 8A, 128 BPM, new suggestions');
  await emit(page, 'compact-mode', false);
  await page.hover('.card');
  await page.waitForSelector('#square:not(:has(.compact-new))', { state: 'attached' });
  assert.equal(await words(), 'Key 8A, 128 BPM');
});
