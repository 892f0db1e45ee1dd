// How people use the pages: shared addresses, curves, schedules, pasted flows. Expected answers are those of docs and of
// hand calculation, as they are said.
import assert from 'node:assert/strict';
import { createServer } from 'node:http';
import { readFileSync } from 'node:fs';
import { after, before, test } from 'node:test';
import { files, folder, startBrowser } from './chromium.js';

let browser;
before(async () => {
  browser = await startBrowser();
});
after(() => browser.close());

const text = (page, selector) => page.locator(selector).textContent();

test('an address brings back what was typed, the curve too', async () => {
  const page = await browser.open('PRICE.html');
  await page.locator('.calculator [name=rate]').fill('5.75%');
  await page.locator('.calculator [name=basis]').selectOption('ACTUAL');
  await page.locator('[name=over]').selectOption('yield');
  await page.locator('[name=from]').fill('1%');
  const answer = await text(page, '.answer');
  const other = await browser.open(page.url());
  assert.equal(await text(other, '.answer'), answer);
  assert.equal(await other.locator('.calculator [name=rate]').inputValue(), '5.75%');
  assert.match(await other.locator('.curve svg').getAttribute('aria-label'), /^PRICE over yield from 0\.01 to 0\.12$/);
  assert.deepEqual([...page.complaints, ...other.complaints], []);
  await browser.leave(page);
  await browser.leave(other);
});

test('no address holds a page up, or throws', async () => {
  const addresses = [
    'PMT.html#nper=1e308&over=nper',
    'PMT.html#over=nper&from=10000000000000000&to=10000000000000002',
    'PMT.html#rate=1e308',
    'SLN.html#cost=1e17&salvage=10&life=1&over=salvage',
    'PRICE.html#over=rate&from=1%25&to=1.0000001%25',
    'COUPNCD.html#settlement=9999-01-01&maturity=9999-12-31&over=settlement',
    'ODDLPRICE.html#settlement=2025-01-20&maturity=2037-09-18&lastInterest=2024-11-15&frequency=3&over=yield',
    'IRR.html#flows=1,2,3&over=flows-5&from=1&to=2',
    'FVSCHEDULE.html#rates=&over=rates-1',
    'XIRR.html#values=%00%zz&dates=<img src=x>',
    'zelkovan.html#constructor',
    'zelkovan.html#content',
    'zelkovan.html#PMT?rate=<b>',
  ];
  for (const address of addresses) {
    const page = await browser.open(address);
    assert.ok((await page.locator('h1').count()) > 0, address);
    assert.equal(await page.locator('img').count(), 0, address);
    assert.deepEqual(page.complaints, [], address);
    await browser.leave(page);
  }
});

test('the link over the header leaves what was typed', async () => {
  for (const address of ['PMT.html#nper=180', 'zelkovan.html#PMT?nper=180']) {
    const page = await browser.open(address);
    const answer = await text(page, '.answer');
    assert.equal(answer, '-1687.7136560969022');
    await page.keyboard.press('Tab');
    await page.keyboard.press('Enter');
    assert.equal(await text(page, '.answer'), answer);
    assert.match(page.url(), /nper=180$/);
    assert.equal(await page.evaluate(() => document.activeElement.tagName), 'MAIN');
    await browser.leave(page);
  }
});

test('pictures have the room that there is, and their letters their size', async () => {
  const page = await browser.open('PMT.html', { viewport: { width: 320, height: 640 } });
  const scale = () => page.evaluate(() => {
    const svg = document.querySelector('.curve svg');
    return svg.getBoundingClientRect().width / svg.viewBox.baseVal.width;
  });
  assert.ok((await scale()) > 0.95, String(await scale()));
  await page.setViewportSize({ width: 700, height: 640 });
  await page.waitForFunction(() => document.querySelector('.curve svg').viewBox.baseVal.width > 600);
  const cut = await page.evaluate(() => {
    const box = document.querySelector('.curve svg').getBoundingClientRect();
    return [...document.querySelectorAll('.curve svg text')].filter((label) => label.getBoundingClientRect().left < box.left || label.getBoundingClientRect().right > box.right).length;
  });
  assert.equal(cut, 0);
  assert.deepEqual(page.complaints, []);
  await browser.leave(page);
});

test('a search that fails says what to call instead, and leads there', async () => {
  const page = await browser.open('RATE.html#nper=5&pmt=-100&pv=-1000&fv=1800');
  assert.match(await text(page, '.refusal'), /the search starts at -pmt \/ pv.*Instead: IRR flows=-1000,-100,-100,-100,-100,1700$/);
  await page.locator('.refusal a').click();
  await page.waitForURL(/IRR\.html/);
  await page.waitForSelector('html[data-ready]', { state: 'attached' });
  assert.equal(await text(page, '.answer'), '0.045954651878377106'); // as docs/from-spreadsheets.md has it
  await browser.leave(page);
});

test('the curve says what lies under the pointer, and what is no range', async () => {
  const page = await browser.open('SLN.html');
  await page.locator('.curve svg').hover({ position: { x: 300, y: 100 } });
  assert.match(await text(page, '.curve .readout'), /^cost [\d.]+: [\d.-]+$/);
  await page.locator('[name=from]').fill('x');
  assert.match(await text(page, '.curve .fault'), /from: 'x' is not a number$/);
  await browser.leave(page);
});

test('a loan: payments, pictures, a row a period', async () => {
  const page = await browser.open('schedules.html');
  const loan = page.locator('[data-schedule=loan]');
  // 200,000 at 0.5 % for 360 periods: 200000 * 0.005 / (1 - 1.005^-360) = 1199.10
  assert.match(await loan.locator('.sums').textContent(), /Each payment -1,199\.10; all 360: -431,676\.38\. Interest -231,676\.38\. The last payment on 2055-01-31\./);
  assert.equal(await loan.locator('tbody tr').count(), 360);
  assert.equal(await loan.locator('svg').count(), 2);
  await loan.locator('[name=nper]').fill('2.5');
  await page.waitForFunction(() => document.querySelector('#loan-nper-fault').textContent !== '');
  assert.match(await loan.locator('#loan-nper-fault').textContent(), /2\.5 is not a whole number/);
  assert.equal(await loan.locator('svg').count(), 0);
  const again = await browser.open(page.url());
  assert.equal(await again.locator('#loan-nper').inputValue(), '2.5');
  assert.deepEqual(page.complaints, []);
  await browser.leave(again);
  await browser.leave(page);
});

test('depreciation: five methods side by side', async () => {
  const page = await browser.open('schedules.html');
  const asset = page.locator('[data-schedule=depreciation]');
  assert.deepEqual(await asset.locator('tbody tr').first().locator('th, td').allTextContents(),
    // SLN 9000/5; SYD 9000*5/15; DB: rate 1 - 0.1^(1/5) rounded 0.369, 10000*0.369*7/12; DDB, VDB 10000*2/5
    ['1', '1,800.00', '3,000.00', '2,152.50', '4,000.00', '4,000.00', '8,200.00', '7,000.00', '7,847.50', '6,000.00', '6,000.00']);
  assert.equal(await asset.locator('tbody tr').count(), 6);
  await browser.leave(page);
});

test('pasted flows: both rates, told as the only ones, and the picture', async () => {
  const page = await browser.open('flows.html');
  await page.locator('textarea').fill('-100\n230\n-132\n'); // 10 % and 20 %: (1.1 - x)(1.2 - x) * -100
  await page.waitForFunction(() => document.querySelector('.understood').textContent.startsWith('3 rows of amounts'));
  assert.equal(await text(page, '.count'), '2 rates, and no others: the amounts change sign 2 times.');
  assert.deepEqual(await page.locator('.flows .table').nth(1).locator('tbody th').allTextContents(), ['10 %', '20 %']);
  assert.equal(await page.locator('.flows svg .mark').count(), 2);
  await page.locator('textarea').fill('2021-03-01;-1000\n2022-03-01;x\n2023-03-01;1210\n');
  await page.waitForFunction(() => document.querySelector('#flows-fault').textContent === "line 2: 'x' is no amount");
  assert.equal(await page.locator('.flows svg').count(), 0);
  await page.locator('textarea').fill('2021-03-01;-1000\n2023-03-01;1210\n'); // two years: 10 %
  await page.waitForFunction(() => document.querySelector('.count')?.textContent.startsWith('1 rate, and no others'));
  assert.deepEqual(page.complaints, []);
  await browser.leave(page);
});

const TYPES = { html: 'text/html', css: 'text/css', js: 'text/javascript' };

test('a server serves the same pages', async () => {
  const server = createServer((request, response) => {
    const file = new URL(request.url, 'http://x').pathname.slice(1);
    response.setHeader('Content-Type', TYPES[file.split('.').pop()] ?? 'application/octet-stream');
    response.end(readFileSync(new URL(file, folder)));
  });
  await new Promise((resolve) => server.listen(0, '127.0.0.1', resolve));
  const origin = `http://127.0.0.1:${server.address().port}/`;
  const page = await browser.open('index.html');
  page.complaints.length = 0;
  for (const file of ['PMT.html', 'zelkovan.html#PMT']) {
    await page.goto(origin + file);
    await page.waitForSelector('html[data-ready]', { state: 'attached' });
    assert.equal(await text(page, '.answer'), '-1199.1010503055047');
  }
  assert.deepEqual(page.complaints.filter((complaint) => !complaint.startsWith(`asked for ${origin}`)), []);
  server.close();
  assert.ok(files.length > 54);
  await browser.leave(page);
});
