// core.wasm against the corpus, and what it asks of whoever loads it.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { INVALID_ARGUMENT, SUCCESS } from '../../wasm/javascript/core.js';
import { module, newCore } from './core.js';
import { callsOf, names, sameResult } from './corpus.js';

test('imports nothing', () => {
  assert.deepEqual(WebAssembly.Module.imports(module), []);
});

test('the corpus: status, flags and bits', async (t) => {
  const core = newCore();
  let calls = 0;
  assert.equal(names.length, 54);
  for (const name of names) {
    await t.test(name, () => {
      for (const call of callsOf(name)) {
        const got = core.call(call.name, call.args);
        assert.equal(got.status, call.status === SUCCESS ? SUCCESS : INVALID_ARGUMENT, call.line);
        assert.equal(got.flagged, call.flagged, call.line);
        assert.ok(sameResult(call.result, got.bits), `${call.line}\n  got ${got.bits.toString(16)}`);
        ++calls;
      }
    });
  }
  assert.equal(calls, 202_500);
  t.diagnostic(`${calls} calls: the same status, flags and bits`);
});

// Of rows whose arguments are all numbers, four at a time from the corpus.
test('rows answer as calls do', () => {
  const core = newCore();
  let rows = 0;
  for (const name of names) {
    const calls = callsOf(name).filter(({ args }) => args.every((arg) => typeof arg === 'bigint'));
    for (const count of new Set(calls.map(({ args }) => args.length))) {
      const same = calls.filter(({ args }) => args.length === count);
      const columns = Array.from({ length: count }, (_, i) => new Float64Array(new BigUint64Array(same.map(({ args }) => args[i])).buffer));
      const { results, answered } = core.rows(name, columns, same.length);
      const bits = new BigUint64Array(results.buffer);
      same.forEach((call, row) => {
        assert.equal(answered[row], call.status === SUCCESS ? 1 : 0, call.line);
        assert.ok(sameResult(call.result, bits[row]), `${call.line}\n  got ${bits[row].toString(16)}`);
      });
      rows += same.length;
    }
  }
  assert.ok(rows > 100_000, `${rows} rows`);
});

test('an unknown name lists those that there are', () => {
  const { status, flagged, log } = newCore().call('PMTX', []);
  assert.equal(status, INVALID_ARGUMENT);
  assert.equal(flagged, 0);
  assert.equal(log[0], 'The First argument of the Finance function can be ');
  assert.deepEqual(log.slice(2, 56).map((line) => line.trim()), [...names].sort());
});

test('memory grows to what the largest call needs, and no further', () => {
  const core = newCore();
  const flows = Array.from({ length: 5000 }, (_, i) => (i === 0 ? -100 : 0.05));
  core.call('XIRR', [...flows, ...flows.map((_, i) => i), 0.1]);
  const { bytesOfMemory } = core;
  for (let i = 0; i < 300_000; ++i) core.call('PMT', [0.005, 360, 200_000]);
  for (let i = 0; i < 100; ++i) core.call('XIRR', [...flows, ...flows.map((_, j) => j), 0.1]);
  assert.equal(core.bytesOfMemory, bytesOfMemory);
});

test('more than there can be is refused, and calls go on', () => {
  const core = newCore();
  for (const rows of [2 ** 29, 2 ** 40]) assert.throws(() => core.rows('PMT', [0.005, 360, 200_000], rows), RangeError);
  assert.equal(core.call('PMT', [0.005, 360, 200_000]).value, -1199.1010503055047);
});
