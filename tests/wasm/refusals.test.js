// Why there is no value, in the words of the C++ code. Expected are those of the native command: finance PMT 0.005 2.5 200000.
import assert from 'node:assert/strict';
import { after, test } from 'node:test';
import { installed } from './packed.js';

const packed = installed();
after(packed.remove);
const finance = await packed.load("export * from 'zelkovan';");
const error = (call) => {
  try {
    call();
  } catch (thrown) {
    return thrown;
  }
  return assert.fail(`${call} has an answer`);
};

// what is called; what is said; argument, position, value of a list, rule
const REFUSALS = [
  [(f) => f.pmt(0.005, 2.5, 200000), 'PMT: argument 2 (nper): 2.5 is not a whole number', 'nper', 2, null, 'whole number, must be at least 1'],
  [(f) => f.pmt({ pv: 200000, nper: 2.5, rate: 0.005 }), 'PMT: argument 2 (nper): 2.5 is not a whole number', 'nper', 2, null, 'whole number, must be at least 1'],
  [(f) => f.evaluate('pmt', [0.005, 360, NaN]), 'PMT: argument 3 (pv): a value is missing', 'pv', 3, null, 'number'],
  [(f) => f.pmt({ rate: 0.005, pv: 1 }), 'PMT: argument 2 (nper): no value given', 'nper', 2, null, 'whole number, must be at least 1'],
  [(f) => f.irr([-100, NaN, 60]), 'IRR: argument 1 (flows, value 2): a value is missing', 'flows', 1, 2, 'number'],
  [
    (f) => f.price(20240115, '2030-01-01', 0.05, 0.06, 100, 2),
    'PRICE: argument 1 (settlement): 20240115 is no day of the years 1 to 9999, counted from 1960-01-01: it looks like 2024-01-15',
    'settlement', 1, null, 'date',
  ],
];

test('a refusal says what the command says, names the argument and its rule', () => {
  for (const [call, message, argument, position, element, rule] of REFUSALS) {
    const thrown = error(() => call(finance));
    assert.ok(thrown instanceof finance.FinanceError);
    const [calculation, sentence] = message.split(/: (.*)/);
    const { name, verdict, value, remedy } = thrown;
    assert.deepEqual({ ...thrown, message: thrown.message }, { verdict, value, remedy, calculation, sentence, reason: sentence.split(/: (.*)/)[1], argument, position, element, rule, message });
    assert.deepEqual([name, verdict, value, remedy], ['FinanceError', 'refused', null, null]);
  }
});

// finance FV 0.05 10; finance PMT 0.05
test('what is left out at the end is not in the call', () => {
  assert.equal(error(() => finance.fv(0.05, 10)).message, 'FV: too few arguments: no pmt');
  assert.equal(error(() => finance.fv({ rate: 0.05, nper: 10, pmt: null })).message, 'FV: too few arguments: no pmt');
  assert.equal(error(() => finance.pmt(0.05)).message, 'PMT: too few arguments: no nper, pv');
});

test('a search whose answer does not solve is refused, with its value and a call that has the answer', () => {
  const thrown = error(() => finance.rate(120, -200, 0, 30000));
  assert.equal(thrown.verdict, 'does not solve');
  assert.match(thrown.message, /^RATE: does not solve: the search ended at the lowest rate that it tries; PV at this rate has no answer, or one too large/);
  assert.equal(thrown.value, -0.9999999);
  assert.match(thrown.remedy, /^IRR flows=0,-200,-200,.*,29800$/);
  assert.deepEqual([thrown.argument, thrown.position, thrown.rule], [null, null, null]);
});

test('a missing answer is null', () => {
  assert.equal(finance.xirr([1, 2, 3], [1, 2, 3]), null);
});

test('an infinite answer is too large', () => {
  const thrown = error(() => finance.sln(1e308, -1e308, 1));
  assert.deepEqual([thrown.verdict, thrown.value, thrown.calculation], ['too large', Infinity, 'SLN']);
});

test('a fraction of a basis and a day that no calendar has are refused before a call is made', () => {
  assert.match(error(() => finance.yearfrac('2024-01-15', '2024-07-31', 1.5)).message, /^YEARFRAC: argument 3 \(basis\): 1\.5 is no code of a day-count basis/);
  assert.equal(error(() => finance.xnpv(0.1, [1, 2], ['2024-01-01', 3e6])).element, 2);
});

test('what no call can be made of is refused by name', () => {
  const said = (call) => {
    const { message, verdict } = error(call);
    assert.equal(verdict, 'usage');
    return message;
  };
  assert.match(said(() => finance.pmt(1, 2, 3, 4, 5, 6)), /^PMT: too many arguments/);
  assert.equal(said(() => finance.pmt({ rte: 1 })), "PMT: no argument is called 'rte': there are rate, nper, pv, fv, type");
  assert.equal(said(() => finance.pmt('0.005', 360, 1)), "PMT: argument 1 (rate): '0.005' is not a number");
  assert.equal(said(() => finance.pmt(1n, 360, 1)), 'PMT: argument 1 (rate): 1n is not a number');
  assert.equal(said(() => finance.irr([-100, '60'])), "IRR: argument 1 (flows, value 2): '60' is not a number");
  assert.match(said(() => finance.irr(-100, 60, 60)), /^IRR: too many arguments/);
  assert.match(said(() => finance.irr(-100)), /^IRR: argument 1 \(flows\): -100 is not a list/);
  assert.match(said(() => finance.coupncd(new Date(NaN), '2030-11-15', 2)), /an invalid Date is not a date/);
  assert.equal(said(() => finance.xnpv(0.1, [1, 2, 3], ['2024-01-01'])), 'XNPV: argument 3 (dates): 3 values, but 1 dates');
  assert.equal(said(() => finance.evaluate('PMTX', [])), "no calculation is called 'PMTX'");
  assert.match(said(() => finance.rows('PMT', [0.005, 360])), /^PMT: too few arguments: no pv/);
  assert.match(said(() => finance.rows('PMT', [[0.005, 0.006], [1, 2, 3], 1])), /^PMT: argument 2 \(nper\): a column of 3 rows/);
});

test('rows tell a refused one from one whose value is missing', async () => {
  const nper = [360, 2.5, NaN, null, -1];
  const check = ({ values, refused, firstError }) => {
    assert.equal(values[0], -1199.1010503055047);
    assert.ok(values.slice(1).every(Number.isNaN));
    assert.deepEqual([...refused], [1, 4]);
    assert.equal(firstError.message, 'PMT: argument 2 (nper): 2.5 is not a whole number');
    assert.equal(firstError.position, 2);
  };
  check(finance.rows('PMT', { rate: 0.005, nper, pv: 200000 }));
  const { startWorker, FinanceError } = await packed.load("export * from 'zelkovan/worker';");
  const worker = startWorker();
  try {
    check(await worker.rows('PMT', { rate: 0.005, nper, pv: 200000 }));
    await assert.rejects(worker.pmt(0.005, 2.5, 200000), (thrown) => {
      assert.ok(thrown instanceof FinanceError);
      const here = error(() => finance.pmt(0.005, 2.5, 200000));
      assert.deepEqual({ ...thrown, message: thrown.message }, { ...here, message: here.message });
      return true;
    });
  } finally {
    await worker.close();
  }
  const rates = finance.rows('RATE', { nper: 120, pmt: -200, pv: [0, 20000], fv: [30000, 0] });
  assert.deepEqual([...rates.refused], [0]);
  assert.equal(rates.values[1], finance.rate(120, -200, 20000));
  const days = finance.rows('COUPNUM', [['2025-01-20', 20250120], '2030-11-15', 2]);
  assert.deepEqual([[...days.values], [...days.refused]], [[12, NaN], [1]]);
});
