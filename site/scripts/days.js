// Days since 1960-01-01 and what people call them.
export { toDay as dayOfISO, toISODate as isoOfDay } from '../../wasm/javascript/dates.js';
import { toDay, toISODate } from '../../wasm/javascript/dates.js';

/** The day of the month that `day` has, or the month's last, so many months later. @returns {number|undefined} */
export function monthsLater(day, months) {
  const [year, month, dayOfMonth] = toISODate(day).split('-').map(Number);
  const target = year * 12 + (month - 1) + months;
  const [y, m] = [Math.floor(target / 12), (target % 12) + 1];
  if (y > 9999) return undefined;
  const last = new Date(Date.UTC(2000, m, 0)).getUTCDate();
  const leap = y % 4 === 0 && (y % 100 !== 0 || y % 400 === 0);
  const longest = m === 2 ? (leap ? 29 : 28) : last;
  const text = (number, width) => String(number).padStart(width, '0');
  return toDay(`${text(y, 4)}-${text(m, 2)}-${text(Math.min(dayOfMonth, longest), 2)}`);
}
