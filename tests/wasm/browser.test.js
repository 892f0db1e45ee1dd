// The entries of browsers, in Node with stand-ins for what a browser has: fetch of a file, and workers.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { after, test } from 'node:test';
import { installed } from './packed.js';

const packed = installed();
after(packed.remove);

const FETCH = `
import { readFile } from 'node:fs/promises';
globalThis.fetch = async (url) => {
  if (process.env.MISSING) return { ok: false, status: 404, statusText: 'Not Found' };
  const bytes = await readFile(url);
  return { ok: true, arrayBuffer: async () => bytes.buffer.slice(bytes.byteOffset, bytes.byteOffset + bytes.byteLength) };
};
`;

// A worker's global scope: messages that come before its module has run are kept for it.
const WORKER = `
import { parentPort, workerData } from 'node:worker_threads';
import './fetch.js';
globalThis.postMessage = (data, moved) => parentPort.postMessage(data, moved);
globalThis.addEventListener = (type, take) => parentPort.on(type, (data) => take({ data }));
await import(workerData);
`;

const PAGE = `
import { Worker as Thread } from 'node:worker_threads';
import './fetch.js';
globalThis.Worker = class {
  constructor(url, { type }) {
    if (type !== 'module') throw new Error('a module is wanted');
    this.thread = new Thread(new URL('./worker.js', import.meta.url), { workerData: url.href });
  }
  postMessage(data) { this.thread.postMessage(data); }
  terminate() { this.thread.terminate(); }
  addEventListener(type, take) { this.thread.on(type, type === 'message' ? (data) => take({ data }) : (error) => take({ error })); }
};
`;

const WORK = `
import './page.js';
const { sln, irr } = await import('./node_modules/zelkovan/browser.js');
const { startWorker } = await import('./node_modules/zelkovan/worker/browser.js');
const worker = startWorker();
const late = [worker.sln(10000, 1000, 5), worker.rows('SLN', [[10000, 5000], 1000, 5])];
const error = await worker.pmt(0.005, 2.5, 200000).catch((thrown) => thrown.message);
const [one, { values }] = await Promise.all(late);
console.log(JSON.stringify([sln(10000, 1000, 5), irr([-100, 110]).toFixed(12), one, [...values], error]));
await worker.close();
`;

for (const [name, text] of Object.entries({ 'fetch.js': FETCH, 'worker.js': WORKER, 'page.js': PAGE, 'work.js': WORK }))
  writeFileSync(join(packed.project, name), text);
const run = (environment, ...words) =>
  execFileSync('node', words, { cwd: packed.project, encoding: 'utf8', stdio: ['ignore', 'pipe', 'pipe'], env: { ...process.env, ...environment } });

test('the package and its worker, loaded with fetch', () => {
  const expected = [1800, '0.100000000000', 1800, [1800, 800], 'PMT: argument 2 (nper): 2.5 is not a whole number'];
  assert.deepEqual(JSON.parse(run({}, 'work.js')), expected);
});

test('a file that cannot be fetched is told of', () => {
  assert.throws(() => run({ MISSING: '1' }, 'work.js'), /zelkovan\.wasm cannot be fetched: 404 Not Found/);
  const worker = "import './page.js'; import { startWorker } from './node_modules/zelkovan/worker/browser.js'; const w = startWorker(); console.log(await w.sln(1, 2, 3).catch((e) => e.message)); await w.close();";
  writeFileSync(join(packed.project, 'lost.js'), worker);
  assert.equal(run({ MISSING: '1' }, 'lost.js'), 'zelkovan.wasm cannot be fetched: 404 Not Found\n');
});
