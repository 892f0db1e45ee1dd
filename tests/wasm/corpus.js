// The corpus (tests/corpus/): calls with the status, flags and result bits that they must have in every build.
import { execFileSync } from 'node:child_process';
import { readdirSync } from 'node:fs';
import { absent, absentText } from '../../wasm/javascript/core.js';
import { root } from './core.js';

const folder = new URL('tests/corpus/', root);

export const names = readdirSync(folder)
  .filter((file) => file.endsWith('.tsv.xz'))
  .map((file) => file.slice(0, -'.tsv.xz'.length));

// n:BITS a number, c:BYTES a text, null: left out.
function argumentOf(word) {
  const value = word.slice(2);
  if (word[0] === 'n') return value === 'null' ? absent : BigInt(`0x${value}`);
  return value === 'null' ? absentText : Buffer.from(value, 'hex').toString('latin1');
}

/** @returns {{line, name, args, status, flagged, result}} flagged: the first; result: bits, or "untouched" */
export function callOf(line) {
  const [name, words, status, flags, result] = line.split('\t');
  const args = words === '' ? [] : words.split(' ').map(argumentOf);
  return { line, name, args, status: Number(status), flagged: flags === '-' ? -1 : Number(flags.split(',')[0]), result };
}

export function callsOf(name) {
  const file = new URL(`${name}.tsv.xz`, folder);
  const text = execFileSync('xz', ['--decompress', '--stdout', file.pathname], { maxBuffer: 1 << 28 }).toString();
  return text.trimEnd().split('\n').map(callOf);
}

const MISSING = 0xfffffe0000000000n;
const isNaNOf = (bits) => (bits & 0x7fffffffffffffffn) > 0x7ff0000000000000n;

/** What arithmetic makes of a NaN (its sign) is the processor's own; a missing value is not. */
export function sameResult(expected, bits) {
  if (expected === 'untouched') return bits === MISSING;
  const wanted = BigInt(`0x${expected}`);
  return wanted === bits || (isNaNOf(wanted) && isNaNOf(bits) && wanted !== MISSING && bits !== MISSING);
}
