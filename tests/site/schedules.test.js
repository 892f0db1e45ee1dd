// Schedules against the command's, where that is built; their ends by hand.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { existsSync } from 'node:fs';
import { test } from 'node:test';
import { isoOfDay } from '../../site/scripts/days.js';
import { depreciationRows, loanRows } from '../../site/scripts/schedules.js';
import { toDay } from '../../wasm/javascript/dates.js';
import { engine, native } from './engine.js';

const finance = native('bin/finance');
const skip = !existsSync(finance) && `${finance} is not built`;

const words = (terms) => Object.entries(terms).map(([name, value]) => `${name}=${name === 'start' ? isoOfDay(value) : value}`);
const commandRows = (kind, terms) =>
  execFileSync(finance, ['schedule', kind, ...words(terms), '--csv'], { encoding: 'utf8' }).trimEnd().split('\n').slice(1).map((line) => line.split(','));

const all = (terms, names) => Object.fromEntries(names.map((name) => [name, terms[name] ?? null]));
const LOAN = ['rate', 'nper', 'pv', 'fv', 'type', 'start', 'months'];
const ASSET = ['cost', 'salvage', 'life', 'factor', 'month'];

const LOANS = [
  { rate: 0.005, nper: 360, pv: 200000 },
  { rate: 0.01, nper: 12, pv: 1000, fv: -250, type: 1 },
  { rate: 0.02, nper: 5, pv: -1000, fv: 300 },
  { rate: 0.005, nper: 24, pv: 5000, start: toDay('2024-01-31'), months: 3 },
  { rate: 0.005, nper: 7, pv: 5000, type: 1, fv: 100, start: toDay('2023-12-31') },
];

test("a loan's rows are the command's, bit for bit", { skip }, () => {
  for (const terms of LOANS) {
    const expected = commandRows('loan', terms);
    const rows = loanRows(engine, all(terms, LOAN));
    assert.equal(rows.length, expected.length);
    rows.forEach((row, i) => {
      const { period, date, payment, interest, principal, balance } = row;
      const got = [period, ...(date === null ? [] : [isoOfDay(date)]), payment, interest, principal, balance];
      const wanted = expected[i].map((text) => (/^\d{4}-/.test(text) ? text : Number(text)));
      assert.deepEqual(got.map((value) => (value === 0 ? 0 : value)), wanted.map((value) => (value === 0 ? 0 : value)), `${JSON.stringify(terms)} row ${i + 1}`);
    });
  }
});

const ASSETS = [
  { cost: 10000, salvage: 1000, life: 5 },
  { cost: 10000, salvage: 1000, life: 5, month: 7 },
  { cost: 2400, salvage: 0, life: 10, factor: 1.5 },
];

test("an asset's rows are the command's, bit for bit", { skip }, () => {
  for (const terms of ASSETS) {
    const expected = commandRows('depreciation', terms);
    const rows = depreciationRows(engine, all(terms, ASSET));
    assert.equal(rows.length, expected.length);
    rows.forEach(({ period, amounts, bookValues }, i) => {
      const wanted = expected[i].map((text) => (text === '' || text === '.' ? NaN : Number(text)));
      assert.deepEqual([period, ...amounts, ...bookValues], wanted, `${JSON.stringify(terms)} row ${i + 1}`);
    });
  }
});

test('a loan ends where it must: at -fv', () => {
  for (const terms of LOANS) {
    const { balance } = loanRows(engine, all(terms, LOAN)).at(-1);
    assert.ok(Math.abs(balance + (terms.fv ?? 0)) < 1e-6, `${balance}`);
  }
});

test('what is refused names its argument', () => {
  const faults = [
    [loanRows, { rate: 0.01, nper: 2.5, pv: 100 }, LOAN, 'nper'],
    [loanRows, { rate: 0.01, nper: 20000, pv: 100 }, LOAN, 'nper'],
    [loanRows, { rate: 0.01, nper: 12, pv: 100, start: toDay('9999-06-01') }, LOAN, 'start'],
    [loanRows, { rate: 0.01, nper: 12, pv: 100, start: 5, months: 0.5 }, LOAN, 'months'],
    [depreciationRows, { cost: 100, salvage: 10, life: 2.5 }, ASSET, 'life'],
    [depreciationRows, { cost: 100, salvage: 10, life: 5, factor: -1 }, ASSET, 'factor'],
    [depreciationRows, { cost: 100, salvage: 10, life: 5, month: 0 }, ASSET, 'month'],
  ];
  for (const [make, terms, names, argument] of faults)
    assert.throws(() => make(engine, all(terms, names)), (error) => error.argument === argument, JSON.stringify(terms));
});
