// axe finds nothing in any state in any theme, and nothing leaves the page or fails in it.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { after, before, test } from 'node:test';
import { launch, open } from './harness.js';
import { states } from './states.js';

const axe = readFileSync(createRequire(import.meta.url).resolve('axe-core/axe.min.js'), 'utf8');
const themes = ['light', 'dark', 'red-light', 'red', 'orange-light', 'orange'];
const everything = {
  type: 'tag', values: ['wcag2a', 'wcag2aa', 'wcag21a', 'wcag21aa', 'wcag22aa', 'best-practice'],
};
let browser;
before(async () => { browser = await launch(); });
after(() => browser.close());

for (const [name, state] of Object.entries(states)) {
  test(`${name} is accessible in every theme`, async () => {
    const page = await open(browser.context, state);
    await state.run?.(page);
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
    assert.deepEqual(found, []);
    assert.deepEqual(page.problems, []);
    await page.close();
  });
}
