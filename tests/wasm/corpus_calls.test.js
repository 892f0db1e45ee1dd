// One call in ten of the corpus through the package's functions: what they answer has the bits that it must have in every
// build, and what it says is refused has no answer. Calls that no function makes are left out: with too many arguments, a
// text for a number, or a place at the end that has nothing in it.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { Finance } from '../../wasm/javascript/finance.js';
import { absent, absentText, SUCCESS } from '../../wasm/javascript/core.js';
import { toDay } from '../../wasm/javascript/dates.js';
import { FinanceError } from '../../wasm/javascript/errors.js';
import { shortWay } from '../../wasm/javascript/short_way.js';
import { newCoreWithSentences } from './core.js';
import { callsOf } from './corpus.js';
import { catalogue } from './packed.js';

const core = newCoreWithSentences();
let short = 0;
const counted = (calculation) => {
  const answer = shortWay(core, catalogue)(calculation);
  return (args) => {
    const value = answer(args);
    if (value !== undefined) ++short;
    return value;
  };
};
const finance = new Finance(core, catalogue, counted);
const toDouble = (bits) => new Float64Array(BigUint64Array.of(bits).buffer)[0];

const valueOf = (word) => {
  if (typeof word === 'bigint') return toDouble(word);
  return word === absent || word === absentText ? null : word;
};

const isList = ({ kind }) => kind === 'numbers' || kind === 'dates';

// Values of a list stand where the list is; two of them share evenly, and an odd one at the end is the guess.
function inOrder(parameters, values) {
  const lists = parameters.filter(isList).length;
  if (lists === 0) return values;
  const others = parameters.filter((parameter) => !isList(parameter) && parameter.need === 'required').length;
  const guesses = lists === 2 && parameters.at(-1).need === 'optional' ? (values.length - others) % 2 : 0;
  const size = (values.length - others - guesses) / lists;
  if (size < 0 || !Number.isInteger(size)) return undefined;
  let next = 0;
  return parameters.slice(0, others + lists + guesses).map((parameter) => (isList(parameter) ? values.slice(next, (next += size)) : values[next++]));
}

test('the corpus by functions: the same bits, and errors where there is no answer', (t) => {
  const counts = { answered: 0, missing: 0, refused: 0, 'does not solve': 0, 'too large': 0, usage: 0 };
  for (const { calculation, arguments: parameters, result, searches } of catalogue.calculations) {
    for (const call of callsOf(calculation).filter((_, i) => i % 10 === 0)) {
      const args = inOrder(parameters, call.args.map(valueOf));
      if (args === undefined || args.length > parameters.length || args.at(-1) === null) continue;
      const expected = call.result === 'untouched' ? NaN : toDouble(BigInt(`0x${call.result}`));
      let value;
      try {
        value = finance.evaluate(calculation, args);
      } catch (error) {
        assert.ok(error instanceof FinanceError, `${call.line}\n${error.stack}`);
        ++counts[error.verdict];
        if (error.verdict === 'does not solve') assert.ok(searches && Object.is(error.value, expected), call.line);
        if (error.verdict === 'too large') assert.equal(Math.abs(expected), Infinity, call.line);
        continue;
      }
      ++counts[value === null ? 'missing' : 'answered'];
      assert.equal(call.status, SUCCESS, call.line);
      const number = result === 'date' && value !== null ? (toDay(value) ?? Number(value)) : (value ?? NaN);
      assert.ok(Object.is(number, expected), `${call.line}\n  ${value}`);
    }
  }
  t.diagnostic(JSON.stringify({ ...counts, short }));
  // Those with words for a basis go the long way.
  assert.ok(short > counts.answered / 2 && short <= counts.answered, `${short} the short way`);
  assert.ok(counts.answered > 10_000 && counts.refused > 5000 && counts['does not solve'] > 0, JSON.stringify(counts));
});
