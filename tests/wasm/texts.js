// Texts as people type them and as sheets show them, and as they should not be; the same for the same seed.
export const KINDS = ['number', 'whole number', 'date', 'date (or part of a day)', 'day-count basis', 'flag', 'numbers', 'dates'];
const DATES = [undefined, 'days', 'sheet', 'ymd', 'dmy', 'mdy'];

const bits = new DataView(new ArrayBuffer(8));

const wellFormed = (text) => new TextDecoder().decode(new TextEncoder().encode(text));

// A linear congruential generator modulo 2^64 (Knuth's multiplier); its upper 32 bits.
function generator(seed) {
  let state = BigInt(seed);
  return (below) => {
    state = BigInt.asUintN(64, state * 6364136223846793005n + 1442695040888963407n);
    return Number(state >> 32n) % below;
  };
}

// As wasm/reading.cpp has them, and as the reader takes them.
function formOf(number) {
  const [loose, decimalComma, usualMissing] = [1, 2, 4].map((bit) => (number & bit) !== 0);
  return { word: number, options: { loose, decimalComma, usualMissing, dates: DATES[number >> 3] } };
}

const WORDS = ['', '.', 'NA', 'n/a', '#N/A', 'NULL', 'none', '-', '--', 'nan', '-nan', 'NaN(1)', 'nan()', 'nan(', 'inf', '-INF', '+inf', 'Infinity', 'infin', 'ACTUAL', 'act/360', '30/360', 'EU30/360', 'basis', '%', '()', '$', 'e5', '0x1F', 'ten'];
const CURRENCIES = ['$', '€', '£', '¥', 'USD', 'EUR ', ' CHF', 'XYZ'];
const BLANKS = [' ', '\t', '\u00a0', '\u202f', '\u2009', '\u2007', '\u3000'];
const MARKS = [',', '.', "'", '’', ...BLANKS];
const ANYTHING = ['0', '1', '5', '9', '.', ',', '-', '+', 'e', 'E', '%', '(', ')', '/', '$', '€', ' ', '\u00a0', "'", 'x', '\n', '\ud800', '€'];

/** @returns {{kind: string, form: {word: number, options: object}, text: string}[]} */
export function drawnTexts(count, seed) {
  const random = generator(seed);
  const one = (list) => list[random(list.length)];
  const maybe = (text, odds = 2) => (random(odds) === 0 ? text : '');
  const digits = (most) => Array.from({ length: 1 + random(most) }, () => random(10)).join('');
  const padded = (number, width) => String(number).padStart(width, '0');

  const exponent = () => one(['e', 'E']) + one(['', '-', '+']) + digits(random(4) === 0 ? 5 : 2);
  const decimal = () => maybe('-', 3) + maybe(digits(random(8) === 0 ? 40 : 9), 1) + maybe(`.${digits(random(8) === 0 ? 40 : 6)}`) + maybe(exponent(), 3) + maybe('%', 4);
  // The digits of a double, of one next to the limits, and of the middle between two.
  const double = () => {
    bits.setUint32(0, random(2 ** 32));
    bits.setUint32(4, random(2 ** 32));
    if (random(4) === 0) bits.setUint16(0, random(2) * 0x7fe0 + random(32));
    const value = bits.getFloat64(0);
    return Number.isFinite(value) ? value.toPrecision(1 + random(21)) : String(random(2 ** 31));
  };
  // Halfway between two doubles in all its digits, small, large or below the smallest power of 2 that has all its bits; and
  // a little above it.
  const middle = () => {
    const above = one(['', '', '.', '.0', `.${'0'.repeat(random(900))}1`]);
    const odd = BigInt(random(2 ** 31)) * 2n + 1n;
    const whole = (1n << 53n) + odd;
    const places = BigInt(random(1100));
    return one([
      () => `${whole << BigInt(random(980))}${above}`,
      () => `${whole * 5n ** places}${above}e-${places}`, // a whole number over 2^places
      () => `${odd * 5n ** 1075n}${above}e-1075`,
    ])();
  };
  const grouped = () => {
    const mark = one(MARKS);
    const groups = Array.from({ length: random(4) }, () => padded(random(1000), random(20) === 0 ? 2 : 3));
    const number = [digits(3), ...groups].join(mark) + maybe(one(['.', ',']) + digits(4)) + maybe(one(BLANKS), 6) + maybe('%', 6);
    const signed = one(['', '', '-', '+', '(']) + maybe(one(CURRENCIES), 3) + number + maybe(one(BLANKS), 6) + maybe(one(CURRENCIES), 5);
    return signed.startsWith('(') ? `${signed})` : signed;
  };
  const date = () => {
    const [year, month, day] = [padded(1 + random(random(2) === 0 ? 10000 : 2100), 4), random(13) + maybe('', 1), random(33)].map(String);
    const [m, d] = random(2) === 0 ? [month, day] : [padded(month, 2), padded(day, 2)];
    const mark = one(['-', '-', '.', '/', '']);
    return one([[year, m, d], [year, m, d], [d, m, year], [m, d, year], [d, m, year.slice(2)]]).join(mark);
  };
  const serial = () => String(random(random(2) === 0 ? 80_000 : 4_000_000) - random(2) * 1000) + maybe(`.${digits(3)}`, 4);
  const noise = () => Array.from({ length: 1 + random(8) }, () => one(ANYTHING)).join('');
  const damaged = (text) => {
    const at = random(text.length + 1);
    return text.slice(0, at) + maybe(one(ANYTHING)) + text.slice(at + random(2));
  };

  const shapes = [decimal, decimal, double, middle, grouped, grouped, date, date, serial, noise, () => one(WORDS)];
  return Array.from({ length: count }, () => {
    const text = one(shapes)();
    // One in two is read as a call reads it or by a single option; a lone surrogate is no text that is the same elsewhere.
    const form = random(2) === 0 ? one([0, 1, 2, 4, 8, 16, 24, 32, 40]) : random(48);
    return { kind: one(KINDS), form: formOf(form), text: wellFormed(random(6) === 0 ? damaged(text) : text) };
  });
}
