// What a page offers to be copied, typed where it belongs: each gives the answer of the example.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { existsSync } from 'node:fs';
import { dirname } from 'node:path';
import { test } from 'node:test';
import { textsOf } from '../../site/pages/parameters.js';
import { copiesOf } from '../../site/scripts/copy.js';
import { valuesOf } from '../../site/scripts/values.js';
import { catalogue, engine, native } from './engine.js';

const copies = catalogue.calculations.map((calculation) => {
  const texts = textsOf(calculation.example.arguments);
  const values = valuesOf(engine.reading, calculation.arguments, texts);
  return { calculation, copies: Object.fromEntries(copiesOf(calculation, texts, values)) };
});

const expected = ({ example, result }) => (result === 'date' ? example.result : Number(example.result));
const valueOf = ({ result }, text) => (result === 'date' ? text : Number(text));

// All in one run, answers a line each.
function checkLines(output, calculations) {
  const lines = output.trimEnd().split('\n');
  assert.equal(lines.length, calculations.length);
  calculations.forEach((calculation, i) => assert.equal(valueOf(calculation, lines[i]), expected(calculation), calculation.calculation));
}

const missing = (...files) => {
  const absent = files.find((file) => !existsSync(file));
  return absent !== undefined && `${absent} is not built`;
};

const finance = native('bin/finance');
test('shell', { skip: missing(finance) }, () => {
  const script = copies.map((one) => one.copies.Shell).join('\n');
  const output = execFileSync('bash', ['-e', '-c', script], { encoding: 'utf8', env: { ...process.env, PATH: `${dirname(finance)}:${process.env.PATH}` } });
  checkLines(output, copies.map(({ calculation }) => calculation));
});

test('JavaScript', async () => {
  const library = await import(new URL('../../build/wasm/package/node.js', import.meta.url));
  for (const { calculation, copies: { JavaScript: text } } of copies) {
    const [, name] = /^import \{ (\w+) \} from 'zelkovan';\n/.exec(text);
    const answer = new Function(name, `return ${text.split('\n')[1]}`)(library[name]);
    assert.equal(answer, expected(calculation), calculation.calculation);
  }
});

const python = native('python');
test('Python', { skip: missing(python) }, () => {
  const script = copies.map(({ copies: { Python: text } }) => text.replace(/^(zelkovan\..*)$/m, 'print($1)')).join('\n');
  const output = execFileSync('/usr/bin/python3', ['-c', script], { encoding: 'utf8', env: { ...process.env, PYTHONPATH: python } });
  checkLines(output, copies.map(({ calculation }) => calculation));
});

const sqlite = native('lib/zelkovan_sqlite.so');
const sqlite3 = '/usr/bin/sqlite3';
test('SQL, in SQLite', { skip: missing(sqlite, sqlite3) }, () => {
  const lines = copies.map(({ copies: all }) => all.SQL ?? all['SQL (SQLite)']);
  // All digits of a double, which the shell itself rounds to 15.
  const exact = lines.map((text) => text.replace(/SELECT (fin_\w+\(.*\))( FROM flow)?;$/s, "SELECT CASE typeof($1) WHEN 'text' THEN $1 ELSE format('%!.20g', $1) END$2;"));
  const output = execFileSync(sqlite3, ['-bail', ':memory:'], { encoding: 'utf8', input: `.load ${sqlite}\n${exact.join('\n')}\n` });
  checkLines(output, copies.map(({ calculation }) => calculation));
});

test('dates are typed and lists are arrays elsewhere', () => {
  const texts = copies.map(({ copies: all }) => all['SQL (PostgreSQL, DuckDB)']).filter((text) => text !== undefined);
  assert.ok(texts.includes("SELECT fin_price(DATE '2025-01-20', DATE '2030-11-15', 0.05, 0.06, 100, 2);"));
  assert.ok(texts.includes('SELECT fin_irr(ARRAY[-1000, 300, 400, 500, 200]);'));
  assert.ok(texts.includes("SELECT fin_xirr(ARRAY[-1000, 600, 600], ARRAY['2023-01-01', '2024-01-01', '2025-01-01']::date[]);"));
});

test('what is left out, missing, or odd to a shell', () => {
  const of = (name, texts) => {
    const calculation = catalogue.calculations.find((one) => one.calculation === name);
    return Object.fromEntries(copiesOf(calculation, texts, valuesOf(engine.reading, calculation.arguments, texts)));
  };
  const pmt = of('PMT', { rate: '0.5%', nper: '12', pv: '100', fv: '', type: '1' });
  assert.equal(pmt.Shell, 'finance PMT rate=0.5% nper=12 pv=100 type=1');
  assert.equal(pmt.SQL, 'SELECT fin_pmt(0.005, 12, 100, 0, 1);');
  assert.equal(pmt.Python, 'import zelkovan\nzelkovan.pmt(rate=0.005, nper=12, pv=100, type=1)');
  assert.match(of('TBILLPRICE', { settlement: '20000.5', maturity: '20100', discount: '5%' })['SQL (SQLite)'], /fin_tbillprice\(20000\.5, '2015-01-12', 0\.05\)/);
  const odd = of('YEARFRAC', { startDate: '2024-01-01', endDate: '2025-01-01', basis: "it's" });
  assert.equal(odd.Shell, "finance YEARFRAC startDate=2024-01-01 endDate=2025-01-01 'basis=it'\\''s'");
  assert.match(odd['SQL (SQLite)'], /'it''s'\);$/);
});
