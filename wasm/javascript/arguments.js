// The arguments of a call: from what was given, in order or by name, to words in the order in which calculations take them.
//
//  (1) null and undefined are left out. What is left out at the end is not in the call; anywhere else it keeps its place,
//      and the calculation says whether it can do without.
//  (2) A list is one argument. Its values stand one after the other in the call; two lists have equally many.
//  (3) Kinds of values are looked at here. What a value must be is the calculation's business.
import { absent } from './core.js';
import { isDayOfCalendar, toDay } from './dates.js';
import { usageError } from './errors.js';

export const isList = ({ kind }) => kind === 'numbers' || kind === 'dates';
export const isDated = ({ kind }) => kind.startsWith('date');
export const isBasis = ({ kind }) => kind === 'day-count basis';
export const isLeftOut = (value) => value === null || value === undefined;

/**
 * Days that no calendar has and fractions of a basis' code pass the calculations; a call that holds one is refused before
 * it is made.
 */
export function isMeant(calculation, { parameter }, word) {
  if (typeof word !== 'number' || Number.isNaN(word)) return true;
  const of = calculation.arguments[parameter];
  return isDated(of) ? isDayOfCalendar(word) : !isBasis(of) || word === Math.trunc(word);
}

/** Several values: an array, a typed array. */
export const isSequence = (value) => Array.isArray(value) || (ArrayBuffer.isView(value) && !(value instanceof DataView));

/** Arguments by name: an object that is nothing else. */
export const isByName = (value) =>
  typeof value === 'object' && value !== null && !isSequence(value) && !(value instanceof Date);

export function shown(value) {
  if (typeof value === 'string') return `'${value.length > 80 ? `${value.slice(0, 77)}...` : value}'`;
  if (value instanceof Date) return 'an invalid Date';
  if (isSequence(value)) return 'a list';
  if (typeof value === 'bigint') return `${value}n`;
  return typeof value === 'object' || typeof value === 'function' ? `a value of type ${typeof value}` : String(value);
}

/**
 * What each parameter was given.
 * @param {object} calculation of the catalogue
 * @param {Array|object} args in order, or by name
 */
export function byParameter(calculation, args) {
  const parameters = calculation.arguments;
  if (isSequence(args)) {
    if (args.length > parameters.length)
      throw usageError(calculation, `too many arguments: ${args.length}, and there are ${parameters.length} at most`);
    return parameters.map((_, i) => args[i]);
  }
  if (!isByName(args)) throw usageError(calculation, `arguments are an array or an object, not ${shown(args)}`);
  const names = parameters.map(({ name }) => name);
  const unknown = Object.keys(args).find((name) => !names.includes(name));
  if (unknown !== undefined)
    throw usageError(calculation, `no argument is called ${shown(unknown)}: there are ${names.join(', ')}`);
  return names.map((name) => args[name]);
}

/** One value as a call has it. place: of the parameter, in a list of the value. */
export function wordOf(calculation, place, value) {
  const parameter = calculation.arguments[place.parameter];
  if (isLeftOut(value)) return absent;
  if (typeof value === 'number') return value;
  if (isDated(parameter)) {
    const day = toDay(value);
    if (day !== undefined) return day;
    const wanted = "year-month-day as in '2008-02-15', a Date, or days since 1960-01-01";
    throw usageError(calculation, `${shown(value)} is not a date: ${wanted}`, place);
  }
  if (isBasis(parameter) && typeof value === 'string') return value;
  if (parameter.kind === 'flag' && typeof value === 'boolean') return Number(value);
  throw usageError(calculation, `${shown(value)} is not a number`, place);
}

function valuesOfList(calculation, parameter, value) {
  if (isLeftOut(value)) return [];
  if (isSequence(value)) return value;
  throw usageError(calculation, `${shown(value)} is not a list: its values stand in an array`, { parameter, element: 0 });
}

// The calculation itself cannot tell where the first of two lists ends.
function checkPairs(calculation, sizes) {
  const lists = calculation.arguments.map((_, i) => i).filter((i) => isList(calculation.arguments[i]));
  if (lists.length !== 2 || sizes[lists[0]] === sizes[lists[1]]) return;
  const [first, second] = lists.map((i) => `${sizes[i]} ${calculation.arguments[i].name}`);
  throw usageError(calculation, `${first}, but ${second}`, { parameter: lists[1], element: 0 });
}

/**
 * The words of a call, and to which parameter each belongs.
 * @param {object} calculation
 * @param {Array} given what each parameter was given
 * @param {(calculation: object, place: object, value: any) => any} toWord
 * @returns {{words: Array, places: {parameter: number, element: number}[]}} element: of a list, 1 the first; else 0
 */
export function unrolled(calculation, given, toWord = wordOf) {
  const parameters = calculation.arguments;
  const values = given.map((value, i) => (isList(parameters[i]) ? valuesOfList(calculation, i, value) : value));
  const isThere = (i) => (isList(parameters[i]) ? values[i].length > 0 : !isLeftOut(values[i]));
  checkPairs(calculation, values.map((value) => value?.length));
  let end = parameters.length;
  while (end > 0 && !isThere(end - 1)) --end;
  const words = [];
  const places = [];
  const add = (parameter, element, value) => {
    const place = { parameter, element };
    words.push(toWord(calculation, place, value));
    places.push(place);
  };
  for (let i = 0; i < end; ++i) {
    if (!isList(parameters[i])) add(i, 0, values[i]);
    else for (let k = 0; k < values[i].length; ++k) add(i, k + 1, values[i][k]);
  }
  return { words, places };
}
