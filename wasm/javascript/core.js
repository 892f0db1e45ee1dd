// Calls into core.wasm or zelkovan.wasm: arguments are written into its room, the outcome is read from there
// (wasm/calls.cpp, wasm/explanations.cpp). The room begins where it always did and never shrinks: it is asked for when more
// is needed than before.

export const SUCCESS = 0;
export const INVALID_ARGUMENT = 120836;
const NO_MEMORY = 1;

// An argument that is left out: of a number or a date, of a text.
export const absent = Symbol('absent');
export const absentText = Symbol('absent text');

// What an argument is, as wasm/words.hpp counts.
const KIND = { number: 0, text: 1, absent: 2, absentText: 3, column: 4 };

// Where the texts of an explanation are, in words.
const TEXT = { verdict: 2, label: 3, reason: 4, sentence: 5, namedSentence: 6, remedy: 7 };

const WORD = 8; // bytes of an argument
const MOST_BYTES = 2 ** 32 - 2 ** 16; // that addresses of 32 bits reach
const MISSING_NUMBER = 0xfffffe0000000000n;
const LITTLE_ENDIAN = true;

const encoder = new TextEncoder();
const decoder = new TextDecoder();

const roundedUp = (bytes) => Math.ceil(bytes / WORD) * WORD;

export class Core {
  #wasm;
  #view;
  #outcome; // {value, status, flagged argument}
  #placeOfValue; // of the outcome, in `numbers`
  #explanation; // {value, status, position, {place, bytes} of each text}
  #callLaidOut; // looked up once: engines take their time over exports
  #holds;
  #place;
  #first; // of the numbers of a call that is laid out
  #bytesOfRoom = 0;
  #laidOut = { name: undefined, count: 0 };

  /** The memory, word by word: numbers of a call that is laid out go there. */
  numbers = new Float64Array(0);

  /** @param {WebAssembly.Instance} instance of core.wasm or zelkovan.wasm, which import nothing */
  constructor(instance) {
    this.#wasm = instance.exports;
    this.#wasm.begin();
    this.#outcome = this.#wasm.outcome();
    this.#placeOfValue = this.#outcome / WORD;
    this.#explanation = this.#wasm.explanation?.();
    ({ call_laid_out: this.#callLaidOut, holds: this.#holds } = this.#wasm);
  }

  // Growing memory leaves the old views without a buffer.
  get #memory() {
    if (this.#view?.buffer !== this.#wasm.memory.buffer) this.#view = new DataView(this.#wasm.memory.buffer);
    return this.#view;
  }

  get bytesOfMemory() {
    return this.#wasm.memory.buffer.byteLength;
  }

  #room(bytes) {
    if (bytes <= this.#bytesOfRoom) return this.#place;
    const place = bytes > MOST_BYTES ? 0 : this.#wasm.room(bytes) >>> 0;
    if (place === 0) throw new RangeError(`there is no memory for ${bytes} bytes`);
    this.#bytesOfRoom = bytes;
    this.#place = place;
    this.#first = place / WORD + 1;
    return place;
  }

  #text(place, bytes) {
    return bytes === 0 ? '' : decoder.decode(new Uint8Array(this.#memory.buffer, place, bytes));
  }

  // Words, then kinds, then texts. Gives where each begins and where all end.
  #write(name, args, moreBytes) {
    this.#laidOut.name = undefined;
    const words = [name, ...args];
    const texts = words.map((word) => (typeof word === 'string' ? encoder.encode(word) : undefined));
    const bytesOfTexts = texts.reduce((sum, text) => sum + (text?.length ?? 0), 0);
    const bytes = roundedUp(words.length * (WORD + 1) + bytesOfTexts);
    const place = this.#room(bytes + moreBytes);
    const kinds = place + WORD * words.length;
    let free = kinds + words.length;
    const memory = this.#memory;
    words.forEach((word, i) => {
      const at = place + WORD * i;
      let kind = KIND.number;
      if (typeof word === 'number') {
        memory.setFloat64(at, word, LITTLE_ENDIAN);
      } else if (typeof word === 'bigint') {
        memory.setBigUint64(at, word, LITTLE_ENDIAN);
      } else if (texts[i] !== undefined) {
        kind = KIND.text;
        memory.setUint32(at, free, LITTLE_ENDIAN);
        memory.setUint32(at + 4, texts[i].length, LITTLE_ENDIAN);
        new Uint8Array(memory.buffer, free, texts[i].length).set(texts[i]);
        free += texts[i].length;
      } else if (word instanceof Float64Array) {
        kind = KIND.column; // its place is written by rows()
      } else {
        kind = word === absentText ? KIND.absentText : KIND.absent;
      }
      memory.setUint8(kinds + i, kind);
    });
    return { place, kinds, count: words.length, end: place + bytes };
  }

  /**
   * FINANCE(name, args...).
   * @param {string} name
   * @param {(number|bigint|string|symbol)[]} args numbers, a NaN being a missing one; texts; `absent`, `absentText`; the
   *   bits of a double as a bigint
   * @returns {{status: number, value: number, bits: bigint, flagged: number, note: number, log: string[]}} flagged: the
   *   argument at fault, 1 the first after the name, -1 none; note: the number of a message, 0 none
   */
  call(name, args) {
    const { place, kinds, count } = this.#write(name, args, 0);
    const status = this.#wasm.call(place, kinds, count);
    if (status === NO_MEMORY) throw new RangeError(`there is no memory for a call of ${name} with ${args.length} arguments`);
    const outcome = this.#outcome;
    const log = this.#wasm.log();
    const memory = this.#memory;
    const bytesOfLog = memory.getUint32(log, LITTLE_ENDIAN);
    const bits = memory.getBigUint64(outcome, LITTLE_ENDIAN);
    return {
      status,
      value: bits === MISSING_NUMBER ? NaN : memory.getFloat64(outcome, LITTLE_ENDIAN),
      bits,
      flagged: memory.getInt32(outcome + 12, LITTLE_ENDIAN),
      note: memory.getInt32(log + 4, LITTLE_ENDIAN),
      log: bytesOfLog === 0 ? [] : this.#text(log + WORD, bytesOfLog).trimEnd().split('\n'),
    };
  }

  /**
   * Lays out a call whose arguments are numbers, for `callLaidOut`. The same one again is laid out already.
   * @param {Uint8Array} name in ASCII
   * @param {number} count of arguments
   * @returns {number} where in `numbers` they go
   */
  layOut(name, count) {
    const laidOut = this.#laidOut;
    if (laidOut.name !== name || laidOut.count !== count) this.#layOutAnew(name, count);
    if (this.numbers.length === 0) this.#lookAgain();
    return this.#first;
  }

  #layOutAnew(name, count) {
    const words = count + 1;
    const kinds = this.#room(roundedUp(words * (WORD + 1) + name.length)) + WORD * words;
    const memory = this.#memory;
    const bytes = new Uint8Array(memory.buffer, kinds, words + name.length);
    bytes.fill(KIND.number, 0, words);
    bytes[0] = KIND.text;
    bytes.set(name, words);
    memory.setUint32(this.#place, kinds + words, LITTLE_ENDIAN);
    memory.setUint32(this.#place + 4, name.length, LITTLE_ENDIAN);
    if (this.#wasm.lay_out(this.#place, kinds, words) === 0)
      throw new RangeError(`there is no memory for a call with ${count} arguments`);
    this.#laidOut = { name, count };
  }

  // Memory that has grown leaves its old views empty.
  #lookAgain() {
    this.numbers = new Float64Array(this.#wasm.memory.buffer);
  }

  /** The value of the call that is laid out; NaN where there is none. */
  callLaidOut() {
    const answered = this.#callLaidOut() === SUCCESS;
    if (this.numbers.length === 0) this.#lookAgain();
    return answered ? this.numbers[this.#placeOfValue] : NaN;
  }

  /** Whether it is finite and, if it was searched, solves its equation. Of zelkovan.wasm only. */
  holds(value) {
    return this.#holds(this.#place, this.#laidOut.count + 1, value) === 1;
  }

  /** Whether there is `explain`: in zelkovan.wasm. */
  get explains() {
    return this.#wasm.explain !== undefined;
  }

  /**
   * FINANCE(name, args...) as front ends for people make it: not where a value cannot be meant (a day outside the years 1
   * to 9999, half a code of a basis), and with what is to be said where there is no answer. Of zelkovan.wasm only.
   * @param {string} name
   * @param {(number|bigint|string|symbol)[]} args as of `call`
   * @returns {{verdict: 'answered'|'missing'|'does not solve'|'too large'|'refused', value: number, status: number,
   *   position: number, label: string, reason: string, sentence: string, namedSentence: string, remedy: string}}
   *   value: NaN where there is none; position: of the argument at fault, 1 the first after the name, each value of a list
   *   counted, 0 none; label: that argument, "argument 2 (nper)"; reason: the rule that is broken, or why there is no
   *   answer; sentence: both in one line; namedSentence: with the calculation's name before it; remedy: the call that has
   *   the answer, as it is typed, "" where none is known. Texts are "" where there is nothing to say.
   */
  explain(name, args) {
    if (!this.explains) throw new TypeError('core.wasm has no sentences: zelkovan.wasm has');
    const { place, kinds, count } = this.#write(name, args, 0);
    if (this.#wasm.explain(place, kinds, count) === 0)
      throw new RangeError(`there is no memory for the explanation of ${name} with ${args.length} arguments`);
    const explanation = this.#explanation;
    const memory = this.#memory;
    const textAt = (at) => this.#text(memory.getUint32(at, LITTLE_ENDIAN), memory.getUint32(at + 4, LITTLE_ENDIAN));
    const [verdict, label, reason, sentence, namedSentence, remedy] = Object.values(TEXT).map((i) => textAt(explanation + WORD * i));
    return {
      verdict,
      value: memory.getFloat64(explanation, LITTLE_ENDIAN),
      status: memory.getUint32(explanation + 8, LITTLE_ENDIAN),
      position: memory.getInt32(explanation + 12, LITTLE_ENDIAN),
      label,
      reason,
      sentence,
      namedSentence,
      remedy,
    };
  }

  /**
   * The same calculation over rows: an argument is the same in all of them, or a Float64Array with one number a row.
   * @returns {{results: Float64Array, answered: Uint8Array}} results: NaN where a row has no value; answered: 1 or 0
   */
  rows(name, args, rows) {
    const columns = args.filter((arg) => arg instanceof Float64Array);
    const bytesOfNumbers = Float64Array.BYTES_PER_ELEMENT * rows;
    const written = this.#write(name, args, (columns.length + 1) * bytesOfNumbers + rows);
    let free = written.end;
    const memory = this.#memory;
    args.forEach((arg, i) => {
      if (!(arg instanceof Float64Array)) return;
      if (arg.length !== rows) throw new RangeError(`column ${i + 1} has ${arg.length} numbers, not ${rows}`);
      new Float64Array(memory.buffer, free, rows).set(arg);
      memory.setUint32(written.place + WORD * (i + 1), free, LITTLE_ENDIAN);
      memory.setUint32(written.place + WORD * (i + 1) + 4, Float64Array.BYTES_PER_ELEMENT, LITTLE_ENDIAN);
      free += bytesOfNumbers;
    });
    const results = free;
    const answered = results + bytesOfNumbers;
    if (this.#wasm.rows(written.place, written.kinds, written.count, rows, results, answered) < 0)
      throw new RangeError(`there is no memory for ${rows} rows of ${name}`);
    const buffer = this.#wasm.memory.buffer;
    return {
      results: new Float64Array(buffer, results, rows).slice(),
      answered: new Uint8Array(buffer, answered, rows).slice(),
    };
  }
}
