// What a row costs inside WebAssembly, beside the native build: the same rows, one run, all in turn.
//
//     cmake --preset wasm && cmake --build --preset wasm
//     cmake --preset gcc.release -D ZELKOVAN_BENCHMARKS=ON && cmake --build build/gcc.release --target native_rows
//     node benchmarks/web/rows.js [ROUNDS]
//
// Twenty calculations, of every family. Bits are compared first. Times are the best of so many rounds, nanoseconds a row; of
// ratios the last line has geometric means. "with copies" is what JavaScript waits for: columns go into the memory of
// WebAssembly, and answers out of it.
import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import { mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { createInterface } from 'node:readline';
import { Core } from '../../wasm/javascript/core.js';

const NAMES = [
  'ACCRINT', 'AMORLINC', 'COUPNCD', 'CUMIPMT', 'DISC', 'DOLLARDE', 'DURATION', 'EFFECT', 'IRR', 'NPV',
  'ODDFPRICE', 'PMT', 'PRICE', 'PRICEMAT', 'RATE', 'SLN', 'TBILLEQ', 'XIRR', 'YEARFRAC', 'YIELD',
];
const ROUNDS = Number(process.argv[2] ?? 21);
const root = new URL('../../', import.meta.url);
const folder = mkdtempSync(join(tmpdir(), 'rows-'));

const numbersOf = (file) => {
  const bytes = readFileSync(join(folder, file));
  return new Float64Array(bytes.buffer.slice(bytes.byteOffset, bytes.byteOffset + bytes.length));
};
const bitsOf = (numbers) => new BigUint64Array(numbers.buffer, numbers.byteOffset, numbers.length);

// The native program, line by line.
function native() {
  const program = spawn(new URL('build/gcc.release/bin/native_rows', root).pathname, [folder, ...NAMES], { stdio: ['pipe', 'pipe', 'inherit'] });
  const lines = createInterface({ input: program.stdout })[Symbol.asyncIterator]();
  const read = async () => {
    const { value, done } = await lines.next();
    return done ? assert.fail('native_rows has ended') : value;
  };
  const ask = (line) => {
    program.stdin.write(`${line}\n`);
    return read();
  };
  return { read, ask, end: () => program.stdin.end() };
}

function tableOf(line) {
  const [name, rows, description, ...args] = line.split('\t');
  const numbers = numbersOf(`${name}.columns`);
  let columns = 0;
  const words = args.map((arg) => {
    const [, kind, value] = /^(\w+) ?(.*)$/.exec(arg);
    if (kind === 'column') return numbers.subarray(columns * rows, ++columns * rows);
    return kind === 'text' ? value : Number(value);
  });
  return { name, rows: Number(rows), description, words, best: {}, answers: {} };
}

// A core that tells how long it was inside.
async function timedCore() {
  const { instance } = await WebAssembly.instantiate(readFileSync(new URL('build/wasm/bin/zelkovan.wasm', root)));
  const timed = { nanoseconds: 0 };
  const rows = (...words) => {
    const start = process.hrtime.bigint();
    const answered = instance.exports.rows(...words);
    timed.nanoseconds = Number(process.hrtime.bigint() - start);
    return answered;
  };
  timed.core = new Core({ exports: { ...instance.exports, rows } });
  return timed;
}

async function once(table, program, timed) {
  const took = {};
  for (const way of ['calls', 'columns']) {
    took[way] = Number(await program.ask(`${way} ${table.name}`));
    table.answers[way] ??= numbersOf(`${table.name}.answers`);
  }
  const start = process.hrtime.bigint();
  const { results } = timed.core.rows(table.name, table.words, table.rows);
  took.copies = Number(process.hrtime.bigint() - start) / table.rows;
  took.inside = timed.nanoseconds / table.rows;
  table.answers.inside ??= results;
  for (const way of Object.keys(took)) table.best[way] = Math.min(table.best[way] ?? Infinity, took[way]);
}

function checkBits({ name, answers }) {
  const wanted = bitsOf(answers.calls);
  assert.ok(answers.calls.some((answer) => Number.isFinite(answer)), `${name} has no answer`);
  for (const way of ['columns', 'inside']) assert.deepEqual(bitsOf(answers[way]), wanted, `${name}, ${way}: other bits`);
}

const geometricMean = (numbers) => Math.exp(numbers.reduce((sum, x) => sum + Math.log(x), 0) / numbers.length);
const line = (...cells) => console.log(`| ${cells.join(' | ')} |`);

try {
  const program = native();
  const timed = await timedCore();
  const tables = [];
  for (const _ of NAMES) tables.push(tableOf(await program.read()));
  for (let round = 0; round < ROUNDS; ++round) for (const table of tables) await once(table, program, timed);
  program.end();
  tables.forEach(checkBits);
  line('rows', 'native calls ns', 'native columns ns', 'WebAssembly ns', 'with copies ns', 'times calls', 'times columns');
  line('---', ...Array(6).fill('---:'));
  const ratios = tables.map(({ name, description, best }) => {
    const [calls, columns] = [best.inside / best.calls, best.inside / best.columns];
    line(`${name}, ${description}`, ...[best.calls, best.columns, best.inside, best.copies].map((ns) => ns.toFixed(1)), calls.toFixed(2), columns.toFixed(2));
    return [calls, columns];
  });
  const means = [0, 1].map((i) => geometricMean(ratios.map((pair) => pair[i])).toFixed(2));
  line('geometric mean', '', '', '', '', ...means);
} finally {
  rmSync(folder, { recursive: true });
}
