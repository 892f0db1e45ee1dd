// One calculation over rows.
//
//  (1) A column has a value a row: a Float64Array of numbers or days, or an array of whatever one value may be; a basis
//      goes by its code there, and what is left out is a missing value. Anything else is the same in all rows.
//  (2) A list is an array of columns, the first of which has the first value of each row.
//  (3) A row without a value is NaN. It is refused, unless that is because a value is missing.
import { byParameter, isBasis, isDated, isLeftOut, isMeant, isSequence, shown, unrolled, wordOf } from './arguments.js';
import { refusal, usageError } from './errors.js';

const isColumn = (word) => word instanceof Float64Array;
const inRow = (words, row) => words.map((word) => (isColumn(word) ? word[row] : word));

// The number of one row's value.
function numberOf(calculation, place, value, bases) {
  if (isLeftOut(value)) return NaN;
  const word = wordOf(calculation, place, value);
  if (typeof word === 'number') return word;
  const code = bases.indexOf(word.toUpperCase());
  if (code < 0) throw usageError(calculation, `${shown(word)} is no basis of a column: ${bases.join(', ')} or 0 to 4`, place);
  return code;
}

const columnOrWord = (bases) => (calculation, place, value) => {
  if (!isSequence(value)) return wordOf(calculation, place, value);
  if (isColumn(value)) return value;
  return Float64Array.from(value, (element) => numberOf(calculation, place, element, bases));
};

// Columns are as long as each other; without any there is one row.
function countOfRows(calculation, words, places) {
  const first = words.find(isColumn);
  if (first === undefined) return 1;
  const other = words.findIndex((word) => isColumn(word) && word.length !== first.length);
  if (other < 0) return first.length;
  throw usageError(calculation, `a column of ${words[other].length} rows, and the first has ${first.length}`, places[other]);
}

function checkAllGiven(calculation, given) {
  const lacking = calculation.arguments.filter(({ need }, i) => need !== 'optional' && isLeftOut(given[i]));
  if (lacking.length > 0) throw usageError(calculation, `too few arguments: no ${lacking.map(({ name }) => name).join(', ')}`);
}

// 1 where a row holds a value that nobody can mean.
function unmeantRows(calculation, words, places, count) {
  const unmeant = new Uint8Array(count);
  words.forEach((word, i) => {
    if (!isColumn(word)) {
      if (!isMeant(calculation, places[i], word)) unmeant.fill(1);
      return;
    }
    const { kind } = calculation.arguments[places[i].parameter];
    if (!isDated({ kind }) && !isBasis({ kind })) return;
    for (let row = 0; row < count; ++row) if (!isMeant(calculation, places[i], word[row])) unmeant[row] = 1;
  });
  return unmeant;
}

/** What Finance.rows gives. */
export function rowsOf(core, calculation, columns, bases) {
  const given = byParameter(calculation, columns);
  checkAllGiven(calculation, given);
  const { words, places } = unrolled(calculation, given, columnOrWord(bases));
  const count = countOfRows(calculation, words, places);
  const name = calculation.calculation;
  const unmeant = unmeantRows(calculation, words, places, count);
  const { results: values, answered } = core.rows(name, words, count);
  const refused = [];
  for (let row = 0; row < count; ++row) {
    const called = answered[row] === 1 && unmeant[row] === 0;
    // An answer that is a number holds, unless it was searched; one that is a missing value is none, and no refusal.
    if (called && (Number.isNaN(values[row]) || (Number.isFinite(values[row]) && !calculation.searches))) continue;
    const { verdict, value } = core.explain(name, inRow(words, row));
    values[row] = verdict === 'answered' ? value : NaN;
    if (verdict !== 'answered' && verdict !== 'missing') refused.push(row);
  }
  const firstError = refused.length > 0 ? refusal(calculation, places, core.explain(name, inRow(words, refused[0]))) : null;
  return { values, refused: Uint32Array.from(refused), firstError };
}
