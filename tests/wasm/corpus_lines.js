// The lines of the corpus (tests/corpus/), in Node and in pages: calls, with the status, flags and result bits that they
// must have in every build.
import { absent, absentText, INVALID_ARGUMENT, SUCCESS } from '../../wasm/javascript/core.js';

const bytesOf = (digits) => (digits.match(/../g) ?? []).map((byte) => Number.parseInt(byte, 16));

// n:BITS a number, c:BYTES a text, null: left out.
function argumentOf(word) {
  const value = word.slice(2);
  if (word[0] === 'n') return value === 'null' ? absent : BigInt(`0x${value}`);
  return value === 'null' ? absentText : String.fromCharCode(...bytesOf(value));
}

/** @returns {{line, name, args, status, flagged, result}} flagged: the first; result: bits, or "untouched" */
export function callOf(line) {
  const [name, words, status, flags, result] = line.split('\t');
  const args = words === '' ? [] : words.split(' ').map(argumentOf);
  return { line, name, args, status: Number(status), flagged: flags === '-' ? -1 : Number(flags.split(',')[0]), result };
}

export const callsIn = (text) => text.trimEnd().split('\n').map(callOf);

const MISSING = 0xfffffe0000000000n;
const isNaNOf = (bits) => (bits & 0x7fffffffffffffffn) > 0x7ff0000000000000n;

/** What arithmetic makes of a NaN (its sign) is the processor's own; a missing value is not. */
export function sameResult(expected, bits) {
  if (expected === 'untouched') return bits === MISSING;
  const wanted = BigInt(`0x${expected}`);
  return wanted === bits || (isNaNOf(wanted) && isNaNOf(bits) && wanted !== MISSING && bits !== MISSING);
}

const MOST_DIFFERENCES = 10;

/** How many of the calls are answered as they must be: what differs is counted, and the first ones are told. */
export class Comparison {
  counts = { calls: 0, answered: 0, status: 0, flagged: 0, result: 0 };
  differences = [];

  /** @param {import('../../wasm/javascript/core.js').Core} core */
  make(core, call) {
    const got = core.call(call.name, call.args);
    const { counts } = this;
    ++counts.calls;
    if (got.status === SUCCESS) ++counts.answered;
    const same = {
      status: got.status === (call.status === SUCCESS ? SUCCESS : INVALID_ARGUMENT),
      flagged: got.flagged === call.flagged,
      result: sameResult(call.result, got.bits),
    };
    for (const what of Object.keys(same)) if (same[what]) ++counts[what];
    if (Object.values(same).every(Boolean) || this.differences.length >= MOST_DIFFERENCES) return;
    this.differences.push(`${call.line}\n  got ${got.status} ${got.flagged} ${got.bits.toString(16)}`);
  }
}
