// zelkovan.wasm: the sentences are those of the command, and it costs what it may cost.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { gzipSync } from 'node:zlib';
import { absent, absentText, INVALID_ARGUMENT } from '../../wasm/javascript/core.js';
import { bytesOf, moduleWithSentences, newCore, newCoreWithSentences } from './core.js';
import { callsOf, names } from './corpus.js';
import { thereIsFinance, toldBy, typist } from './typed.js';

test('imports nothing, and is as small as it may be', (t) => {
  assert.deepEqual(WebAssembly.Module.imports(moduleWithSentences), []);
  for (const [file, most] of [['core.wasm', 50_000], ['zelkovan.wasm', 75_000]]) {
    const { length } = gzipSync(bytesOf(file), { level: 9 });
    t.diagnostic(`${file}: ${length} bytes with gzip -9`);
    assert.ok(length <= most, `${file}: ${length} bytes`);
  }
});

// As the command and docs/ have them.
const SAID = [
  ['PMT', [0.005, 360, 200_000], 'answered', 0, '', ''],
  ['PMT', [0.005, 2.5, 200_000], 'refused', 2, 'PMT: argument 2 (nper): 2.5 is not a whole number', ''],
  ['pmt  ', [0.005, 2.5, 200_000], 'refused', 2, 'PMT: argument 2 (nper): 2.5 is not a whole number', ''],
  ['PMT', [NaN, 360, 200_000], 'missing', 1, 'PMT: argument 1 (rate): a value is missing', ''],
  ['PMT', [0.005, absent, 200_000], 'missing', 2, 'PMT: argument 2 (nper): no value given', ''],
  ['PMT', ['a\u2028b', 360, 200_000], 'refused', 1, "PMT: argument 1 (rate): 'a\\u2028b' is not a number", ''],
  ['PRICE', ['2024-01-15', 17577, 0.05, 0.06, 100, 2], 'refused', 1, "PRICE: argument 1 (settlement): '2024-01-15' is not a number", ''],
  ['PMT', [absent, 2], 'refused', 0, 'PMT: too few arguments: no pv', ''],
  ['PMTX', [1], 'refused', 0, "no calculation is called 'PMTX'", ''],
  ['IRR', [1, 2], 'refused', 0, 'IRR: no answer: the flows do not change sign: a rate needs money paid and money received', ''],
  [
    'RATE',
    [10, 100, 1000],
    'refused',
    0,
    'RATE: no answer: pmt, pv and fv have no two signs: money paid is negative, money received positive',
    'RATE nper=10 pmt=-100 pv=1000',
  ],
  [
    'PRICE',
    [20240115, 17577, 0.05, 0.06, 100, 2],
    'refused',
    1,
    'PRICE: argument 1 (settlement): 20240115 is no day of the years 1 to 9999, counted from 1960-01-01: it looks like 2024-01-15',
    '',
  ],
  [
    'YEARFRAC',
    [17577, 21138, 0.5],
    'refused',
    3,
    'YEARFRAC: argument 3 (basis): 0.5 is no code of a day-count basis: 30/360, ACTUAL, ACT/360, ACT/365, EU30/360 or 0 to 4',
    '',
  ],
  ['SLN', [1e308, -1e308, 0.1], 'too large', 0, 'SLN: too large: the answer is infinite, beyond the largest number or divided by 0', ''],
];

test('what is said', () => {
  const core = newCoreWithSentences();
  for (const [name, args, verdict, position, namedSentence, remedy] of SAID) {
    const said = core.explain(name, args);
    assert.deepEqual([said.verdict, said.position, said.namedSentence, said.remedy], [verdict, position, namedSentence, remedy], name);
  }
  assert.equal(core.explain('PMT', [0.005, 360, 200_000]).value, -1199.1010503055047);
  const { label, reason, sentence, status, value } = core.explain('PMT', [0.005, 2.5, 200_000]);
  assert.deepEqual([label, reason, status], ['argument 2 (nper)', '2.5 is not a whole number', INVALID_ARGUMENT]);
  assert.equal(sentence, `${label}: ${reason}`);
  assert.ok(Number.isNaN(value));
});

// What cannot be typed is left out: other texts, calls that end with nothing.
test('the corpus: the sentences of the command', { skip: !thereIsFinance && 'no build/gcc.release/bin/finance' }, (t) => {
  const core = newCoreWithSentences();
  const searched = new Set(['IRR', 'RATE', 'XIRR']); // and what to call instead: take their time
  const count = { calls: 0, compared: 0, sentences: 0, remedies: 0, untypable: 0, usage: 0 };
  for (const name of names) {
    const typed = typist(name);
    const calls = callsOf(name)
      .filter((_, i) => !searched.has(name) || i % 5 === 0)
      .map((call) => ({ ...call, typed: typed(call.args) }));
    const typable = calls.filter((call) => call.typed !== undefined);
    const told = toldBy(typable.map((call) => call.typed));
    assert.equal(told.length, typable.length);
    count.calls += calls.length;
    count.untypable += calls.length - typable.length;
    typable.forEach((call, i) => {
      count.usage += told[i].status === 'usage' ? 1 : 0; // lists of two lengths, say
      const { verdict, status, reason, namedSentence, remedy } = core.explain(name, call.args);
      const said = { status: told[i].status === 'usage' ? 'usage' : status === INVALID_ARGUMENT ? 'refused' : verdict, reason, sentences: reason === '' ? [] : [namedSentence], remedy };
      assert.deepEqual(said, told[i], call.typed);
      ++count.compared;
      count.sentences += said.sentences.length;
      count.remedies += remedy === '' ? 0 : 1;
    });
  }
  t.diagnostic(JSON.stringify(count));
  assert.ok(count.compared > 180_000 && count.sentences > 60_000 && count.remedies > 100);
});

test('calls of any length: the sentences of the command', { skip: !thereIsFinance && 'no build/gcc.release/bin/finance' }, () => {
  const core = newCoreWithSentences();
  let compared = 0;
  for (const name of names) {
    const calls = Array.from({ length: 12 }, (_, count) => Array.from({ length: count }, (_, i) => i + 0.5));
    const told = toldBy(calls.map((args) => [name, ...args].join(' ')));
    calls.forEach((args, i) => {
      const { reason, namedSentence } = core.explain(name, args);
      assert.equal(reason === '' ? '' : namedSentence, told[i].sentences[0] ?? '', `${name} ${args}`);
      ++compared;
    });
  }
  assert.equal(compared, 54 * 12);
});

test('whatever is given, there is an answer or a sentence', () => {
  const core = newCoreWithSentences();
  const values = [0, -0, 1, -1, 1.5, 1e300, -1e300, 5e-324, Infinity, -Infinity, NaN, 2 ** 31, 2 ** 53 + 2, -(2 ** 63), 20240115, 'ACT', '', '\0', absent, absentText];
  let state = 1;
  const draw = (size) => (state = (state * 48271) % 0x7fffffff) % size;
  let calls = 0;
  for (const name of [...names, 'PMTX', '', '\u202e']) {
    for (let i = 0; i < 400; ++i) {
      const args = Array.from({ length: draw(14) }, () => values[draw(values.length)]);
      const said = core.explain(name, args);
      const answered = said.verdict === 'answered';
      assert.equal(said.sentence === '', answered, `${name} ${args.map(String)}`);
      assert.equal(said.namedSentence === '', answered);
      assert.ok(said.position >= 0 && said.position <= args.length);
      assert.equal(said.label === '', said.position === 0);
      ++calls;
    }
  }
  assert.equal(calls, 22_800);
});

test('memory grows by nothing', () => {
  const core = newCoreWithSentences();
  const explain = (i) => {
    const [name, args] = SAID[i % SAID.length];
    core.explain(name, args);
  };
  for (let i = 0; i < SAID.length; ++i) explain(i);
  const { bytesOfMemory } = core;
  for (let i = 0; i < 100_000; ++i) explain(i);
  assert.equal(core.bytesOfMemory, bytesOfMemory);
});

test('long lists and long texts', () => {
  const core = newCoreWithSentences();
  const size = 40_000;
  const flows = Array.from({ length: size }, (_, i) => (i === 0 ? -100 : 0.01));
  const days = flows.map((_, i) => i);
  assert.match(core.explain('IRR', flows).reason, /40000 flows/);
  assert.equal(core.explain('XNPV', [0.1, ...flows, ...days.slice(0, -1), 0.5]).label, `argument 3 (dates, value ${size})`);
  assert.notEqual(core.explain('XIRR', [...flows, ...days]).verdict, '');
  const text = 'x'.repeat(1_000_000);
  assert.equal(core.explain('YEARFRAC', [0, 1, text]).label, 'argument 3 (basis)');
  assert.match(core.explain(text, []).sentence, /^no calculation is called 'x{57}\.\.\.'$/);
});

test('core.wasm has none', () => {
  const core = newCore();
  assert.equal(core.explains, false);
  assert.throws(() => core.explain('PMT', [0.005, 360, 200_000]), TypeError);
});
