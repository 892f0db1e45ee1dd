// Values as they are typed and shown. Each is read by the command's own code; an answer is shown with all its digits.
import { absent } from '../../wasm/javascript/core.js';
import { isBasis, isDated, isFlag, isList } from '../pages/parameters.js';

// A list is typed with commas, as in a call. What comes from a sheet has lines, tabs or semicolons between its values, and
// then a comma may group digits.
const BETWEEN_CELLS = /[\n\t;]+/;

function listOf(text) {
  const cells = BETWEEN_CELLS.test(text);
  return { words: text.split(cells ? BETWEEN_CELLS : ',').map((word) => word.trim()), form: { loose: cells } };
}

/** What a field holds cannot be read. */
export class Unreadable extends Error {
  /** @param {string} argument @param {string} reason @param {number|null} element of a list, 1 the first */
  constructor(argument, reason, element = null) {
    super(reason);
    this.argument = argument;
    this.element = element;
  }
}

// What would be read, where that is known.
function advice(text, hint) {
  const [, plain] = /--numbers loose reads ([^\s,;]+)/.exec(hint) ?? /--decimal comma reads ([^\s,;]+)/.exec(hint) ?? [];
  if (plain !== undefined) return `: write ${plain}`;
  if (text.startsWith('\u2212')) return ': its minus is another sign than -';
  return /[\d)%] *[-+*/^] *[\d(]/.test(text) ? ' (formulas are worked out by the command finance)' : '';
}

function read(reading, parameter, text, element, form = {}) {
  const { value, reason, hint } = reading.read(parameter.kind, text, form);
  if (reason !== undefined) throw new Unreadable(parameter.name, reason + advice(text, hint), element);
  if (element !== null && value === absent) throw new Unreadable(parameter.name, 'there is no value between two commas', element);
  return value === absent ? null : value;
}

/**
 * One argument from its text: a number (a day for a date), a keyword, a list of them; null left out, NaN missing.
 * @throws {Unreadable}
 */
export function valueOf(reading, parameter, text) {
  const trimmed = text.trim();
  if (!isList(parameter)) return read(reading, parameter, trimmed, null);
  if (trimmed === '') return null;
  const { words, form } = listOf(trimmed);
  return words.map((word, i) => read(reading, parameter, word, i + 1, form));
}

/** All arguments by name. @throws {Unreadable} */
export const valuesOf = (reading, parameters, texts) =>
  Object.fromEntries(parameters.map((parameter) => [parameter.name, valueOf(reading, parameter, texts[parameter.name] ?? '')]));

/** A number with all its digits, as text that reads back to it. */
export const digits = (number) => (Object.is(number, -0) ? '-0' : String(number));

/** An answer: a number, an ISO date; null: a missing value. */
export const answerText = (answer) => (answer === null ? '.' : typeof answer === 'number' ? digits(answer) : answer);

/** For people: grouped, and rounded to so many decimals. */
export function grouped(number, decimals = 2) {
  if (!Number.isFinite(number)) return '';
  return number.toLocaleString('en-US', { minimumFractionDigits: decimals, maximumFractionDigits: decimals }).replace(/^-(0\.?0*)$/, '$1');
}

/** "6.0297 %": a fraction as people say rates, to six digits. */
export function percentage(fraction) {
  const text = (fraction * 100).toPrecision(6);
  return `${text.includes('e') || !text.includes('.') ? text : text.replace(/\.?0+$/, '')} %`;
}

/** A few digits for an axis or a readout. */
export const short = (number) => digits(Number(number.toPrecision(7)));

/** What the values of a parameter are counted in. */
export function scaleOf(parameter) {
  if (isDated(parameter)) return 'date';
  if (isBasis(parameter)) return 'basis';
  return parameter.kind === 'whole number' || isFlag(parameter) ? 'whole' : 'number';
}
