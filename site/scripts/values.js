// Values as they are typed and shown: read as the command reads them, shown as it prints them.
import { absent } from '../../wasm/javascript/core.js';
import { isBasis, isDated, isFlag, isList } from '../pages/parameters.js';

/** The values of a list as they are typed, between commas, semicolons or blanks. */
export const wordsOfList = (text) => text.split(/[\s,;]+/).filter((word) => word !== '');

/** What a field holds cannot be read. */
export class Unreadable extends Error {
  /** @param {string} argument @param {string} reason @param {number|null} element of a list, 1 the first */
  constructor(argument, reason, element = null) {
    super(reason);
    this.argument = argument;
    this.element = element;
  }
}

function read(reading, parameter, text, element) {
  const { value, reason } = reading.read(parameter.kind, text);
  if (reason !== undefined) throw new Unreadable(parameter.name, reason, element);
  return value === absent ? null : value;
}

/**
 * One argument from its text: a number (a day for a date), a keyword, a list of them; null left out, NaN missing.
 * @throws {Unreadable}
 */
export function valueOf(reading, parameter, text) {
  const trimmed = text.trim();
  if (!isList(parameter)) return read(reading, parameter, trimmed, null);
  const words = wordsOfList(trimmed);
  return words.length === 0 ? null : words.map((word, i) => read(reading, parameter, word, i + 1));
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
