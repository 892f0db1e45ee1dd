// Every page of a calculation: its example's answer, a refusal at its field, a curve; without a script; and where links lead.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { isBasis, isFlag } from '../../site/pages/parameters.js';
import { files, startBrowser } from './chromium.js';
import { catalogue } from './engine.js';

const UNREADABLE = 'zz';
let browser;
before(async () => {
  browser = await startBrowser();
});
after(() => browser.close());

// An argument that is typed, with a text that no kind takes.
async function refuse(page, calculation) {
  const { name } = calculation.arguments.find((parameter) => !isBasis(parameter) && !isFlag(parameter));
  const field = page.locator(`.calculator [name=${name}]`);
  await field.fill(UNREADABLE);
  const fault = page.locator(`#${calculation.calculation}-${name}-fault`);
  assert.match(await fault.textContent(), /'zz' is not a (number|date)/, `${calculation.calculation} ${name}`);
  assert.equal(await field.getAttribute('aria-invalid'), 'true');
  assert.equal(await page.locator('.answer').textContent(), '');
  assert.match(await page.locator('.refusal').textContent(), new RegExp(`^${name}: (value 1: )?'zz'`));
}

async function checkCalculation(page, calculation) {
  const name = calculation.calculation;
  assert.equal(await page.locator('.answer').textContent(), calculation.example.result, name);
  assert.ok((await page.locator('.curve svg .series > *').count()) > 0, `${name} has a curve`);
  assert.ok((await page.locator('.curve tbody tr').count()) > 1, `${name} has a table`);
  assert.ok((await page.locator('.snippet').count()) >= 4, `${name} is copied as four`);
  await refuse(page, calculation);
  await page.locator('.calculator [type=reset]').click();
  await page.waitForFunction((result) => document.querySelector('.answer').textContent === result, calculation.example.result);
  assert.equal(await page.locator('.calculator [aria-invalid]').count(), 0);
  assert.deepEqual(page.complaints, [], name);
}

test('each calculation has a page that calculates', async (t) => {
  const page = await browser.open('index.html');
  for (const calculation of catalogue.calculations) {
    await browser.go(page, `${calculation.calculation}.html`);
    await checkCalculation(page, calculation);
  }
  await browser.leave(page);
  t.diagnostic(`${catalogue.calculations.length} pages`);
});

test('each calculation is in the one file, too', async (t) => {
  const page = await browser.open('zelkovan.html');
  t.diagnostic(`interactive after ${Math.round(await page.evaluate(() => performance.now()))} ms`);
  for (const calculation of catalogue.calculations) {
    await page.evaluate((name) => (location.hash = name), calculation.calculation);
    await page.waitForSelector(`[data-calculation=${calculation.calculation}] .curve svg`);
    await checkCalculation(page, calculation);
  }
  await browser.leave(page);
});

test('pages can be read without a script', async () => {
  const page = await browser.open('index.html', { javaScriptEnabled: false });
  for (const calculation of catalogue.calculations) {
    await browser.go(page, `${calculation.calculation}.html`);
    const text = await page.locator('main').innerText();
    for (const { name } of calculation.arguments) assert.ok(text.includes(name), name);
    for (const words of [calculation.answers, calculation.formula.split('\n')[0], calculation.example.result, calculation.failure])
      assert.ok(text.replace(/\s+/g, ' ').includes(words.replace(/\s+/g, ' ')), `${calculation.calculation}: ${words}`);
  }
  await browser.leave(page);
});

test('every link leads to a page and, where it says so, to a place in it', async () => {
  const page = await browser.open('index.html');
  const links = {};
  for (const file of files.filter((one) => one !== 'zelkovan.html')) {
    await browser.go(page, file);
    links[file] = await page.evaluate(() => ({
      to: [...document.querySelectorAll('a[href]')].map((link) => link.getAttribute('href')),
      ids: [...document.querySelectorAll('[id]')].map(({ id }) => id),
    }));
  }
  links['zelkovan.html'] = { to: [], ids: [] };
  let checked = 0;
  for (const [file, { to }] of Object.entries(links)) {
    for (const link of to) {
      const [path, fragment] = link.split('#');
      const target = links[path === '' ? file : path];
      assert.ok(target, `${file}: ${link}`);
      assert.ok(!fragment || target.ids.includes(fragment), `${file}: ${link}`);
      ++checked;
    }
  }
  assert.ok(checked > 500, String(checked));
  await browser.leave(page);
});
