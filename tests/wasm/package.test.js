// The package as a project has it: values, forms of arguments, columns, entries. Expected are the catalogue's examples, which
// the slow model in Python agrees with (tests/catalogue/examples.py), and what their texts say.
import assert from 'node:assert/strict';
import { readdirSync, readFileSync } from 'node:fs';
import { join } from 'node:path';
import { after, test } from 'node:test';
import { catalogue, exampleInOrder, exampleOf, installed, resultOf } from './packed.js';

const { calculations } = catalogue;
const packed = installed();
after(packed.remove);
const finance = await packed.load("export * from 'zelkovan';");

test('every calculation answers its example, in order, by name, and by its name', () => {
  assert.equal(calculations.length, 54);
  for (const calculation of calculations) {
    const name = calculation.calculation.toLowerCase();
    const expected = resultOf(calculation);
    assert.equal(finance[name](exampleOf(calculation)), expected, name);
    assert.equal(finance[name](...exampleInOrder(calculation)), expected, name);
    assert.equal(finance.evaluate(calculation.calculation, exampleOf(calculation)), expected, name);
    assert.equal(finance.evaluate(name, exampleInOrder(calculation)), expected, name);
  }
  assert.equal(finance.yield_, finance.yield);
});

test('nothing but the calculations, evaluate, rows, the catalogue, days and the error is there', () => {
  const functions = calculations.map(({ calculation }) => calculation.toLowerCase());
  const others = ['FinanceError', 'catalogue', 'evaluate', 'rows', 'toDay', 'toISODate', 'yield_'];
  assert.deepEqual(Object.keys(finance).sort(), [...functions, ...others].sort());
  assert.deepEqual(finance.catalogue, catalogue);
});

// 2025-01-20 is day 23761: 65 years of which 17 have 366 days, and 19 days.
test('dates are ISO texts, Dates and days', () => {
  const forms = ['2025-01-20', new Date('2025-01-20'), new Date('2025-01-20T23:59:59.999Z'), 65 * 365 + 17 + 19];
  for (const settlement of forms) {
    assert.equal(finance.coupncd(settlement, '2030-11-15', 2), '2025-05-15');
    assert.equal(finance.price({ settlement, maturity: '2030-11-15', rate: 0.05, yield: 0.06, redemption: 100, frequency: 2 }), 95.13992935087715);
    assert.equal(finance.tbillprice(settlement, '2025-07-14', 0.05), 97.56944444444444);
  }
  assert.equal(finance.toDay('1960-01-01'), 0);
  assert.equal(finance.toISODate(23761.5), '2025-01-20');
  assert.equal(finance.toDay('1959-12-31'), -1);
  assert.equal(finance.toISODate(-1), '1959-12-31');
  for (const day of [NaN, Infinity, finance.toDay('0001-01-01') - 1, finance.toDay('9999-12-31') + 1]) assert.equal(finance.toISODate(day), undefined);
  for (const text of ['2025-02-29', '2025-13-01', '2025-1-1', '20250101', '2025-01-20T00:00:00Z', '']) {
    assert.equal(finance.toDay(text), undefined, text);
    assert.throws(() => finance.coupncd(text, '2030-11-15', 2), { name: 'FinanceError', argument: 'settlement', verdict: 'usage' });
  }
});

test('a basis is a keyword or its code', () => {
  catalogue.bases.forEach((keyword, code) => {
    const of = (basis) => finance.yearfrac('2024-01-15', '2024-07-31', basis);
    assert.equal(of(keyword), of(code), keyword);
    assert.equal(of(keyword.toLowerCase()), of(code), keyword);
  });
  assert.equal(finance.yearfrac('2024-01-15', '2024-07-31', 'ACT/360'), 198 / 360);
  assert.equal(finance.yearfrac('2024-01-15', '2024-07-31', 'ACT/365'), 198 / 365);
});

test('what is left out is null, undefined or not there', () => {
  const expected = -1199.1010503055047;
  for (const nothing of [null, undefined]) {
    assert.equal(finance.pmt(0.005, 360, 200000, nothing, nothing), expected);
    assert.equal(finance.pmt({ rate: 0.005, nper: 360, pv: 200000, fv: nothing }), expected);
    assert.equal(finance.pmt(0.005, 360, 200000, nothing, 0), expected);
  }
  assert.equal(finance.pmt(0.005, 360, 200000, 0, true), finance.pmt(0.005, 360, 200000, null, 1));
  assert.equal(finance.fv({ rate: 0.01, nper: 12, pmt: -100 }), finance.fv(0.01, 12, -100, null));
  assert.equal(finance.npv(0.1), 0); // its flows may be left out
});

test('lists are arrays of any kind, in order and by name', () => {
  const flows = [-1000, 300, 400, 500, 200];
  for (const list of [flows, Float64Array.from(flows), Int16Array.from(flows)]) {
    assert.equal(finance.irr(list), 0.15322137877181552);
    assert.equal(finance.npv(0.1, list), 105.05988786160907);
    assert.equal(finance.mirr(list, 0.1, 0.05), 0.10912465946801975);
    assert.equal(finance.mirr({ reinvestRate: 0.05, financeRate: 0.1, flows: list }), 0.10912465946801975);
  }
  const values = [-1000, 600, 600];
  const dates = ['2023-01-01', new Date('2024-01-01'), finance.toDay('2025-01-01')];
  for (const more of [[], [null], [0], [0.1]]) assert.ok(Math.abs(finance.xirr(values, dates, ...more) - 0.13054099320394236) < 1e-14);
  assert.equal(finance.xnpv(0.1, values, dates), 41.192848087385585);
});

test('rows: columns by name and in order, of numbers, dates and bases', () => {
  const nper = Float64Array.from(calculations, (_, i) => i + 1);
  const expected = Array.from(nper, (n) => finance.pmt(0.005, n, 200000));
  for (const columns of [{ rate: 0.005, nper, pv: 200000 }, [0.005, nper, 200000], [0.005, [...nper], Array(54).fill(200000)]]) {
    const { values, refused, firstError } = finance.rows('PMT', columns);
    assert.ok(values instanceof Float64Array);
    assert.deepEqual([...values], expected);
    assert.deepEqual([refused.length, firstError], [0, null]);
  }
  const settlements = ['2025-01-20', new Date('2025-05-15'), finance.toDay('2026-01-01')];
  const next = finance.rows('coupncd', [settlements, '2030-11-15', 2, ['30/360', 'actual', null]]);
  assert.deepEqual(Array.from(next.values, finance.toISODate), ['2025-05-15', '2025-11-15', '2026-05-15']);
  const fractions = finance.rows('YEARFRAC', ['2024-01-15', '2024-07-31', [2, 'ACT/365']]);
  assert.deepEqual([...fractions.values], [198 / 360, 198 / 365]);
  assert.deepEqual(finance.rows('SLN', [new Float64Array(0), 1, 2]), { values: new Float64Array(0), refused: new Uint32Array(0), firstError: null });
  assert.deepEqual([...finance.rows('SLN', [10000, 1000, 5]).values], [1800]);
  assert.deepEqual([...finance.rows('IRR', { flows: [-100, [110, 120], 0] }).values].map((rate) => rate.toFixed(12)), ['0.100000000000', '0.200000000000']);
});

test('the entry with the bytes inside, and the worker', async () => {
  const inline = await packed.load("export * from 'zelkovan/inline';");
  assert.deepEqual(Object.keys(inline), Object.keys(finance));
  const { startWorker } = await packed.load("export * from 'zelkovan/worker';");
  const worker = startWorker();
  try {
    for (const calculation of calculations) {
      const name = calculation.calculation.toLowerCase();
      assert.equal(await worker[name](exampleOf(calculation)), resultOf(calculation), name);
      assert.equal(inline[name](exampleOf(calculation)), resultOf(calculation), name);
    }
    assert.equal(await worker.evaluate('sln', [10000, 1000, 5]), 1800);
    const { values } = await worker.rows('SLN', { cost: [10000, 5000], salvage: 1000, life: 5 });
    assert.deepEqual(values, Float64Array.of(1800, 800));
    await assert.rejects(worker.sln(1, 2, 3, 4), { name: 'FinanceError', verdict: 'usage', calculation: 'SLN' });
    await assert.rejects(worker.sln(() => 1, 2, 3)); // which no thread can be sent
    await assert.rejects(worker.evaluate('slnn', []), { name: 'FinanceError', calculation: null });
  } finally {
    await worker.close();
  }
  await assert.rejects(worker.sln(1, 2, 3), /closed/);
});

// Alone in a process, so that nothing else has started the calculations.
test('the inline entry needs no file', async () => {
  const { execFileSync } = await import('node:child_process');
  const text = "import { sln } from 'zelkovan/inline'; console.log(sln(10000, 1000, 5));";
  assert.equal(execFileSync('node', ['--input-type=module', '--eval', text], { cwd: packed.project, encoding: 'utf8' }), '1800\n');
});

test('the package holds what it must and nothing of the build', () => {
  const folder = join(packed.project, 'node_modules/zelkovan');
  const manifest = JSON.parse(readFileSync(join(folder, 'package.json'), 'utf8'));
  assert.equal(manifest.dependencies, undefined);
  assert.equal(manifest.license, 'MIT');
  const files = readdirSync(folder, { recursive: true });
  for (const file of ['LICENSE', 'README.md', 'zelkovan.wasm', 'catalogue.json', 'index.d.ts', 'worker/thread.js']) assert.ok(files.includes(file), file);
  assert.ok(files.every((file) => ['worker', 'LICENSE'].includes(file) || /\.(js|json|d\.ts|md|wasm)$/.test(file)), files.join(' '));
});

// "expression; // value" in its blocks, and "const name = ...;".
test('the README says what comes out', async () => {
  const text = readFileSync(join(packed.project, 'node_modules/zelkovan/README.md'), 'utf8');
  const blocks = [...text.matchAll(/```js\n(.*?)```/gs)].map(([, block]) => block);
  const checked = blocks.map((block) =>
    block
      .replace(/^( *)(?!const )(\S.*); \/\/ (.*)$/gm, "$1said.push([$2, `$3`]);")
      .concat('export { said };')
      .replace(/^/, "const said = [];\nimport { pmt as __pmt } from 'zelkovan';\n"),
  );
  let lines = 0;
  for (const [i, block] of checked.entries()) {
    const whole = blocks[i].includes('import') ? block : block.replace('pmt as __pmt', 'pmt');
    const { said } = await packed.load(whole);
    for (const [value, expected] of said) {
      const kind = /^(\w+Array) (.*)$/.exec(expected);
      const shown = kind ? `${value.constructor.name} [${[...value].join(', ')}]` : typeof value === 'string' ? `'${value}'` : String(value);
      assert.equal(shown, expected);
      ++lines;
    }
  }
  assert.ok(lines >= 17, `${lines} lines`);
});
