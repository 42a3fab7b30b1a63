// How long a ranking of ten takes from its arrival to a finished layout, in Debian's Chromium.
import { result } from '../../tests/page/demo.js';
import { launch, open } from '../../tests/page/harness.js';

const { context, close } = await launch();
const page = await open(context);
const times = await page.evaluate(async (value) => {
  const taken = [];
  for (let i = 0; i < 30; i += 1) {
    const start = performance.now();
    Velmor.rankings.arrived(value, 'manual');
    await Promise.resolve();
    document.querySelector('#panel-list').getBoundingClientRect();
    taken.push(performance.now() - start);
    await new Promise((next) => setTimeout(next, 20));
  }
  return taken.sort((a, b) => a - b);
}, result());
const shown = await page.locator('.card').count();
await close();
console.log(`${shown} cards: median ${times[15].toFixed(1)} ms, slowest ${times.at(-1).toFixed(1)} ms`);
