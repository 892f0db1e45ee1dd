// Which calls are explained and which are not; what is made of an explanation. The calls are real ones, the explanations
// made up.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { Finance } from '../../wasm/javascript/finance.js';
import { newCore } from './core.js';
import { catalogue } from './packed.js';

const ANSWERED = { verdict: 'answered', status: 0, value: 42, position: 0, label: '', reason: '', sentence: '', namedSentence: '', remedy: '' };

function explained(explanation = {}) {
  const core = newCore();
  const asked = [];
  const explain = (name, args) => {
    asked.push([name, args]);
    return { ...ANSWERED, ...explanation };
  };
  const fake = { call: (...call) => core.call(...call), rows: (...call) => core.rows(...call), explain };
  return { finance: new Finance(fake, catalogue), asked };
}

test('an answer that is a number needs no explanation', () => {
  const { finance, asked } = explained();
  assert.equal(finance.evaluate('PMT', [0.005, 360, 200000]), -1199.1010503055047);
  assert.equal(finance.evaluate('COUPNCD', ['2025-01-20', '2030-11-15', 2]), '2025-05-15');
  finance.rows('PMT', [[0.005, 0.006], 360, 200000]);
  assert.equal(asked.length, 0);
});

test('searches, refusals, infinities, days of no calendar and fractions of a basis are explained', () => {
  const calls = [
    ['IRR', [[-100, 60, 60]], [-100, 60, 60]],
    ['PMT', [0.005, 2.5, 200000], [0.005, 2.5, 200000]],
    ['SLN', [1e308, -1e308, 1], [1e308, -1e308, 1]],
    ['COUPNUM', [20250120, '9999-12-31', 2], [20250120, 2936549, 2]],
    ['COUPNUM', [0, 2936550, 2], [0, 2936550, 2]],
    ['YEARFRAC', [0, 1, 0.5], [0, 1, 0.5]],
  ];
  for (const [name, args, words] of calls) {
    const { finance, asked } = explained();
    assert.equal(finance.evaluate(name, args), 42);
    assert.deepEqual(asked, [[name, words]]);
    const column = finance.rows(name, name === 'IRR' ? [[[-100], 60, 60]] : [[args[0]], ...args.slice(1)]);
    assert.deepEqual([[...column.values], asked.length], [[42], 2]);
  }
});

test('0001-01-01 and 9999-12-31 are days of the calendar', () => {
  const { finance, asked } = explained();
  // 9998 years, 11 months and 30 days of 30/360: a first day of a month leaves the 31st as it is
  assert.equal(finance.evaluate('YEARFRAC', ['0001-01-01', '9999-12-31']), 9999);
  assert.equal(asked.length, 0);
});

test('a missing answer is null; a missing argument is not', () => {
  const missing = { verdict: 'missing', value: NaN, namedSentence: 'XIRR: no answer' };
  assert.equal(explained(missing).finance.evaluate('XIRR', [[1], [2]]), null);
  const refused = { ...missing, status: 120836, position: 2, sentence: 'words', reason: 'why' };
  assert.throws(() => explained(refused).finance.evaluate('IRR', [[1, NaN]]), {
    name: 'FinanceError', verdict: 'refused', argument: 'flows', position: 1, element: 2, rule: 'number', sentence: 'words', reason: 'why', value: null,
  });
  assert.deepEqual(explained(missing).finance.rows('IRR', [[[1], [2]]]).refused.length, 0);
});

test('an answer that does not solve is an error that has it', () => {
  const unsolved = { verdict: 'does not solve', value: -0.5, namedSentence: 'RATE: does not solve: so', remedy: 'IRR flows=1' };
  assert.throws(() => explained(unsolved).finance.evaluate('RATE', [1, 2, 3]), {
    message: 'RATE: does not solve: so', verdict: 'does not solve', argument: null, position: null, rule: null, remedy: 'IRR flows=1', value: -0.5,
  });
  const { values, refused, firstError } = explained(unsolved).finance.rows('RATE', [[1, 2], 2, 3]);
  assert.deepEqual([[...values], [...refused], firstError.value], [[NaN, NaN], [0, 1], -0.5]);
});
