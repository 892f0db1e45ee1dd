// Calls as they are typed for `finance`, and what it says of them.
import { execFileSync, spawnSync } from 'node:child_process';
import { existsSync } from 'node:fs';
import { absent, absentText } from '../../wasm/javascript/core.js';
import { root } from './core.js';

const finance = process.env.FINANCE ?? new URL('build/gcc.release/bin/finance', root).pathname;
export const thereIsFinance = existsSync(finance);

const bits = new DataView(new ArrayBuffer(8));

function typedNumber(word) {
  bits.setBigUint64(0, word);
  const number = bits.getFloat64(0);
  if (Number.isNaN(number)) return '.';
  if (Object.is(number, -0)) return '-0';
  return Math.abs(number) === Infinity ? String(number).replace('Infinity', 'inf') : String(number);
}

// Nothing where there is no way to type it. A text in digits is a number, and nothing is no text.
function typedArgument(word) {
  if (word === absent || word === absentText) return '';
  if (typeof word === 'bigint') return typedNumber(word);
  return /^[A-Z0-9/. ]+$/i.test(word) && !/^ *(inf|nan|[0-9.]*(e[0-9]+)?) *$/i.test(word) ? `'${word}'` : undefined;
}

const helpOf = (name) => JSON.parse(execFileSync(finance, ['help', name, '--json']));

/** @returns {(args) => string|undefined} the call as a line; undefined where it cannot be typed */
export function typist(name) {
  const { arguments: parameters } = helpOf(name);
  const hasLists = parameters.some(({ kind }) => kind === 'numbers' || kind === 'dates');
  return (args) => {
    if (hasLists ? args.length === 0 : args.length > parameters.length) return undefined;
    // What is left out at the end is not part of a typed call.
    const last = args.at(-1);
    if (last === absent || last === absentText) return undefined;
    const words = args.map((arg, i) => {
      if (typeof arg === 'string' && parameters[i]?.kind !== 'day-count basis') return undefined;
      return typedArgument(arg);
    });
    if (words.includes(undefined)) return undefined;
    return words.includes('') ? `${name}(${words.join(', ')})` : `${name} ${words.join(' ')}`;
  };
}

const REMEDY = '  finance ';
const HINT = / \(try: help [A-Z]+\)$/;

/**
 * @param {string[]} lines
 * @returns {{status: string, reason: string, sentences: string[], remedy: string}[]} status and reason as --json has them,
 *   "usage" where no call was made; sentences: what stands beside the value, or in its place
 */
export function toldBy(lines) {
  const options = { input: `${lines.join('\n')}\n`, maxBuffer: 2 ** 30 };
  const reports = spawnSync(finance, ['--json'], options).stdout.toString().trimEnd().split('\n').map((line) => JSON.parse(line));
  const told = reports.map(({ status, message }) => {
    const reason = status === 'usage' ? message.replace(/^[A-Z]+: /, '') : (message ?? '');
    return { status, reason, sentences: [], remedy: '' };
  });
  for (const line of spawnSync(finance, [], options).stderr.toString().split('\n')) {
    const [, number, text] = line.match(/^finance: line (\d+): (.*)$/) ?? [];
    if (text?.startsWith(REMEDY)) told[number - 1].remedy = text.slice(REMEDY.length);
    else if (text !== undefined) told[number - 1].sentences.push(text.replace(HINT, ''));
    else if (line !== '') throw new Error(`finance says: ${line}`);
  }
  return told;
}
