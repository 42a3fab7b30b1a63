// What the page works out itself: key relations, tempo at half and double time, contradictions.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { glue } from './demo.js';
import { launch, open } from './harness.js';

let browser;
let page;
before(async () => {
  browser = await launch();
  page = await open(browser.context);
});
after(() => browser.close());

test('keys relate as on the wheel', async () => {
  const table = [
    ['8A', '8A', 'same'], ['12A', '1A', 'up'], ['1B', '12B', 'down'], ['8A', '8B', 'relative'],
    ['11B', '1B', 'boost'], ['8A', '3A', 'boost'], ['12A', '1B', 'diagonal'], ['8B', '7A', 'diagonal'],
    ['8A', '2A', 'clash'], ['8A', '10B', 'clash'], ['8A', 'Am', undefined], ['13A', '8A', undefined],
  ];
  const found = await page.evaluate((rows) =>
    rows.map(([from, to]) => Velmor.camelot.relation(from, to)?.name), table);
  assert.deepEqual(found, table.map((row) => row[2]));
});

test('tempo counts at half and double time', async () => {
  const table = [
    [128, 126, -2, 1], [174, 87.5, 1, 2], [70, 140, 0, 0.5], [128, 170, 42, 1], [0, 128, null, null],
  ];
  const found = await page.evaluate((rows) => rows.map(([from, to]) => {
    const tempo = Velmor.judge.tempo(from, to);
    return [tempo?.difference ?? null, tempo?.factor ?? null];
  }), table);
  assert.deepEqual(found, table.map((row) => row.slice(2)));
});

test('a card whose figures contradict its place says why', async () => {
  const song = (more) => ({ song: 'A', artist: 'B', bpm: 130, key: '9A', compatibilityScore: 90, ...more });
  const table = [
    ['nothing to say', [song()], [/^$/]],
    ['the current song in another version', [song({ song: 'GLUE (Extended Mix)', artist: 'bicep' })], [/playing now/]],
    ['a remix is another song', [song({ song: 'Glue (Hammer Remix)', artist: 'Bicep' })], [/^$/]],
    ['a duplicate', [song(), song({ song: 'a ' })], [/^$/, /same song as number 1/]],
    ['out of tolerance', [song({ bpm: 141 }), song({ song: 'C', bpm: 140 })], [/11\.0 BPM away/, /^$/]],
    ['half time within tolerance', [song({ bpm: 66 })], [/^$/]],
    ['keys that clash', [song({ key: '3B' })], [/3B clashes with 9A/]],
    ['nothing known, nothing claimed', [song({ bpm: 0, key: '' })], [/^$/]],
    ['one score out of order', [95, 60, 90, 88].map((compatibilityScore, i) => song({ song: `${i}`, compatibilityScore })),
      [/^$/, /out of order/, /^$/, /^$/]],
    ['one score too high for its place', [95, 90, 88, 99].map((compatibilityScore, i) => song({ song: `${i}`, compatibilityScore })),
      [/^$/, /^$/, /^$/, /out of order/]],
  ];
  for (const [name, songs, expected] of table) {
    const found = await page.evaluate(([current, list]) => {
      const { text, judge } = Velmor;
      return judge.cards(list.map(text.recommendation), text.song(current), 10).map((card) => card.marks.join(' '));
    }, [glue, songs]);
    assert.equal(found.length, expected.length, name);
    for (const [i, words] of found.entries()) assert.match(words, expected[i], `${name}, card ${i + 1}`);
  }
});
