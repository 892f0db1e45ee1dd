// The npm package beside others: the same rows, one run, all in turn, one thread.
//
//     ./web && npm ci --ignore-scripts --prefix benchmarks/web
//     node --expose-gc benchmarks/web/peers.js [ROUNDS]
//
// Medians of so many rounds, microseconds a call. Before each turn young garbage is swept: nobody pays for what another
// left. In brackets: to how many digits answers agree with ours in the row where they agree least, rows without an answer,
// rows that differ by more than a millionth. The last column: the fastest of the others, in times of ours.
import assert from 'node:assert/strict';
import { cases } from './contenders.js';

const ROUNDS = Number(process.argv[2] ?? 15);
const OURS = 'zelkovan';
const ANOTHER_ANSWER = 1e-6;

function answerOf(call, row) {
  try {
    const answer = call(row);
    return typeof answer === 'number' ? answer : NaN;
  } catch {
    return NaN;
  }
}

function round({ rows, call }) {
  const answers = new Float64Array(rows.length);
  globalThis.gc({ type: 'minor' });
  const start = process.hrtime.bigint();
  for (let i = 0; i < rows.length; ++i) answers[i] = answerOf(call, rows[i]);
  return { microseconds: Number(process.hrtime.bigint() - start) / 1000 / rows.length, answers };
}

const median = (numbers) => [...numbers].sort((a, b) => a - b)[Math.floor(numbers.length / 2)];

function agreement(ours, theirs) {
  const apart = ours.map((x, i) => Math.abs(theirs[i] - x) / Math.max(Math.abs(x), 1e-300));
  const without = theirs.filter((x) => !Number.isFinite(x)).length;
  const other = apart.filter((x) => x > ANOTHER_ANSWER).length;
  const agreed = apart.filter((x) => x <= ANOTHER_ANSWER);
  const least = agreed.reduce((most, x) => Math.max(most, x), 0);
  const said = [agreed.length > 0 && (least === 0 ? 'all bits' : `${Math.floor(-Math.log10(least))} digits`)];
  if (without > 0) said.push(`${without} of ${ours.length} without answer`);
  if (other > 0) said.push(`${other} of ${ours.length} differ`);
  return said.filter(Boolean).join(', ');
}

function measured({ rows, peers }) {
  const contenders = Object.entries(peers).map(([name, [form, call]]) => ({ name, rows: rows.map(form), call, took: [] }));
  for (let i = 0; i < ROUNDS; ++i) {
    for (const contender of contenders) {
      const { microseconds, answers } = round(contender);
      contender.took.push(microseconds);
      contender.answers = answers;
    }
  }
  return contenders.map(({ name, took, answers }) => ({ name, microseconds: median(took), answers }));
}

const names = [...new Set(cases.flatMap(({ peers }) => Object.keys(peers)))];
const line = (cells) => console.log(`| ${cells.join(' | ')} |`);

line(['microseconds', ...names, 'fastest other']);
line(['---', ...names.map(() => '---:'), '---:']);
for (const one of cases) {
  const results = measured(one);
  const ours = results.find(({ name }) => name === OURS);
  assert.ok(ours.answers.every(Number.isFinite), `${one.name}: a row of ours has no answer`);
  const cells = names.map((name) => {
    const result = results.find((contender) => contender.name === name);
    if (result === undefined) return '–';
    if (name === OURS) return result.microseconds.toFixed(2);
    return `${result.microseconds.toFixed(2)} (${agreement(ours.answers, result.answers)})`;
  });
  const fastest = Math.min(...results.filter(({ name }) => name !== OURS).map(({ microseconds }) => microseconds));
  line([one.length ? `${one.name}, ${one.length} flows` : one.name, ...cells, (fastest / ours.microseconds).toFixed(2)]);
}
