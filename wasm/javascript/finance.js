// Calls of the calculations of a catalogue: their value, or in the words of the C++ code why there is none.
import { byParameter, isByName, isMeant, unrolled } from './arguments.js';
import { SUCCESS } from './core.js';
import { toISODate } from './dates.js';
import { FinanceError, refusal } from './errors.js';
import { rowsOf } from './rows.js';

export class Finance {
  #core;
  #calculations;
  #shortWays;

  /**
   * @param {import('./core.js').Core} core
   * @param {object} catalogue wasm/javascript/catalogue.json
   * @param {(calculation: object) => (args: Array|object) => number|undefined} shortWayOf short_way.js; without it all
   *   calls go the long way
   */
  constructor(core, catalogue, shortWayOf = () => () => undefined) {
    this.#core = core;
    this.catalogue = catalogue;
    this.#calculations = new Map(catalogue.calculations.map((calculation) => [calculation.calculation, calculation]));
    this.#shortWays = new Map(catalogue.calculations.map((calculation) => [calculation, shortWayOf(calculation)]));
  }

  #calculation(name) {
    const found = this.#calculations.get(String(name).toUpperCase());
    if (!found) throw new FinanceError(`no calculation is called '${name}'`);
    return found;
  }

  /** The calculation of what a function is given: arguments in order, or one object with them by name. */
  callOf(name) {
    const calculation = this.#calculation(name);
    const shortWay = this.#shortWays.get(calculation);
    return (args) => this.#value(calculation, shortWay, args.length === 1 && isByName(args[0]) ? args[0] : args);
  }

  /**
   * @param {string} name in upper or lower case
   * @param {Array|object} args in order, or by name
   * @returns {number|string|null} a number, a date as ISO text; null: the answer is a missing value
   */
  evaluate(name, args) {
    const calculation = this.#calculation(name);
    return this.#value(calculation, this.#shortWays.get(calculation), args);
  }

  #value(calculation, shortWay, args) {
    const value = shortWay(args) ?? this.#longWay(calculation, args);
    if (value === null || calculation.result !== 'date') return value;
    return toISODate(value) ?? String(value); // frequencies that give no coupon dates give days of no calendar
  }

  // Searches may end where nothing is solved. Of all others an answer that is a number is one.
  #longWay(calculation, args) {
    const { words, places } = unrolled(calculation, byParameter(calculation, args));
    const meant = words.every((word, i) => isMeant(calculation, places[i], word));
    if (meant && !calculation.searches) {
      const { status, value } = this.#core.call(calculation.calculation, words);
      if (status === SUCCESS && Number.isFinite(value)) return value;
    }
    const answer = this.#core.explain(calculation.calculation, words);
    if (answer.verdict === 'answered') return answer.value;
    if (answer.verdict === 'missing' && answer.status === SUCCESS) return null;
    throw refusal(calculation, places, answer);
  }

  /**
   * One calculation over rows.
   * @param {string} name
   * @param {Array|object} columns in order or by name: columns, or values that are the same in all rows (rows.js)
   * @returns {{values: Float64Array, refused: Uint32Array, firstError: FinanceError|null}} values: NaN where a row has none,
   *   dates as days since 1960-01-01; refused: the rows that are, ascending
   */
  rows(name, columns) {
    return rowsOf(this.#core, this.#calculation(name), columns, this.catalogue.bases);
  }
}
