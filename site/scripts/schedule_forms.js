// The forms of the page of schedules: pictures, sums and tables as one types.
import { scheduleParameters } from '../pages/schedules.js';
import { isoOfDay } from './days.js';
import { copyButton, part } from './elements.js';
import { faultOf, fill, isRefusal, settled, showFault, textsIn, usualTexts } from './form.js';
import { draw } from './picture.js';
import { depreciationRows, loanRows, METHODS, NoSchedule } from './schedules.js';
import { showManyRows } from './table.js';
import { digits, grouped, short, valuesOf } from './values.js';

// A table with all digits to be copied from, rounded to be looked at.
function showRows(parent, name, headings, rows) {
  const inCSV = (value) => (typeof value !== 'number' ? (value ?? '') : Number.isNaN(value) ? '' : digits(value));
  const csv = () => `${[headings, ...rows].map((row) => row.map(inCSV).join(',')).join('\n')}\n`;
  copyButton(part(parent, 'p', { name: 'actions' }), 'Copy as CSV, all digits', csv);
  showManyRows(parent, name, headings, rows.map((row) => row.map(amount)), '; the CSV has all');
}

const amount = (value, i) => (typeof value !== 'number' ? (value ?? '') : i === 0 ? String(value) : grouped(value));

// ---- A loan

function showLoan(outcome, engine, terms) {
  const rows = loanRows(engine, terms);
  const dated = rows[0].date !== null;
  const sum = (name) => rows.reduce((total, row) => total + row[name], 0);
  const { nper } = terms; // rows may be one more, of interest alone
  const sums =
    `Each payment ${grouped(rows[0].payment)}; all ${nper}: ${grouped(sum('payment'))}. Interest ${grouped(sum('interest'))}.` +
    (dated ? ` The last payment on ${isoOfDay(rows[nper - 1].date)}.` : '');
  part(outcome, 'p', { text: sums, name: 'sums' });
  const at = (row) => (dated ? row.date : row.period);
  const x = { label: dated ? 'date' : 'period', scale: dated ? 'date' : 'whole' };
  const read = (i) => `${dated ? isoOfDay(rows[i].date) : `period ${rows[i].period}`}: interest ${grouped(rows[i].interest)}, principal ${
    grouped(rows[i].principal)}, balance ${grouped(rows[i].balance)}`;
  const pictures = part(outcome, 'div', { name: 'pictures' });
  draw(part(pictures, 'figure', { name: 'picture' }), {
    title: 'Each payment: principal and interest',
    x, y: {}, read,
    series: [
      { name: 'principal', kind: 'bars', points: rows.map((row) => [at(row), 0 - row.principal]) },
      { name: 'interest', kind: 'bars', points: rows.map((row) => [at(row), 0 - row.principal - row.interest]) },
    ],
  });
  draw(part(pictures, 'figure', { name: 'picture' }), {
    title: 'The balance after each payment',
    x, y: {}, read, zero: true,
    series: [{ name: 'balance', points: rows.map((row) => [at(row), row.balance]) }],
  });
  const headings = ['period', ...(dated ? ['date'] : []), 'payment', 'interest', 'principal', 'balance'];
  const cells = rows.map((row) => [row.period, ...(dated ? [isoOfDay(row.date)] : []), row.payment, row.interest, row.principal, row.balance]);
  showRows(outcome, 'All payments', headings, cells);
}

// ---- Depreciation

function showDepreciation(outcome, engine, terms) {
  const rows = depreciationRows(engine, terms);
  const pictures = part(outcome, 'div', { name: 'pictures' });
  const read = (i) => (i === 0 ? `cost ${grouped(terms.cost)}` : `after period ${i}: ${METHODS.map((method, k) => `${method} ${grouped(rows[i - 1].bookValues[k])}`).join(', ')}`);
  draw(part(pictures, 'figure', { name: 'picture' }), {
    title: 'Book values after each period, by method',
    x: { label: 'period', scale: 'whole' }, y: {}, read, zero: true,
    series: METHODS.map((name, k) => ({
      name,
      points: [[0, terms.cost], ...rows.map((row) => [row.period, Number.isNaN(row.amounts[k]) ? NaN : row.bookValues[k]])],
    })),
  });
  draw(part(pictures, 'figure', { name: 'picture' }), {
    title: 'What each method writes off in each period',
    x: { label: 'period', scale: 'whole' }, y: {}, zero: true,
    read: (i) => `period ${i + 1}: ${METHODS.map((method, k) => `${method} ${Number.isNaN(rows[i].amounts[k]) ? 'none' : short(rows[i].amounts[k])}`).join(', ')}`,
    series: METHODS.map((name, k) => ({ name, points: rows.map((row) => [row.period, row.amounts[k]]) })),
  });
  const headings = ['period', ...METHODS, ...METHODS.map((method) => `${method} book value`)];
  showRows(outcome, 'All periods of the methods', headings, rows.map((row) => [row.period, ...row.amounts, ...row.bookValues]));
}

const SHOW = { loan: showLoan, depreciation: showDepreciation };

/** @param {HTMLElement} element of pages/schedules.js @returns {{reread: () => void}} for when the address has changed */
export function attachSchedule(element, engine, address) {
  const kind = element.dataset.schedule;
  const form = element.querySelector('form');
  const parameters = scheduleParameters(engine.catalogue.calculations)[kind];
  const outcome = element.querySelector('.outcome');
  const refusal = element.querySelector('.refusal');
  const usual = usualTexts(form, parameters);
  const named = (texts) => Object.fromEntries(Object.entries(texts).map(([name, text]) => [`${kind}-${name}`, text]));
  const show = () => {
    outcome.replaceChildren();
    refusal.textContent = '';
    showFault(form, parameters, null);
    try {
      SHOW[kind](outcome, engine, valuesOf(engine.reading, parameters, textsIn(form, parameters)));
    } catch (error) {
      if (!isRefusal(error) && !(error instanceof NoSchedule)) throw error;
      const known = parameters.some(({ name }) => name === error.argument);
      refusal.textContent = known ? `no schedule: see ${error.argument}` : error.message;
      if (known) showFault(form, parameters, faultOf(error));
    }
  };
  const later = settled(show, 120);
  const changed = () => {
    address.write({ ...address.read(), ...named(textsIn(form, parameters)) }, named(usual));
    later();
  };
  form.addEventListener('submit', (event) => event.preventDefault());
  form.addEventListener('input', changed);
  form.addEventListener('reset', () => setTimeout(changed));
  const reread = () => {
    const given = address.read();
    fill(form, parameters, Object.fromEntries(parameters.map(({ name }) => [name, given[`${kind}-${name}`] ?? usual[name]])));
    show();
  };
  reread();
  return { reread };
}
