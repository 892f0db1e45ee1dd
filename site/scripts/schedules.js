// The rows of schedules, all amounts from the calculations themselves.
import { monthsLater } from './days.js';

export const MOST_PERIODS = { nper: 12_000, life: 1200 }; // some methods walk all periods before one

/** A schedule that cannot be made, for a reason of its own. */
export class NoSchedule extends Error {
  constructor(argument, reason) {
    super(reason);
    this.argument = argument;
    this.reason = reason;
  }
}

const counted = (last) => Float64Array.from({ length: last }, (_, i) => i + 1);

function checkCount(argument, count) {
  const most = MOST_PERIODS[argument];
  if (count > most) throw new NoSchedule(argument, `more than ${most} periods: finance schedule has no such bound`);
}

// ---- Loans

// Payments at the start of a period fall on its first day, others on that of the next.
function datesOf({ start, months, type }, periods) {
  if (start === null || Number.isNaN(start)) return () => null;
  const count = months ?? 1;
  if (!Number.isInteger(count) || count < 1) throw new NoSchedule('months', `${count} is no number of months`);
  if (!Number.isInteger(start)) throw new NoSchedule('start', 'it is no whole day');
  const dateOf = (period) => monthsLater(start, (period - (type === 1 ? 1 : 0)) * count);
  if (dateOf(periods + 1) === undefined) throw new NoSchedule('start', 'the last payment would fall after the year 9999');
  return dateOf;
}

/**
 * @param {object} engine evaluate and rows @param {object} terms rate, nper, pv, fv, type, start, months; null left out
 * @returns {{period, date, payment, interest, principal, balance}[]} date: days, null without a start
 */
export function loanRows(engine, terms) {
  const { rate, nper, pv, fv, type } = terms;
  const payment = engine.evaluate('PMT', { rate, nper, pv, fv, type });
  checkCount('nper', nper);
  const dateOf = datesOf(terms, nper);
  const parts = { rate, per: counted(nper), nper, pv, fv, type };
  const interest = engine.rows('IPMT', parts);
  const principal = engine.rows('PPMT', parts);
  const error = interest.firstError ?? principal.firstError;
  if (error) throw error;
  let balance = pv;
  const rows = Array.from(interest.values, (amount, i) => {
    balance += principal.values[i];
    return { period: i + 1, date: dateOf(i + 1), payment, interest: amount, principal: principal.values[i], balance };
  });
  if (type === 1 && fv) rows.push(lastInterest(engine, rate, nper, balance, dateOf));
  return rows;
}

// Payments at the start leave a future value to which the last period's interest is still to be added.
function lastInterest(engine, rate, nper, balance, dateOf) {
  const interest = engine.evaluate('IPMT', { rate, per: 1, nper: 1, pv: balance });
  return { period: nper + 1, date: dateOf(nper + 1), payment: 0, interest, principal: 0 - interest, balance: balance - interest };
}

// ---- Depreciation

export const METHODS = ['SLN', 'SYD', 'DB', 'DDB', 'VDB'];

const callOf = {
  SLN: ({ cost, salvage, life }) => ({ cost, salvage, life }),
  SYD: ({ cost, salvage, life }, period) => ({ cost, salvage, life, period }),
  DB: ({ cost, salvage, life, month }, period) => ({ cost, salvage, life, period, month: month ?? 12 }),
  DDB: ({ cost, salvage, life, factor }, period) => ({ cost, salvage, life, period, factor: factor ?? 2 }),
  VDB: ({ cost, salvage, life, factor }, period) => ({
    cost, salvage, life, start: typeof period === 'number' ? period - 1 : period.map((one) => one - 1), end: period, factor: factor ?? 2, noSwitch: 0,
  }),
};

// Where the first year has not 12 months, DB has a period after the life.
const periodsOf = (method, { life, month }) => (method === 'DB' && (month ?? 12) !== 12 ? life + 1 : life);

function amountsOf(engine, method, terms) {
  engine.evaluate(method, callOf[method](terms, 1)); // refuses what is to be refused
  checkCount('life', terms.life);
  if (method === 'SLN') return new Float64Array(terms.life).fill(engine.evaluate('SLN', callOf.SLN(terms)));
  const { values, firstError } = engine.rows(method, callOf[method](terms, counted(periodsOf(method, terms))));
  if (firstError) throw firstError;
  return values;
}

/**
 * @param {object} terms cost, salvage, life, factor, month; null left out
 * @returns {{period: number, amounts: number[], bookValues: number[]}[]} in the order of METHODS; NaN: the method has no
 *   amount in that period
 */
export function depreciationRows(engine, terms) {
  // What DB refuses first is whether life is a count, which the other methods do not ask.
  const order = ['DB', ...METHODS.filter((method) => method !== 'DB')];
  const found = Object.fromEntries(order.map((method) => [method, amountsOf(engine, method, terms)]));
  const books = METHODS.map(() => terms.cost);
  return Array.from({ length: found.DB.length }, (_, i) => {
    const amounts = METHODS.map((method) => found[method][i] ?? NaN);
    amounts.forEach((amount, k) => {
      if (!Number.isNaN(amount)) books[k] -= amount;
    });
    return { period: i + 1, amounts, bookValues: [...books] };
  });
}
