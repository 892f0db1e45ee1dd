// Texts that people type or paste, read by reading.wasm (wasm/reading.cpp) as the command reads them.
import { absent } from './core.js';

// As catalogue.json has the words, and reading.wasm counts.
const KINDS = ['number', 'whole number', 'date', 'date (or part of a day)', 'day-count basis', 'flag', 'numbers', 'dates'];
const DATES = ['days', 'sheet', 'ymd', 'dmy', 'mdy'];
const LOOSE = 1;
const DECIMAL_COMMA = 2;
const USUAL_MISSING = 4;
const OF_DATES = 8;

const STATUS = { value: 0, absent: 1, missing: 2, text: 3 };
const LITTLE_ENDIAN = true;

const encoder = new TextEncoder();
const decoder = new TextDecoder();

function numberOf(words, word, what) {
  const number = words.indexOf(word);
  if (number < 0) throw new TypeError(`there is no ${what} '${word}': there are ${words.join(', ')}`);
  return number;
}

function wordOf({ loose = false, decimalComma = false, dates, usualMissing = false }) {
  const ofDates = dates === undefined ? 0 : OF_DATES * (1 + numberOf(DATES, dates, 'form of dates'));
  return (loose ? LOOSE : 0) + (decimalComma ? DECIMAL_COMMA : 0) + (usualMissing ? USUAL_MISSING : 0) + ofDates;
}

export class Reading {
  #wasm;

  /** @param {WebAssembly.Instance} instance of reading.wasm, which imports nothing */
  constructor(instance) {
    this.#wasm = instance.exports;
    this.#wasm.begin();
  }

  /**
   * One value of an argument. Blanks around it are the caller's to take away.
   * @param {string} kind of the argument, as catalogue.json has it: 'date', 'whole number', ... Of a list one of its values
   * @param {string} text
   * @param {{loose?: boolean, decimalComma?: boolean, dates?: 'days'|'sheet'|'ymd'|'dmy'|'mdy', usualMissing?: boolean}} [form]
   *   how it is written, as the command's options for tables say it; {}: as in calls. loose: grouped digits, a currency,
   *   brackets for a minus; decimalComma: 1.234,56; dates: how, left out as in calls; usualMissing: NA, #N/A, NULL and
   *   their like are missing values
   * @returns {{value: number|string|symbol}|{reason: string, hint: string}} value: a number, of a date the days since
   *   1960-01-01; NaN, a missing one; `absent` of core.js, where there is no text; the word of a basis as it stands.
   *   Where it cannot be read, or is no value that anybody can mean: the reason in the command's words, and the options of
   *   tables with which it would read it, "; --dates dmy reads 2024-01-15", "" where there are none
   */
  read(kind, text, form = {}) {
    const [ofKind, ofForm] = [numberOf(KINDS, kind, 'kind'), wordOf(form)];
    const bytes = encoder.encode(text);
    const place = this.#wasm.room(bytes.length) >>> 0;
    if (place === 0) throw new RangeError(`there is no memory for a text of ${bytes.length} bytes`);
    new Uint8Array(this.#wasm.memory.buffer, place, bytes.length).set(bytes);
    if (this.#wasm.read(place, bytes.length, ofKind, ofForm) === 0)
      throw new RangeError(`there is no memory for the reading of ${bytes.length} bytes`);
    const outcome = this.#wasm.outcome(); // value; status; reason and hint
    const memory = new DataView(this.#wasm.memory.buffer);
    const textAt = (at) => {
      const size = memory.getUint32(at + 4, LITTLE_ENDIAN);
      return size === 0 ? '' : decoder.decode(new Uint8Array(memory.buffer, memory.getUint32(at, LITTLE_ENDIAN), size));
    };
    switch (memory.getUint32(outcome + 8, LITTLE_ENDIAN)) {
      case STATUS.value:
        return { value: memory.getFloat64(outcome, LITTLE_ENDIAN) };
      case STATUS.absent:
        return { value: absent };
      case STATUS.missing:
        return { value: NaN };
      case STATUS.text:
        return { value: text };
      default:
        return { reason: textAt(outcome + 16), hint: textAt(outcome + 24) };
    }
  }
}
