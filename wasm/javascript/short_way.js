// The short way of a call: where all that was given is what the calculation takes, its numbers go straight into the memory of
// the calculations. Whatever else was given, and whatever has no answer, goes the long way (arguments.js, finance.js), which
// has the words for it; it comes to the same answers.
import { isBasis, isByName, isDated, isLeftOut, isList, isSequence } from './arguments.js';
import { isDayOfCalendar, toDay } from './dates.js';

const encoder = new TextEncoder();

// What a value is to a call; NaN: not for the short way. A missing value is not, either.
const number = (value) => (typeof value === 'number' ? value : NaN);
const flag = (value) => (typeof value === 'boolean' ? Number(value) : number(value));

function day(value) {
  const found = toDay(value);
  return isDayOfCalendar(found) ? found : NaN;
}

const basisOf = (bases) => (value) => {
  const code = typeof value === 'string' ? bases.indexOf(value) : value;
  return Number.isInteger(code) && code >= 0 ? code : NaN;
};

// Most lists are of numbers, which need no reader.
function writeNumbers(numbers, first, values) {
  const { length } = values;
  for (let k = 0; k < length; ++k) {
    const word = values[k];
    if (typeof word !== 'number' || word !== word) return -1;
    numbers[first + k] = word;
  }
  return first + length;
}

function readerOf(parameter, bases) {
  if (isDated(parameter)) return day;
  if (isBasis(parameter)) return basisOf(bases);
  return parameter.kind === 'flag' ? flag : number;
}

/**
 * @param {import('./core.js').Core} core of zelkovan.wasm
 * @param {object} catalogue
 * @returns {(calculation: object) => (args: Array|object) => number|undefined} of a calculation its calls: the answer, or
 *   undefined where the long way has to be gone
 */
export const shortWay = (core, { bases }) => (calculation) => {
  const name = encoder.encode(calculation.calculation);
  const names = calculation.arguments.map((parameter) => parameter.name);
  const lists = calculation.arguments.map(isList);
  const readers = calculation.arguments.map((parameter) => readerOf(parameter, bases));
  const fewest = calculation.arguments.filter(({ need }) => need !== 'optional').length;

  // How many words there are; -1: not for the short way. Two lists are as long as each other.
  function wordsOf(given, end) {
    let words = 0;
    let size = -1;
    for (let i = 0; i < end; ++i) {
      if (!lists[i]) {
        ++words;
        continue;
      }
      if (!isSequence(given[i]) || (size >= 0 && given[i].length !== size)) return -1;
      size = given[i].length;
      words += size;
    }
    return size === 0 ? -1 : words;
  }

  // The place behind what was written; -1: not for the short way.
  function writeList(numbers, first, values, read) {
    let at = first;
    for (let k = 0; k < values.length; ++k) {
      const word = read(values[k]);
      if (word !== word) return -1;
      numbers[at++] = word;
    }
    return at;
  }

  // Whether all have been written.
  function writeAll(numbers, first, given, end) {
    let at = first;
    for (let i = 0; i < end; ++i) {
      if (lists[i]) {
        at = readers[i] === number ? writeNumbers(numbers, at, given[i]) : writeList(numbers, at, given[i], readers[i]);
        if (at < 0) return false;
        continue;
      }
      const word = readers[i](given[i]);
      if (word !== word) return false;
      numbers[at++] = word;
    }
    return true;
  }

  return (args) => {
    const byName = isByName(args);
    if (byName && !Object.keys(args).every((key) => names.includes(key))) return undefined;
    const given = byName ? names.map((key) => args[key]) : args;
    let end = given.length;
    while (end > 0 && isLeftOut(given[end - 1])) --end;
    if (end < fewest || end > names.length) return undefined;
    const words = wordsOf(given, end);
    if (words < 0) return undefined;
    const first = core.layOut(name, words);
    if (!writeAll(core.numbers, first, given, end)) return undefined;
    const value = core.callLaidOut();
    return Number.isFinite(value) && (!calculation.searches || core.holds(value)) ? value : undefined;
  };
};
