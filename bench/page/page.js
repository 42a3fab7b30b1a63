// What the page costs in Debian's Chromium, each against a baseline of the same run: its first
// paint, a ranking of ten, and scrolling a set of two hundred songs. Prints the rows of a table.
import { existsSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { pathToFileURL } from 'node:url';
import { kept, result } from '../../tests/page/demo.js';
import { launch, open, root } from '../../tests/page/harness.js';

const rounds = 15;
const middle = (values) => [...values].sort((a, b) => a - b)[Math.floor(values.length / 2)];
const ms = (value) => `${value.toFixed(1)} ms`;
const row = (...cells) => console.log(`| ${cells.join(' | ')} |`);

/** Milliseconds from the navigation to the first paint of a file. */
async function firstPaint(context, file) {
  const page = await context.newPage();
  await page.goto(pathToFileURL(file).href);
  const time = await page.evaluate(() => new Promise((done) => {
    new PerformanceObserver((list) => done(list.getEntries()[0].startTime)).observe({ type: 'paint', buffered: true });
  }));
  await page.close();
  return time;
}

async function paints(context) {
  const folder = mkdtempSync(join(tmpdir(), 'velmor-bench-'));
  const empty = join(folder, 'empty.html');
  writeFileSync(empty, '<!doctype html><title>Empty</title><p>Velmor</p>');
  // As the program loads it: joined into three files.
  const built = join(root, 'build', 'release', 'share', 'velmor', 'Web', 'index.html');
  const own = existsSync(built) ? built : join(root, 'resources', 'Web', 'index.html');
  const [page, bare] = [[], []];
  for (let i = 0; i <= rounds; i += 1) {
    page.push(await firstPaint(context, own));
    bare.push(await firstPaint(context, empty));
  }
  rmSync(folder, { recursive: true });
  const [a, b] = [middle(page.slice(1)), middle(bare.slice(1))];
  row('First paint', ms(a), `an empty page: ${ms(b)}`, `${ms(a - b)} more`, '50 ms more');
}

async function cards(context) {
  const page = await open(context);
  const time = (value, kind) => page.evaluate(async ([given, how]) => {
    const taken = [];
    for (let i = 0; i < 31; i += 1) {
      const start = performance.now();
      if (how === 'ranking') {
        Velmor.rankings.arrived(given, 'manual');
      } else {
        const list = document.createElement('ol');
        list.append(...Array.from({ length: 10 }, (_, n) => Object.assign(document.createElement('li'), { textContent: `${n}${i}` })));
        document.querySelector('#panel-history').replaceChildren(list);
      }
      await Promise.resolve();
      document.querySelector('#panel-list').getBoundingClientRect();
      taken.push(performance.now() - start);
      await new Promise((next) => setTimeout(next, 20));
    }
    return taken.slice(1);
  }, [value, kind]);
  const plain = middle(await time(null, 'plain'));
  const ranking = await time(result(), 'ranking');
  await page.close();
  const [typical, worst] = [middle(ranking), Math.max(...ranking)];
  row('Ten cards, laid out', `${ms(typical)}, slowest ${ms(worst)}`, `ten lines of text: ${ms(plain)}`,
    `${(typical / Math.max(plain, 0.1)).toFixed(0)} times`, '16 ms');
}

/** The times between pictures while an element is scrolled through, in milliseconds. */
const scroll = (page, selector) => page.evaluate((where) => new Promise((done) => {
  const element = document.querySelector(where);
  const times = [];
  let last = 0;
  const step = (now) => {
    if (last) times.push(now - last);
    last = now;
    element.scrollTop += 60;
    if (times.length < 150) requestAnimationFrame(step);
    else done(times);
  };
  requestAnimationFrame(step);
}), selector);

const dropped = (times) => times.filter((time) => time > 25).length;

async function scrolling(context) {
  const { songs } = kept.sets[0];
  const many = Array.from({ length: 200 }, (_, i) => ({ ...songs[i % songs.length], song: `Song ${i}` }));
  const page = await open(context, { stored: { sets: [{ id: 'x', night: '2026-01-01', songs: many }] } });
  await page.keyboard.press('t');
  await page.evaluate(() => Velmor.update({ setShown: 'x' }));
  await page.waitForSelector('.set-row');
  const own = await scroll(page, '#panel-set');
  const shown = await page.locator('.set-row').count();
  await page.evaluate(() => {
    const panel = document.querySelector('#panel-set');
    panel.replaceChildren(...Array.from({ length: 600 }, (_, i) => Object.assign(document.createElement('p'), { textContent: `Line ${i}` })));
    panel.scrollTop = 0;
  });
  const bare = await scroll(page, '#panel-set');
  await page.close();
  row(`Scrolling ${shown} songs`, `${dropped(own)} of ${own.length} pictures late, longest ${ms(Math.max(...own))}`,
    `plain lines: ${dropped(bare)} late, longest ${ms(Math.max(...bare))}`, '', 'no more late than plain lines');
}

function weight() {
  const folder = join(root, 'build', 'release', 'share', 'velmor', 'Web');
  const files = ['index.html', 'page.css', 'page.js', 'velmor-bridge.js'].map((name) => join(folder, name));
  if (!files.every(existsSync)) return;
  const bytes = files.reduce((sum, file) => sum + readFileSync(file).length, 0);
  row('Weight', `${Math.round(bytes / 1000)} KB`, '', '', '200 KB');
}

const { context, close } = await launch();
row('What', 'The page', 'Baseline', 'Between them', 'Aim');
row('---', '---', '---', '---', '---');
await paints(context);
await cards(context);
await scrolling(context);
weight();
await close();
