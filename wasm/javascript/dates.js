// Days as calculations count them, from 1960-01-01, and as JavaScript has them.

const MILLISECONDS_OF_DAY = 86_400_000;
const DAYS_TO_1970 = 3653; // from 1960-01-01
const ISO_DATE = /^\d{4}-\d\d-\d\d$/;

const dayAt = (milliseconds) => Math.floor(milliseconds / MILLISECONDS_OF_DAY) + DAYS_TO_1970;

const isoOf = (day) => new Date((Math.floor(day) - DAYS_TO_1970) * MILLISECONDS_OF_DAY).toISOString().split('T')[0];

/**
 * Days since 1960-01-01: '2008-02-15' is 17577. Of a Date its day in UTC counts.
 * @param {string|Date|number} date
 * @returns {number|undefined} undefined where it is no date
 */
export function toDay(date) {
  if (typeof date === 'number') return date;
  if (date instanceof Date) return Number.isNaN(date.getTime()) ? undefined : dayAt(date.getTime());
  if (typeof date !== 'string' || !ISO_DATE.test(date)) return undefined;
  const day = dayAt(Date.parse(date));
  // Not every reader of dates refuses a February 30th.
  return Number.isNaN(day) || isoOf(day) !== date ? undefined : day;
}

const FIRST_DAY = toDay('0001-01-01');
const LAST_DAY = toDay('9999-12-31');

/** Whether it lies in the years 1 to 9999. */
export const isDayOfCalendar = (day) => day >= FIRST_DAY && day < LAST_DAY + 1;

/**
 * The day as an ISO date: 17577 is '2008-02-15'. A part of a day is dropped.
 * @param {number} day days since 1960-01-01
 * @returns {string|undefined} undefined outside the years 1 to 9999
 */
export const toISODate = (day) => (isDayOfCalendar(day) ? isoOf(day) : undefined);
