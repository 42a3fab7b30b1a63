// An evening with the page: choosing from the list, putting a set together, looking ahead, and the
// history, by keys and by names.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import * as demo from './demo.js';
import { calls, emit, launch, on as onPage } from './harness.js';
import { at, hear } from './states.js';

const ranked = { answers: { SuggestTracks: demo.result() } };
const own = { ...ranked, crate: demo.crate };
let browser;
before(async () => {
  browser = await launch();
  await browser.context.grantPermissions(['clipboard-read', 'clipboard-write']);
});
after(() => browser.close());
const on = (name, options, run) => onPage(test, () => browser, name, options, run);

const copied = (page) => page.evaluate(() => navigator.clipboard.readText());
const titles = (page, where = '.card') => page.locator(`${where} .title`).allTextContents();
const sent = (page, method) =>
  page.evaluate((name) => window.native.calls.filter((call) => call.method === name).at(-1).args[0], method);
const press = async (page, ...keys) => {
  for (const key of keys) await page.keyboard.press(key);
};
async function ask(page) {
  await page.keyboard.press('s');
  await page.waitForSelector('.card');
}
async function choose(page, menu, entry) {
  await page.getByRole('button', { name: menu }).click();
  await page.getByRole('menuitem', { name: entry }).click();
}

on('a card can be reached, copied and looked for by keys alone', ranked, async (page, says) => {
  await ask(page);
  await press(page, 'ArrowDown', 'ArrowDown', 'Enter');
  await page.waitForSelector('[data-rank="2"].open .reason');
  await press(page, 'c');
  await says('#toast', 'Copied');
  assert.equal(await copied(page), 'Fred again.. Delilah (pull me out of this)');
  await press(page, 'Shift+C');
  await says('#toast', ' - ');
  assert.equal(await copied(page), 'Fred again.. - Delilah (pull me out of this)');
  await page.getByRole('button', { name: 'Copy: Fred' }).focus();
  await press(page, 'Enter', 'ArrowDown', 'ArrowUp', 'Enter');
  await says('#toast', 'Fred again.. Delilah');
  await press(page, 'o');
  assert.equal(await sent(page, 'BrowserOpenURL'),
    'https://open.spotify.com/search/Fred%20again..%20Delilah%20(pull%20me%20out%20of%20this)');
  await press(page, 'w');
  await page.hover('.wheel-row[data-rank="3"]');
  await page.waitForSelector('.dot[data-rank="3"].lit');
  await page.focus('.dot[data-rank="5"]');
  await page.waitForSelector('.wheel-row[data-rank="5"].lit');
  await press(page, 'Enter');
  await page.waitForSelector('#panel-list [data-rank="5"].open');
});

on('the list is sorted and sifted, and says what it hides', own, async (page, says) => {
  await ask(page);
  await page.waitForSelector('.owned');
  await press(page, 'f');
  const pick = (name) => page.getByRole('button', { name, exact: true }).click();
  await pick('Energy');
  assert.equal((await titles(page))[0], 'Archangel');
  await pick('Rank');
  for (const [name, left, first] of [
    ['Fits my key', '9 of 10', 'So U Kno'], ['No more than ±3 percent of pitch', '3 of 10', 'So U Kno'],
    ['My crate', '1 of 10', 'So U Kno'], ['House', 'No suggestion is left with this choice.', undefined],
  ]) {
    await pick(name);
    await page.getByText(left, { exact: left.includes(' of ') }).waitFor();
    assert.equal((await titles(page))[0], first, name);
  }
  await page.getByRole('button', { name: 'Show all' }).first().click();
  assert.equal((await titles(page)).length, 10);
  await page.getByRole('button', { name: 'Sort and filter' }).click();
  await says('#views-note', 'From');
  assert.equal(await page.locator('#sieve').isVisible(), false);
});

on('what the crate knows better stands beside what the model claimed', own, async (page) => {
  await ask(page);
  await page.locator('[data-rank="2"] .owned').waitFor();
  const card = page.locator('.card[data-rank="2"]');
  assert.match(await card.getByRole('button').first().textContent(), /136 BPM tempo said to be 131\.5.*4A.*key said to be 10A/);
  await press(page, '2', 'Enter');
  const words = await card.locator('.why').textContent();
  assert.match(words, /136 BPM, −4\.4 % to match.*131\.5.*9A → 4A, energy boost; 9A without key lock.*10A.*78 of 100/);
  await card.getByRole('button', { name: 'Show file' }).click();
  assert.equal(await sent(page, 'ShowInFileManager'), 'file:///music/Fred%20again../Delilah%20(pull%20me%20out%20of%20this).flac');
  const dragged = await page.evaluate(() => {
    const dataTransfer = new DataTransfer();
    document.querySelector('[data-rank="2"]').dispatchEvent(new DragEvent('dragstart', { dataTransfer, bubbles: true }));
    return dataTransfer.getData('text/uri-list');
  });
  assert.equal(dragged, 'file:///music/Fred%20again../Delilah%20(pull%20me%20out%20of%20this).flac');
  assert.equal(await page.locator('.card[data-rank="3"]').getAttribute('draggable'), null);
});

on('an older program shows nothing of the crate', ranked, async (page) => {
  await ask(page);
  await press(page, '1', 'Enter', 'f');
  const shown = await page.locator('#app').textContent();
  assert.doesNotMatch(shown, /crate|own music|What follows/i);
  assert.equal(await calls(page, 'LookUpInCrate'), 0);
});

on('one can look ahead from card to card and back', own, async (page, says) => {
  await ask(page);
  await page.waitForSelector('.owned');
  await press(page, '1', 'ArrowRight');
  await says('.ahead', 'After Overmono – So U Kno');
  assert.deepEqual(await titles(page), ['Never Come Back', 'Archangel']);
  await says('#now-title', 'Glue');
  await press(page, 'ArrowRight');
  await says('#toast', 'nothing to follow Caribou');
  await press(page, 'ArrowLeft');
  assert.equal((await titles(page)).length, 10);
  assert.equal(await page.evaluate(() => document.activeElement.closest('.card').dataset.rank), '1');
});

on('a failed request can be answered from the crate', {
  crate: { ...demo.crate, after: { 'Bicep - Glue': demo.result(demo.glue, demo.picks.slice(0, 2)) } },
  answers: { SuggestTracks: { reject: 'request failed with status 402' } },
}, async (page) => {
  await emit(page, 'track-changed', demo.glue);
  await press(page, 's');
  await page.getByRole('button', { name: 'Suggest from your crate instead' }).click();
  await page.waitForSelector('.card');
  assert.equal(await page.getByRole('alert').count(), 0);
  // A track that the crate does not have: the crate as a whole still has an answer.
  await emit(page, 'track-changed', demo.earlier[0]);
  await press(page, 's');
  await page.getByRole('alert').waitFor();
  await page.evaluate((answer) => { window.native.answers.SuggestTracks = answer; }, demo.result(demo.earlier[0], demo.picks.slice(2)));
  await page.getByRole('alert').getByRole('button', { name: 'Use your own music' }).click();
  await page.locator('.card .title', { hasText: 'LesAlpx' }).waitFor();
  assert.equal((await sent(page, 'SaveSettings')).aiModel, 'velmor/crate');
});

on('a set is put together, played and taken along', { ...own, stored: { sets: demo.kept.sets.slice(1) } }, async (page, says) => {
  await at(page, '23:40:00');
  await ask(page);
  await page.waitForSelector('.owned');
  await press(page, '1', 'p', '3', 'p', '4', 'p');
  await says('#tab-set', 'Set 3');
  assert.equal(await page.getByRole('button', { name: 'On the set: Overmono – So U Kno' }).getAttribute('aria-pressed'), 'true');
  await press(page, 't');
  const rows = () => titles(page, '.set-row');
  await page.getByRole('button', { name: 'Move Caribou' }).focus();
  await press(page, 'ArrowUp', 'ArrowUp');
  await page.getByRole('button', { name: 'Move Caribou – Never Come Back, number 1' }).waitFor();
  assert.deepEqual(await rows(), ['Never Come Back', 'So U Kno', 'LesAlpx']);
  const grip = await page.getByRole('button', { name: 'Move Caribou' }).boundingBox();
  await page.mouse.move(grip.x + 9, grip.y + 9);
  await page.mouse.down();
  await page.mouse.move(grip.x + 9, grip.y + 80, { steps: 5 });
  await page.mouse.up();
  assert.deepEqual(await rows(), ['So U Kno', 'Never Come Back', 'LesAlpx']);
  await emit(page, 'track-changed', { ...demo.picks[3], other: '', confidence: 100 });
  await page.getByRole('checkbox', { name: 'Played: Caribou', checked: true }).waitFor();
  await page.getByRole('button', { name: 'Take off the set: Floating Points' }).click();
  assert.equal((await rows()).length, 2);
  await press(page, 'u');
  assert.deepEqual(await rows(), ['So U Kno', 'Never Come Back', 'LesAlpx']);
  assert.match(await page.locator('#strip').getAttribute('aria-label'), /Tempo from 126 to 130 BPM, 2 of 2 key steps fit/);

  await choose(page, 'Export', 'Copy as text');
  assert.equal(await copied(page),
    '1. Overmono - So U Kno  130 BPM, 9A\n2. Caribou - Never Come Back  126 BPM, 9B\n3. Floating Points - LesAlpx  128 BPM, 8A');
  await choose(page, 'Export', 'Copy as M3U');
  assert.equal(await copied(page), ['#EXTM3U', '#EXTINF:-1,Overmono - So U Kno', '/music/Overmono/So U Kno.flac',
    '#EXTINF:-1,Caribou - Never Come Back', '/music/Caribou/Never Come Back.flac', '# not in your crate: Floating Points - LesAlpx'].join('\n'));
  await choose(page, 'Export', 'Copy as CSV');
  assert.match(await copied(page), /^"Number","Artist".*\r\n"1","Overmono","So U Kno","130","9A","Electronica","74",""/);

  await page.getByLabel('Which set').selectOption({ label: '15 November · 1' });
  assert.deepEqual(await rows(), ['Kiara']);
  await page.waitForTimeout(500);
  await page.reload();
  await press(page, 't');
  await says('#tab-set', 'Set 3');
  assert.deepEqual(await rows(), ['So U Kno', 'Never Come Back', 'LesAlpx']);
});

on('what is thrown out stays out tonight', { ...ranked, settings: { autoSuggestTracks: true } }, async (page, says) => {
  await at(page, '23:40:00');
  await hear(page);
  await press(page, '2', 'x', 'x');
  assert.deepEqual((await titles(page)).slice(0, 2), ['So U Kno', 'Never Come Back']);
  await press(page, 'u');
  await page.mouse.move(1, 1);
  await page.waitForTimeout(400);
  await page.reload();
  await hear(page);
  assert.deepEqual((await titles(page)).slice(0, 3), ['So U Kno', 'LesAlpx', 'Never Come Back']);
  await page.getByRole('button', { name: 'Show all' }).click();
  await says('[data-rank="2"]', 'Delilah');
});

on('the night can be searched, taken along, and remembers what came next', { stored: demo.kept }, async (page, says) => {
  await at(page, '23:14:00');
  await hear(page);
  await at(page, '23:19:30');
  await emit(page, 'track-changed', { ...demo.picks[0], song: '=So "U" Kno' });
  await emit(page, 'track-changed', demo.glue);
  await press(page, 'h');
  await says('.last-time', 'After this you played Overmono – =So "U" Kno');
  await choose(page, 'Export', 'Copy as cue sheet');
  const cue = await copied(page);
  assert.match(cue, /^TITLE "Night of 2026-11-15"/);
  await page.getByLabel('Search the history').fill('overmono');
  assert.deepEqual(await page.locator('.nights h2').allTextContents(), ['Tonight']);
  await choose(page, 'Export', 'Copy as CSV');
  assert.match(await copied(page), /\r\n"2026-11-22","23:19","Overmono","'=So ""U"" Kno","130","9A","Electronica"$/);
  await choose(page, 'Export', 'Copy as text');
  assert.match(await copied(page), /^23:14 {2}Suggestions for Bicep - Glue\n {7}1\. Overmono - So U Kno {2}130 BPM, 9A/);
  await choose(page, 'Export', 'Copy as cue sheet');
  assert.match(await copied(page), /TRACK 01 AUDIO\n {4}TITLE "=So 'U' Kno"\n {4}PERFORMER "Overmono"\n {4}INDEX 01 00:00:00$/);
  await page.getByLabel('Search the history').fill('nothing of this');
  await says('#panel-history', 'Nothing in the history fits');
  await page.waitForTimeout(500);
  await page.reload();
  await press(page, 'h');
  assert.equal(await page.locator('.past:not(.given)').count(), 7);
});

on('many songs in one key stay inside it as a number', {
  answers: { SuggestTracks: demo.result(demo.glue, demo.picks.map((song) => ({ ...song, key: '9A' }))) },
}, async (page) => {
  await ask(page);
  await press(page, 'w');
  assert.equal(await page.locator('.dot').count(), 2);
  await page.getByRole('button', { name: '+9 in 9A: 2, Delilah' }).press('Enter');
  assert.equal(await page.evaluate(() => document.activeElement.dataset.rank), '2');
});
