// The corpus in a browser: Debian's Chromium without a window, with a page of a server of this process.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { createServer } from 'node:http';
import { after, before, test } from 'node:test';
import { chromium } from 'playwright-core';
import { newCore, root } from './core.js';
import { callsOf, linesOf, names } from './corpus.js';
import { Comparison } from './corpus_lines.js';

const { CHROMIUM = '/usr/bin/chromium' } = process.env;

const TYPES = { js: 'text/javascript', wasm: 'application/wasm' };
const FILES = ['wasm/javascript/core.js', 'tests/wasm/corpus_lines.js', 'tests/wasm/page.js', 'build/wasm/bin/core.wasm'];

/** @returns {{type: string, body: string|Buffer}|undefined} */
function contentOf(path) {
  if (path === '') return { type: 'text/html', body: '<!doctype html><title>corpus</title><link rel="icon" href="data:,">' };
  if (FILES.includes(path)) return { type: TYPES[path.split('.').at(-1)], body: readFileSync(new URL(path, root)) };
  const name = names.find((one) => path === `tests/corpus/${one}`);
  return name && { type: 'text/plain', body: linesOf(name) };
}

const server = createServer((request, response) => {
  const content = contentOf(request.url.slice(1));
  response.writeHead(content ? 200 : 404, { 'content-type': content?.type ?? 'text/plain' }).end(content?.body);
});
let browser;

before(async () => {
  await new Promise((listening) => server.listen(0, '127.0.0.1', listening));
  // The browser's own walls are not there for root.
  const args = process.getuid() === 0 ? ['--no-sandbox'] : [];
  browser = await chromium.launch({ executablePath: CHROMIUM, args });
});
after(async () => {
  await browser?.close();
  server.close();
});

test('the corpus in Chromium: status, flags and bits, as in Node', async (t) => {
  const page = await browser.newPage();
  const errors = [];
  page.on('pageerror', (error) => errors.push(String(error)));
  await page.goto(`http://127.0.0.1:${server.address().port}/`);
  const { counts, differences } = await page.evaluate(async (all) => {
    const { compareCorpus } = await import('/tests/wasm/page.js');
    return compareCorpus(all);
  }, names);
  t.diagnostic(`Chromium ${browser.version()}: ${JSON.stringify(counts)}`);
  assert.deepEqual([differences, errors], [[], []]);

  const inNode = new Comparison();
  const core = newCore();
  for (const name of names) for (const call of callsOf(name)) inNode.make(core, call);
  assert.deepEqual(counts, inNode.counts);
  const { answered, ...others } = counts;
  assert.deepEqual(others, { calls: 202_500, status: 202_500, flagged: 202_500, result: 202_500 });
  assert.ok(answered > 100_000, `${answered} answered`);
});
