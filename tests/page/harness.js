// Opens the page in Debian's Chromium from its file, with the fake native side under it.
import assert from 'node:assert/strict';
import { mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { dirname, join } from 'node:path';
import { fileURLToPath, pathToFileURL } from 'node:url';
import { chromium } from 'playwright-core';
import { config } from './demo.js';

const here = dirname(fileURLToPath(import.meta.url));
export const root = join(here, '..', '..');
const web = join(root, 'resources', 'Web');

const flags = [
  '--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
  '--disable-background-networking', '--disable-component-update', '--disable-sync',
];

export async function launch() {
  const profile = mkdtempSync(join(tmpdir(), 'velmor-page-'));
  const context = await chromium.launchPersistentContext(profile, {
    executablePath: process.env.CHROMIUM ?? '/usr/bin/chromium', args: flags, colorScheme: 'dark',
  });
  const close = async () => {
    await context.close();
    rmSync(profile, { recursive: true, force: true });
  };
  return { context, close };
}

/**
 * A fresh page. `settings` overlays the stored ones, `answers` the native side's, `stored` is what
 * an earlier window has kept; `bridge: false`
 * leaves both ends of the bridge away. Problems the page met gather in page.problems.
 */
export async function open(context, { settings = {}, answers = {}, size = [461, 592], bridge = true, stored = {}, crate = null } = {}) {
  const page = await context.newPage();
  page.problems = [];
  page.on('pageerror', (error) => page.problems.push(error.message));
  page.on('console', (message) => {
    if (['error', 'warning'].includes(message.type())) page.problems.push(message.text());
  });
  page.on('request', (request) => {
    if (!request.url().startsWith('file:')) page.problems.push(`request for ${request.url()}`);
  });
  await page.setViewportSize({ width: size[0], height: size[1] });
  await page.addInitScript(`window.noBridge = ${!bridge}`);
  await page.addInitScript({ path: join(here, 'fake-native.js') });
  const start = { config: { ...config, ...settings }, answers, crate };
  await page.addInitScript(`Object.assign(window.native, ${JSON.stringify(start)})`);
  if (bridge) await page.addInitScript(readFileSync(join(web, 'velmor-bridge.js'), 'utf8'));
  // What an earlier page has kept goes; a reload of this one keeps what is there.
  await page.addInitScript(`if (window.name !== 'old') {
    localStorage.clear();
    for (const [name, value] of Object.entries(${JSON.stringify(stored)})) {
      localStorage.setItem('velmor.' + name, JSON.stringify(value));
    }
    window.name = 'old';
  }`);
  await page.goto(pathToFileURL(join(web, 'index.html')).href);
  if (bridge) await page.waitForFunction(() => window.native.count('StartAutoDetection') === 1);
  return page;
}

export const emit = (page, name, payload = null) =>
  page.evaluate(([event, value]) => window.__velmorEmit(`velmor:${event}`, value), [name, payload]);

export const calls = (page, method) => page.evaluate((name) => window.native.count(name), method);

/** A test with a page of its own that must end without a fault in the page. */
export function on(test, browser, name, options, run) {
  test(name, async () => {
    const page = await open(browser().context, options);
    const says = (selector, words) => page.waitForFunction(
      ([where, what]) => document.querySelector(where)?.textContent.includes(what), [selector, words], { timeout: 30000 });
    await run(page, says);
    assert.deepEqual(page.problems, []);
    await page.close();
  });
}
