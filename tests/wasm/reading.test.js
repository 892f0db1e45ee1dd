// reading.wasm: what texts are, by hand; and drawn texts, DRAWS of them from SEED on, against the native build. Where
// that is not built they are left out.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { existsSync } from 'node:fs';
import { test } from 'node:test';
import { absent } from '../../wasm/javascript/core.js';
import { Reading } from '../../wasm/javascript/reading.js';
import { bytesOf, root } from './core.js';
import { drawnTexts, KINDS } from './texts.js';

const module = new WebAssembly.Module(bytesOf('reading.wasm'));
const newReading = () => new Reading(new WebAssembly.Instance(module, {}));
const reading = newReading();

test('imports nothing', () => {
  assert.deepEqual(WebAssembly.Module.imports(module), []);
});

// Values are what is written there; days are counted from 1960-01-01, 2024-01-15 being 64 * 365 + 16 + 14 of them on. The
// smallest double is 5e-324, and what is below half of it, or above all, is none.
const JANUARY_15 = 64 * 365 + 16 + 14;
const loose = { loose: true };
const comma = { decimalComma: true };
const both = { loose: true, decimalComma: true };
const VALUES = [
  ['number', {}, '5', 5],
  ['number', {}, '+5', 5],
  ['number', {}, '-0', -0],
  ['number', {}, '.5', 0.5],
  ['number', {}, '5.', 5],
  ['number', {}, '5.75%', 0.0575],
  ['number', {}, '0.07%', 0.0007],
  ['number', {}, '-5e1%', -0.5],
  ['number', {}, '1e-3', 1e-3],
  ['number', {}, '9007199254740993', 9007199254740992],
  ['number', {}, '9007199254740993.00000000000000000000000001', 9007199254740994],
  ['number', {}, '5e-324', 2 ** -1074],
  ['number', {}, '3e-324', 2 ** -1074],
  ['number', {}, '2.2250738585072011e-308', 2 ** -1022 - 2 ** -1074],
  ['number', {}, '1.7976931348623158e308', Number.MAX_VALUE],
  ['number', {}, `0.${'0'.repeat(1000)}1e1001`, 1],
  ['number', {}, `1${'0'.repeat(1000)}e-1000`, 1],
  ['number', {}, 'inf', Infinity],
  ['number', {}, '-Infinity', -Infinity],
  ['number', {}, 'nan', NaN],
  ['number', {}, '-NaN(12_a)', NaN],
  ['number', {}, '.', NaN],
  ['number', {}, '', absent],
  ['number', loose, '', absent],
  ['date', { dates: 'dmy' }, '', absent],
  ['number', comma, '1.234,56', 1234.56],
  ['number', comma, '1\u202f234,56', 1234.56],
  ['number', comma, '1,234', 1.234],
  ['number', loose, '1,234', 1234],
  ['number', loose, '(1,000)', -1000],
  ['number', loose, '$1,000.50', 1000.5],
  ['number', loose, '12 EUR', 12],
  ['number', loose, " 1'234'567.89 ", 1234567.89],
  ['number', loose, '1,234e-2', 12.34],
  ['number', loose, '5.75 %', 0.0575],
  ['number', both, '12,50 €', 12.5],
  ['whole number', loose, '1,000,000', 1e6],
  ['flag', {}, '1', 1],
  ['numbers', {}, '-60', -60],
  ['number', { usualMissing: true }, 'NA', NaN],
  ['number', { usualMissing: true }, '#n/a', NaN],
  ['date', { usualMissing: true }, 'null', NaN],
  ['number', { usualMissing: true, loose: true }, '1,000', 1000],
  ['date', {}, '2024-01-15', JANUARY_15],
  ['dates', {}, '1960-01-02', 1],
  ['date (or part of a day)', {}, '0.5', 0.5],
  ['date (or part of a day)', comma, '0,5', 0.5],
  ['date', { dates: 'sheet' }, '45292', JANUARY_15 - 14],
  ['date', { dates: 'sheet' }, '2024-01-15', JANUARY_15],
  ['date', { dates: 'dmy' }, '15.01.2024', JANUARY_15],
  ['date', { dates: 'mdy' }, '1/15/2024', JANUARY_15],
  ['date', { dates: 'ymd' }, '20240115', JANUARY_15],
  ['date', { dates: 'days' }, '17577', 17577],
  ['number', { dates: 'dmy' }, '17577', 17577],
  ['day-count basis', {}, 'act/360', 'act/360'],
  ['day-count basis', loose, '30/360', '30/360'],
  ['day-count basis', {}, '3', 3],
];

test('texts that are values', () => {
  for (const [kind, form, text, value] of VALUES)
    assert.deepEqual(reading.read(kind, text, form), { value }, `${kind} '${text}' ${JSON.stringify(form)}`);
});

const NOT_A_DATE = 'year-month-day as in 2008-02-15, or days since 1960-01-01';
const REFUSALS = [
  ...['abc', '+-5', '++5', '0x10', '1e', '1e5.', '5%%', '%', '-.', '..', 'infi', 'nan(', '1_000', '½'].map((text) => ['number', {}, text, `'${text}' is not a number`, '']),
  ...['1e400', '-1e400', '1e-400', '2e-324', '1.7976931348623159e308', '1e400x', '1e99999999999999999999%'].map((text) => ['number', {}, text, `'${text}' is beyond what a double can hold`, '']),
  ...[' 5', '5 '].map((text) => ['number', {}, text, `'${text}' is not a number`, '; --decimal comma reads 5, --numbers loose reads 5']),
  ['number', {}, '1,234', "'1,234' is not a number", '; --decimal comma reads 1.234, --numbers loose reads 1234'],
  ['number', {}, '12,50 EUR', "'12,50 EUR' is not a number", '; --decimal comma --numbers loose reads 12.5'],
  ['number', {}, '#N/A', "'#N/A' is not a number", '; --missing #N/A says that it is a missing value'],
  ['number', {}, '-', "'-' is not a number", '; --missing - says that it is a missing value'],
  ['number', comma, '1.5', "'1.5' is not a number", ''],
  ['number', loose, '1,5', "'1,5' is not a number", '; --decimal comma reads 1.5'],
  ['number', {}, '2024-01-15', "'2024-01-15' is not a number", ''],
  ['number', {}, 'a\tb\u202e', "'a\\tb\\u202E' is not a number", ''],
  ['date', {}, '2024-02-30', `'2024-02-30' is not a date: ${NOT_A_DATE}`, ''],
  ['date', {}, '15.01.2024', `'15.01.2024' is not a date: ${NOT_A_DATE}`, '; --dates dmy reads 2024-01-15'],
  ['date', { dates: 'mdy' }, '15.01.2024', "'15.01.2024' is not a date as --dates mdy has it", '; --dates dmy reads 2024-01-15'],
  ['date', { dates: 'sheet' }, '60', "'60' is not a date as --dates sheet has it", ''],
  ['date', {}, '20240115', '20240115 is no day of the years 1 to 9999, counted from 1960-01-01: it looks like 2024-01-15', '; --dates ymd reads 2024-01-15'],
];

test('texts that are none, and why', () => {
  for (const [kind, form, text, reason, hint] of REFUSALS)
    assert.deepEqual(reading.read(kind, text, form), { reason, hint }, `${kind} '${text}' ${JSON.stringify(form)}`);
  assert.match(reading.read('day-count basis', '1.5').reason, /^1\.5 is no code of a day-count basis: 30\/360, ACTUAL/);
});

test('kinds and forms that there are not', () => {
  assert.throws(() => reading.read('list', '5'), { name: 'TypeError', message: /^there is no kind 'list'/ });
  assert.throws(() => reading.read('date', '5', { dates: 'american' }), { name: 'TypeError', message: /days, sheet, ymd, dmy, mdy$/ });
});

test('long texts are read, and memory stays what the longest needs', () => {
  const instance = new WebAssembly.Instance(module, {});
  const own = new Reading(instance);
  const size = () => instance.exports.memory.buffer.byteLength;
  const digits = '1234567890'.repeat(100_000);
  const read = (text, form) => own.read('number', text, form);
  assert.deepEqual(read(`0.${digits}`), { value: 0.1234567890123456789 });
  assert.match(read(digits).reason, /^'1234567890.*\.\.\.' is beyond what a double can hold$/);
  assert.deepEqual(read(`(${'1'.repeat(999_999)}e-999998)`, loose), { value: -1.1111111111111112 });
  assert.match(read(`${digits}x`, both).reason, /^'1234567890.*\.\.\.' is beyond what a double can hold$/);
  for (const form of [{}, loose, comma, both]) read(`${'1,234'.repeat(200_000)} %`, form);
  const grown = size();
  for (let i = 0; i < 20; ++i) for (const form of [{}, loose, comma, both]) read(`${'1,234'.repeat(200_000)} %`, form);
  for (let i = 0; i < 20_000; ++i) read('1,234', {});
  assert.equal(size(), grown);
});

const native = new URL('build/gcc.release/bin/read_lines', root).pathname;
const { DRAWS = '20000', SEED = '1' } = process.env;
const bits = new DataView(new ArrayBuffer(8));

function lineOf({ value, reason, hint }, text) {
  if (reason !== undefined) return `unreadable\t${reason}\t${hint}`;
  if (value === absent || value === text) return value === absent ? 'absent' : 'text';
  if (Number.isNaN(value)) return 'missing';
  bits.setFloat64(0, value);
  return `value\t${bits.getBigUint64(0).toString(16).padStart(16, '0')}`;
}

test('drawn texts are read as in the native build', { skip: !existsSync(native) && `${native} is not built` }, (t) => {
  const draws = drawnTexts(Number(DRAWS), Number(SEED));
  const input = draws.map(({ kind, form, text }) => `${KINDS.indexOf(kind)}\t${form.word}\t${Buffer.from(text).toString('hex')}\n`).join('');
  const { status, stdout } = spawnSync(native, { input, maxBuffer: 2 ** 30 });
  assert.equal(status, 0);
  const lines = stdout.toString().split('\n').slice(0, -1);
  assert.equal(lines.length, draws.length);
  const counts = { value: 0, absent: 0, missing: 0, text: 0, unreadable: 0 };
  draws.forEach(({ kind, form, text }, i) => {
    assert.equal(lineOf(reading.read(kind, text, form.options), text), lines[i], `${kind} '${text}' ${JSON.stringify(form.options)}`);
    ++counts[lines[i].split('\t')[0]];
  });
  t.diagnostic(`${draws.length} texts read alike: ${JSON.stringify(counts)}`);
  assert.ok(counts.value > draws.length / 4 && counts.unreadable > draws.length / 5 && counts.text > 0 && counts.missing > 0 && counts.absent > 0);
});
