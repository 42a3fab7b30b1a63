// Every state of the page is accessible in every theme, and holds at the sizes the window can have
// with texts of every script and at twice the size of text: nothing runs out at the side, nothing
// that can be pressed is cut off or too small.
import assert from 'node:assert/strict';
import { readFileSync, readdirSync, statSync } from 'node:fs';
import { createRequire } from 'node:module';
import { join } from 'node:path';
import { after, before, test } from 'node:test';
import { launch, open, root } from './harness.js';
import { states } from './states.js';

const axe = readFileSync(createRequire(import.meta.url).resolve('axe-core/axe.min.js'), 'utf8');
const themes = ['light', 'dark', 'red-light', 'red', 'orange-light', 'orange'];
const everything = {
  type: 'tag', values: ['wcag2a', 'wcag2aa', 'wcag21a', 'wcag21aa', 'wcag22aa', 'best-practice'],
};
const sizes = [[376, 495, ''], [461, 592, ''], [507, 651, ''], [376, 495, '175%'], [461, 592, '175%']];
let browser;
before(async () => { browser = await launch(); });
after(() => browser.close());

async function barriers(page) {
  await page.evaluate(axe);
  const found = [];
  for (const theme of themes) {
    await page.evaluate((name) => { document.documentElement.dataset.theme = name; }, theme);
    // Only colours differ between themes, so the other rules run once.
    const rules = theme === 'light' ? everything : { type: 'rule', values: ['color-contrast'] };
    const { violations } = await page.evaluate((runOnly) => window.axe.run({ runOnly, preload: false }), rules);
    for (const { id, nodes } of violations) {
      for (const node of nodes) found.push(`${theme}: ${id}: ${node.html.slice(0, 99)} ${node.failureSummary}`);
    }
  }
  return found;
}

// Runs in the page. Scrolls each control into view as a reader would and looks at where it stands.
function faults() {
  const found = [];
  const { scrollHeight, clientHeight } = document.documentElement;
  if (scrollHeight > clientHeight) found.push('the document scrolls under its own views');
  const scope = document.querySelector('dialog[open]') ?? document.body;
  for (const box of [document.documentElement, ...scope.querySelectorAll('main, .panel, .sheet, footer, header')]) {
    if (box.scrollWidth > box.clientWidth + 1) found.push(`${box.className || box.localName} is too wide`);
  }
  for (const control of scope.querySelectorAll('button, input, select, summary, [role=button]')) {
    if (!control.checkVisibility({ opacityProperty: true, visibilityProperty: true })) continue;
    const target = control.closest('label')?.querySelector('span') ?? control;
    target.scrollIntoView({ block: 'nearest', inline: 'nearest', behavior: 'instant' });
    const box = target.getBoundingClientRect();
    const name = control.getAttribute('aria-label') ?? (control.textContent || control.name);
    const inWindow = box.left >= -1 && box.right <= innerWidth + 1 && box.top >= -1 &&
      (box.bottom <= innerHeight + 1 || box.height > innerHeight);
    if (!inWindow) found.push(`${name} stands outside: ${JSON.stringify(box)}`);
    const least = control.matches('[role=button], [type=checkbox]') ? 16 : 31.9;
    if (box.height < least || box.width < least) found.push(`${name} is ${box.width} by ${box.height}`);
    const [x, y] = [box.left + box.width / 2, box.top + Math.min(box.height, innerHeight) / 2];
    const hit = document.elementFromPoint(x, y);
    if (inWindow && !(target.contains(hit) || hit?.contains(target))) {
      found.push(`${name} lies under ${hit?.outerHTML.slice(0, 60)}`);
    }
  }
  return found;
}

for (const [name, state] of Object.entries(states)) {
  test(`${name} is accessible and fits`, async () => {
    const page = await open(browser.context, state);
    await state.run?.(page);
    assert.deepEqual(await barriers(page), []);
    for (const [width, height, text] of name.startsWith('compact') ? [] : sizes) {
      await page.evaluate((value) => { document.documentElement.style.fontSize = value; }, text);
      await page.setViewportSize({ width, height });
      // A menu goes when the window changes, with the next picture.
      await page.evaluate(() => new Promise((next) => { requestAnimationFrame(() => requestAnimationFrame(next)); }));
      assert.deepEqual(await page.evaluate(faults), [], `${width} x ${height} ${text}`);
    }
    assert.deepEqual(page.problems, []);
    await page.close();
  });
}

test('the square shows its figures whole and nothing of the large page', async () => {
  const page = await open(browser.context, states.compact);
  await states.compact.run(page);
  for (const name of ['.compact-key', '.compact-bpm']) {
    const { x, y, width, height } = await page.locator(name).boundingBox();
    assert.ok(x >= 0 && x + width <= 82 && y >= 0 && y + height <= 82, name);
  }
  assert.equal(await page.locator('#app').isVisible(), false);
  await page.close();
});

test('the controls of the bar stay clear of the window buttons', async () => {
  const page = await open(browser.context);
  for (const inset of ['120.0px', '']) {
    await page.evaluate((value) =>
      document.documentElement.style.setProperty('--macos-titlebar-inset', value), inset);
    const { x } = await page.locator('#lamp').boundingBox();
    assert.ok(x >= (parseFloat(inset) || 72), `${inset}: ${x}`);
  }
  await page.close();
});

test('the page weighs less than 200 KB', () => {
  const folder = join(root, 'resources', 'Web');
  const files = readdirSync(folder, { recursive: true }).map((name) => statSync(join(folder, name)));
  const bytes = files.filter((file) => file.isFile()).reduce((sum, file) => sum + file.size, 0);
  assert.ok(bytes < 200_000, `${bytes} bytes`);
});
