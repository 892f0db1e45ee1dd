// Which calls go the short way, and that what is laid out stays what it is, whatever is called in between. Expected are the
// catalogue's examples, which the slow model in Python agrees with, and the text of short_way.js.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { SUCCESS } from '../../wasm/javascript/core.js';
import { toDay } from '../../wasm/javascript/dates.js';
import { Finance } from '../../wasm/javascript/finance.js';
import { shortWay } from '../../wasm/javascript/short_way.js';
import { newCoreWithSentences } from './core.js';
import { catalogue, exampleInOrder, exampleOf, resultOf } from './packed.js';

const { calculations } = catalogue;
const named = (name) => calculations.find(({ calculation }) => calculation === name);
const numberOf = (calculation) => {
  const result = resultOf(calculation);
  return calculation.result === 'date' ? toDay(result) : result;
};

const withBasis = (args, place, basis) => [...args.slice(0, place), basis];

test('every example goes the short way, in order and by name', () => {
  const core = newCoreWithSentences();
  const shortWayOf = shortWay(core, catalogue);
  assert.equal(calculations.length, 54);
  for (const calculation of calculations) {
    const short = shortWayOf(calculation);
    for (const args of [exampleInOrder(calculation), exampleOf(calculation)])
      assert.equal(short(args), numberOf(calculation), calculation.calculation);
  }
});

test('dates, bases, flags, typed arrays and what is left out at the end go the short way', () => {
  const shortWayOf = shortWay(newCoreWithSentences(), catalogue);
  const price = shortWayOf(named('PRICE'));
  for (const settlement of ['2025-01-20', new Date('2025-01-20T23:59:59.999Z'), 23761]) {
    assert.equal(price([settlement, '2030-11-15', 0.05, 0.06, 100, 2]), 95.13992935087715);
    assert.equal(price([settlement, '2030-11-15', 0.05, 0.06, 100, 2, null]), 95.13992935087715);
  }
  catalogue.bases.forEach((basis, code) => {
    const fraction = shortWayOf(named('YEARFRAC'));
    const [byWord, byCode] = [basis, code].map((of) => fraction(['2024-01-15', '2024-07-31', of]));
    assert.equal(byWord, byCode, basis);
    assert.ok(byWord > 0.5 && byWord < 0.6);
  });
  const pmt = shortWayOf(named('PMT'));
  assert.equal(pmt([0.005, 360, 200000, 0, true]), pmt([0.005, 360, 200000, 0, 1]));
  assert.equal(shortWayOf(named('NPV'))([0.1, Float64Array.of(-1000, 300, 400, 500, 200)]), 105.05988786160907);
});

// A word goes by its code there.
test('a basis is the same by its code and by its word', () => {
  const core = newCoreWithSentences();
  let compared = 0;
  for (const calculation of calculations) {
    const place = calculation.arguments.findIndex(({ kind }) => kind === 'day-count basis');
    const example = exampleInOrder(calculation);
    if (place < 0 || example.length < place) continue;
    const words = example.map((value) => (typeof value === 'string' ? toDay(value) ?? value : value));
    for (const basis of catalogue.bases) {
      const { status, bits } = core.call(calculation.calculation, withBasis(words, place, basis));
      const short = shortWay(core, catalogue)(calculation)(withBasis(example, place, basis));
      assert.equal(short === undefined, status !== SUCCESS, `${calculation.calculation} ${basis}`);
      if (short !== undefined) assert.equal(new BigUint64Array(Float64Array.of(short).buffer)[0], bits, `${calculation.calculation} ${basis}`);
      ++compared;
    }
  }
  assert.ok(compared > 80, `${compared} compared`);
});

// What has no answer, has to be said more of, or is not plainly what a calculation takes.
const LONG = [
  ['PMT', []], ['PMT', [0.005, 360]], ['PMT', [0.005, null, 200000]], ['PMT', [0.005, 2.5, 200000]], ['PMT', [0.005, NaN, 200000]],
  ['PMT', [0.005, 360, '200000']], ['PMT', [0.005, 360, 200000n]], ['PMT', [1, 2, 3, 4, 5, 6]], ['PMT', { rate: 0.005, nper: 360 }],
  ['PMT', { rate: 0.005, nper: 360, pv: 1, rte: 1 }], ['SLN', [1e308, -1e308, 1]], ['SLN', [10000, 1000, 0]],
  ['IRR', []], ['IRR', [[]]], ['IRR', [-100, 60, 60]], ['IRR', [[-100, '60', 60]]], ['IRR', [[-100, null, 60]]], ['IRR', [[1, 2]]],
  ['RATE', [120, -200, 0, 30000]], ['XIRR', [[1, 2, 3], [1, 2]]], ['XIRR', [[1, 2, 3], [1, 2, 3]]],
  ['YEARFRAC', ['2024-01-15', '2024-07-31', 1.5]], ['YEARFRAC', ['2024-01-15', '2024-07-31', 'ACTUAL ']], ['YEARFRAC', [0, 1, -1]],
  ['COUPNUM', [0, 2936550, 2]], ['XNPV', [0.1, [-100, 110], [0, 3e6]]], ['COUPNUM', [20250120, '2030-11-15', 2]], ['COUPNUM', ['2025-02-29', '2030-11-15', 2]], ['COUPNUM', [new Date(NaN), '2030-11-15', 2]],
];

test('all else goes the long way', () => {
  const shortWayOf = shortWay(newCoreWithSentences(), catalogue);
  for (const [name, args] of LONG) assert.equal(shortWayOf(named(name))(args), undefined, `${name} ${JSON.stringify(args, (_, x) => (typeof x === 'bigint' ? `${x}n` : x))}`);
});

test('whatever is called in between, a call that is laid out has its own answer', () => {
  const core = newCoreWithSentences();
  const finance = new Finance(core, catalogue, shortWay(core, catalogue));
  const flows = Array.from({ length: 60_000 }, (_, i) => (i === 0 ? -100 : 0.05));
  const between = [
    () => finance.evaluate('NPV', [0.1, [-1000, 300, 400, 500, 200]]),
    () => finance.evaluate('IRR', [[-1000, 300, 400, 500, 200]]),
    () => core.call('XNPV', [0.1, ...flows, ...flows.map((_, i) => i)]), // memory grows
    () => core.explain('PMT', [0.005, 2.5, 200_000]),
    () => finance.rows('PMT', [[0.1, 0.2], 2, 3]),
    () => assert.throws(() => finance.evaluate('PMT', [0.005, 2.5, 200_000])),
    () => assert.throws(() => finance.evaluate('IRR', [[1, 2]])),
    () => core.layOut(new TextEncoder().encode('SLN'), 100_000),
  ];
  for (const call of between) {
    for (let i = 0; i < 2; ++i) {
      assert.equal(finance.evaluate('PMT', [0.005, 360, 200_000]), -1199.1010503055047, String(call));
      assert.equal(finance.evaluate('IRR', [[-1000, 300, 400, 500, 200]]), 0.15322137877181552, String(call));
      assert.equal(finance.evaluate('PMT', [0.005, 360, 200_000]), -1199.1010503055047, String(call));
      call();
    }
    assert.equal(finance.evaluate('IRR', [[-1000, 300, 400, 500, 200]]), 0.15322137877181552, String(call));
  }
});

test('memory grows by nothing', () => {
  const core = newCoreWithSentences();
  const finance = new Finance(core, catalogue, shortWay(core, catalogue));
  const all = () => calculations.forEach((calculation) => finance.evaluate(calculation.calculation, exampleInOrder(calculation)));
  all();
  const { bytesOfMemory } = core;
  for (let i = 0; i < 2000; ++i) all();
  for (let i = 0; i < 20_000; ++i) finance.evaluate('IRR', [[-1000, 300, 400, 500, 200]]);
  assert.equal(core.bytesOfMemory, bytesOfMemory);
});
