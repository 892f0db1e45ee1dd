// Where an axis has its marks: round numbers, or the first days of years and months.
import { dayOfISO, isoOfDay, monthsLater } from './days.js';
import { digits } from './values.js';

const CLOSEST = 1e-13; // ticks that lie closer, beside their own size, are not told apart
const LARGE = 1e9;
const MANTISSAS = [1, 2, 5, 10];
const STEPS_OF_MONTHS = [1, 3, 6, 12, 24, 60, 120, 240, 600, 1200, 2400, 6000, 12000];
const DAYS_OF_MONTH = 30.436875;
const FEWEST_MONTHS = 2.5; // shown as days below

function roundStep(span, most) {
  const rough = span / most;
  const power = 10 ** Math.floor(Math.log10(rough));
  return power * MANTISSAS.find((mantissa) => mantissa * power >= rough * (1 - 1e-9));
}

/** @returns {{at: number, text: string}[]} round numbers from low to high, at most about `most` */
export function numberTicks(low, high, most = 6, whole = false) {
  const step = whole ? Math.max(1, roundStep(high - low, most)) : roundStep(high - low, most);
  const far = Math.max(Math.abs(low), Math.abs(high));
  if (!(step > far * CLOSEST) || !Number.isFinite(step)) return [];
  const decimals = Math.max(0, -Math.floor(Math.log10(step) + 1e-9));
  const ticks = [];
  for (let k = Math.ceil(low / step - 1e-9); k * step <= high + step * 1e-9; ++k) {
    ticks.push({ at: k * step, text: tickText(k * step, decimals, high, low) });
  }
  return ticks;
}


// As many as tell ticks apart.
const digitsOf = (far, span) => Math.min(15, Math.max(4, Math.ceil(Math.log10(far / span)) + 3));

function tickText(value, decimals, high, low) {
  const far = Math.max(Math.abs(high), Math.abs(low));
  if (decimals > 8 || far >= LARGE) return digits(Number(value.toPrecision(digitsOf(far, high - low))));
  const text = value.toLocaleString('en-US', { minimumFractionDigits: decimals, maximumFractionDigits: decimals });
  return /^-0(\.0*)?$/.test(text) ? text.slice(1) : text;
}

/** Days: first days of months, or days where there are few months. */
export function dateTicks(low, high, most = 6) {
  const months = (high - low) / DAYS_OF_MONTH;
  if (months < FEWEST_MONTHS) {
    return numberTicks(low, high, most, true).map(({ at }) => ({ at, text: isoOfDay(at) ?? '' }));
  }
  const step = STEPS_OF_MONTHS.find((one) => months / one <= most) ?? STEPS_OF_MONTHS.at(-1);
  const [year, month] = (isoOfDay(low) ?? '0001-01-01').split('-').map(Number);
  const first = step >= 12 ? year - (year % (step / 12)) : year;
  const start = dayOfISO(`${String(Math.max(first, 1)).padStart(4, '0')}-01-01`);
  const ticks = [];
  for (let k = 0; ; k += step) {
    const at = monthsLater(start, k);
    if (at === undefined || at > high) return ticks;
    if (at >= low) ticks.push({ at, text: step >= 12 ? isoOfDay(at).slice(0, 4) : isoOfDay(at).slice(0, 7) });
    if (k > 12 * (most + 2) * step + 12 * month) return ticks;
  }
}
