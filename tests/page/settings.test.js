// The settings sheet: what it stores, what it refuses, and what it never loses.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import * as demo from './demo.js';
import { calls, emit, launch, on as onPage } from './harness.js';

let browser;
before(async () => { browser = await launch(); });
after(() => browser.close());
const on = (name, options, run) => onPage(test, () => browser, name, options, run);

const saved = (page) =>
  page.evaluate(() => window.native.calls.filter((call) => call.method === 'SaveSettings').at(-1).args[0]);
const theme = (page) => page.evaluate(() => document.documentElement.dataset.theme);
const isClosed = (page) => page.waitForSelector('#settings:not([open])', { state: 'attached' });

async function openSheet(page) {
  await page.getByRole('button', { name: 'Settings' }).click();
  await page.waitForSelector('#field-tinkerApiKey:enabled');
}

on('a save goes over a fresh copy and shows what was stored', {}, async (page, says) => {
  await openSheet(page);
  await page.evaluate(() => {
    window.native.config.window = { x: 1, y: 2, width: 800, height: 900 };
    window.native.config.version = 9;
    window.native.normalise = () => ({ recommendationCount: 10 });
  });
  await page.click('#settings [data-value="5"]');
  await page.getByLabel('Tempo tolerance').fill('7,5');
  await page.keyboard.press('Enter');
  await says('#fault-recommendationCount', 'Stored as 10.');
  assert.deepEqual(await saved(page), {
    ...demo.config, version: 9, window: { x: 1, y: 2, width: 800, height: 900 }, recommendationCount: 5, bpmTolerance: 7.5,
  });
});

on('bad values are said beside their field and not saved', {}, async (page, says) => {
  await openSheet(page);
  for (const bad of ['0.5', '31', '', '1e1']) {
    await page.getByLabel('Tempo tolerance').fill(bad);
    await says('#fault-bpmTolerance', 'from 1 to 30');
  }
  await page.getByLabel('Tempo tolerance').fill('30');
  await page.getByLabel('Tinker API key', { exact: true }).fill('');
  await says('#fault-tinkerApiKey', 'press Clear');
  await page.keyboard.press('Enter');
  assert.equal(await calls(page, 'SaveSettings'), 0);
  await page.getByRole('button', { name: 'Clear: Tinker API key' }).click();
  await says('#hint-tinkerApiKey', 'Removed when you save');
  await page.keyboard.press('Enter');
  await isClosed(page);
  assert.equal((await saved(page)).tinkerApiKey, '');
});

on('unsaved changes are not lost by accident, and keys do not stay in the page', {}, async (page) => {
  await openSheet(page);
  const key = page.getByLabel('Tinker API key', { exact: true });
  assert.equal(await key.getAttribute('type'), 'password');
  await page.getByRole('button', { name: 'Show: Tinker API key' }).click();
  assert.equal(await key.getAttribute('type'), 'text');
  await page.getByText('Red, dark').click();
  assert.equal(await theme(page), 'red');
  for (let i = 0; i < 4; i += 1) await page.keyboard.press('Escape');
  await emit(page, 'show-about');
  for (let i = 0; i < 2; i += 1) await page.keyboard.press('Escape');
  await page.getByRole('button', { name: 'Keep editing' }).click();
  await page.getByRole('button', { name: 'Close' }).click();
  await page.getByRole('button', { name: 'Discard' }).click();
  assert.equal(await page.locator('#settings').isVisible(), false);
  assert.equal(await theme(page), 'dark');
  assert.equal(await page.evaluate(() => document.querySelector('#field-tinkerApiKey').value + JSON.stringify(Velmor.state)
    .match(/tk-demo/)), 'null');
  assert.equal(await calls(page, 'SaveSettings'), 0);
});

on('the button of the window closes the sheet first when something was typed', {}, async (page) => {
  const held = () => page.evaluate(() => window.native.calls.filter((call) => call.method === 'HoldWindow').map((call) => call.args[0]));
  await openSheet(page);
  await page.getByText('Red, dark').click();
  assert.deepEqual(await held(), [true]);
  await emit(page, 'close-asked');
  await page.getByRole('alertdialog', { name: 'Unsaved changes' }).waitFor();
  await page.getByRole('button', { name: 'Keep editing' }).click();
  assert.deepEqual(await held(), [true, true]);
  await emit(page, 'close-asked');
  await page.getByRole('button', { name: 'Discard' }).click();
  await isClosed(page);
  await openSheet(page);
  await page.getByText('Red, dark').click();
  await page.getByText('Dark', { exact: true }).click();
  assert.deepEqual(await held(), [true, true, true, false]);
});

on('what was typed is there again after a restart, but no key', {}, async (page, says) => {
  await openSheet(page);
  await page.getByRole('textbox', { name: 'Model' }).fill('gpt-4.1');
  await page.getByLabel('OpenAI API key', { exact: true }).fill('sk-secret-9');
  await page.reload();
  assert.doesNotMatch(await page.evaluate(() => JSON.stringify({ ...localStorage })), /secret|tk-demo/);
  await openSheet(page);
  await says('#settings', 'What you had typed is here again');
  assert.equal(await page.getByRole('textbox', { name: 'Model' }).inputValue(), 'gpt-4.1');
  assert.equal(await page.getByLabel('OpenAI API key', { exact: true }).inputValue(), '');
  await page.getByRole('button', { name: 'Save' }).click();
  await isClosed(page);
  assert.equal((await saved(page)).aiModel, 'gpt-4.1');
  await openSheet(page);
  assert.equal(await page.getByText('What you had typed').count(), 0);
});

on('the own music is one of the models', { crate: demo.crate, settings: { tinkerApiKey: '' } }, async (page, says) => {
  await openSheet(page);
  await page.getByRole('button', { name: 'Your own music', exact: true }).click();
  await says('#hint-aiModel', 'Your crate: 4,212 tracks');
  await page.getByLabel('Keys count').uncheck();
  await page.getByRole('button', { name: 'Save' }).click();
  await isClosed(page);
  assert.equal(await page.evaluate(() => window.native.crate.told.keys), false);
  assert.equal((await saved(page)).aiModel, 'velmor/crate');
  await says('.steps', 'Your own music: 4,212 tracks');
});
