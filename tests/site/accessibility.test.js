// What axe finds on each page, narrow, wide, light and dark; and that a keyboard alone does.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { after, before, test } from 'node:test';
import { files, startBrowser } from './chromium.js';

const axe = readFileSync(createRequire(import.meta.url).resolve('axe-core/axe.min.js'), 'utf8');
let browser;
before(async () => {
  browser = await startBrowser();
});
after(() => browser.close());

async function violations(page) {
  await page.evaluate(axe);
  const { violations: found } = await page.evaluate(() => globalThis.axe.run({ preload: false }));
  return found.map(({ id, nodes }) => `${id}: ${nodes[0].html.slice(0, 120)}`);
}

test('axe finds nothing on any page, and none is wider than 320 pixels', async (t) => {
  const page = await browser.open('index.html', { bypassCSP: true, viewport: { width: 320, height: 640 } });
  for (const file of files) {
    await browser.go(page, file);
    assert.ok((await page.evaluate(() => document.documentElement.scrollWidth)) <= 320, file);
    assert.deepEqual(await violations(page), [], file);
    assert.deepEqual(page.complaints, [], file);
  }
  await browser.leave(page);
  t.diagnostic(`${files.length} pages`);
});

const KINDS_OF_PAGES = ['index.html', 'PMT.html', 'XIRR.html', 'schedules.html', 'flows.html', 'docs.html', 'solvers.html', 'zelkovan.html'];

test('axe finds nothing in the dark, where there is room', async () => {
  const page = await browser.open('index.html', { bypassCSP: true, colorScheme: 'dark' });
  for (const file of KINDS_OF_PAGES) {
    await browser.go(page, file);
    assert.deepEqual(await violations(page), [], file);
  }
  await browser.leave(page);
});

test('axe finds nothing where an argument is refused, and in an opened table', async () => {
  const page = await browser.open('PMT.html', { bypassCSP: true });
  await page.locator('[name=nper]').fill('2.5');
  await page.locator('summary').click();
  assert.match(await page.locator('#PMT-nper-fault').textContent(), /2\.5 is not a whole number/);
  assert.deepEqual(await violations(page), []);
  await browser.leave(page);
});

const focused = (page) => page.evaluate(() => document.activeElement.name || document.activeElement.id || document.activeElement.textContent.trim());

async function tabTo(page, wanted) {
  for (let i = 0; i < 40; ++i) {
    await page.keyboard.press('Tab');
    if ((await focused(page)) === wanted) return;
  }
  assert.fail(`${wanted} cannot be reached by Tab`);
}

test('a call is made with the keyboard alone', async () => {
  const page = await browser.open('PMT.html');
  await page.keyboard.press('Tab');
  assert.equal(await focused(page), 'Skip to the content');
  await page.keyboard.press('Enter');
  await tabTo(page, 'nper');
  await page.keyboard.press('Control+A');
  await page.keyboard.type('180');
  await page.waitForFunction(() => document.querySelector('.answer').textContent === '-1687.7136560969022');
  assert.match(page.url(), /#nper=180$/);
  await tabTo(page, 'type');
  await page.keyboard.press('ArrowDown');
  await page.keyboard.press('ArrowDown');
  await page.waitForFunction(() => document.querySelector('.answer').textContent !== '-1687.7136560969022');
  await tabTo(page, 'over');
  await page.keyboard.press('ArrowDown');
  await page.waitForFunction(() => document.querySelector('.curve svg').getAttribute('aria-label').startsWith('PMT over nper'));
  await browser.leave(page);
});

test('search with the keyboard alone', async () => {
  const page = await browser.open('index.html');
  await tabTo(page, 'search');
  await page.keyboard.type('bond equiv');
  assert.equal(await page.locator('#found [role=option]').count(), 1);
  await page.keyboard.press('Enter');
  await page.waitForURL(/TBILLEQ\.html$/);
  await page.waitForSelector('html[data-ready]', { state: 'attached' });
  await tabTo(page, 'search');
  await page.keyboard.type('what is checked');
  await page.keyboard.press('Enter');
  await page.waitForURL(/solvers\.html#what-is-checked$/);
  await browser.leave(page);
});

test('the theme is chosen by its button and kept', async () => {
  const page = await browser.open('index.html', { colorScheme: 'light' });
  const paper = () => page.evaluate(() => getComputedStyle(document.body).backgroundColor);
  const light = await paper();
  await page.locator('.theme').press('Enter');
  const dark = await paper();
  assert.notEqual(dark, light);
  await page.reload();
  await page.waitForSelector('html[data-ready]', { state: 'attached' });
  assert.equal(await paper(), dark);
  await browser.leave(page);
});
