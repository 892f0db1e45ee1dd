// The page of pasted flows: what was understood, IRR and XIRR, all rates, and the present value over the rate.
import { isoOfDay } from './days.js';
import { part } from './elements.js';
import { readFlows } from './flow_text.js';
import { settled } from './form.js';
import { draw } from './picture.js';
import { changesOfSign, howMany, presentValue, ratesOf } from './rates.js';
import { showManyRows, showTable, tableRegion } from './table.js';
import { digits, grouped, percentage } from './values.js';

const YEAR = 365; // days, as XIRR counts years
const POINTS = 201;
const SAME = 1e-9; // rates that differ less are one

const WORDS_OF_DATES = { ymd: 'year, month, day', dmy: 'day, month, year', mdy: 'month, day, year', sheet: "a sheet's serial numbers", days: 'days since 1960-01-01' };
const WORDS_OF_DECIMALS = { point: 'decimal point', comma: 'decimal comma' };
const MOST_FAULTS = 5;

function understood({ flows, titles, dates, decimal, column, otherColumns, otherDates, otherDecimal }) {
  const rows = `${flows.length} ${flows.length === 1 ? 'row' : 'rows'}`;
  const said = [dates === null ? `${rows} of amounts, ${WORDS_OF_DECIMALS[decimal]}, without dates: periods of equal length.` : `${rows}; dates as ${WORDS_OF_DATES[dates]}; amounts with a ${WORDS_OF_DECIMALS[decimal]}.`];
  const [first] = flows;
  said.push(`The first is ${dates === null ? '' : `${isoOfDay(first.date)}: `}${digits(first.amount)}.`);
  if (titles.length > 0) said.push(`${titles.length === 1 ? `Line ${titles[0]} is taken for a title` : `Lines ${titles.join(', ')} are taken for titles`}.`);
  if (otherColumns.length > 0) said.push(`Amounts are those of column ${column}; numbers in column ${otherColumns.join(', ')} are left out.`);
  if (otherDates.length > 0) said.push(`The dates could be ${otherDates.map((form) => WORDS_OF_DATES[form]).join(' or ')} as well: choose if they are.`);
  if (otherDecimal) said.push(`The amounts could be written with a ${WORDS_OF_DECIMALS[decimal === 'point' ? 'comma' : 'point']} as well: choose if they are.`);
  return said.join(' ');
}

function faultsText(faults) {
  const said = faults.slice(0, MOST_FAULTS).map(({ line, what, text }) => `line ${line}: ${text === '' ? `no ${what}` : `'${text.slice(0, 60)}' is no ${what}`}`);
  const more = faults.length - said.length;
  return said.join('; ') + (more > 0 ? `; and ${more} more` : '');
}

/** An answer of a calculation, or the sentence for none. */
function answerOf(engine, name, args) {
  try {
    const value = engine.evaluate(name, args);
    return value === null ? { sentence: 'no rate is found' } : { value };
  } catch (error) {
    if (error.name !== 'FinanceError') throw error;
    return { value: undefined, sentence: error.sentence };
  }
}

function answersOf(engine, flows, dated) {
  const amounts = flows.map(({ amount }) => amount);
  if (!dated) return [['IRR', 'per period, rows as they stand', answerOf(engine, 'IRR', { flows: amounts })]];
  const ordered = inOrder(flows);
  const answers = [['IRR', 'per row, in the order of their dates', answerOf(engine, 'IRR', { flows: ordered.map(({ amount }) => amount) })]];
  const xirr = { values: ordered.map(({ amount }) => amount), dates: ordered.map(({ date }) => date) };
  return [['XIRR', 'per year, by the dates', answerOf(engine, 'XIRR', xirr)], ...answers];
}

/** The earliest first; those of one day as they stand. */
const inOrder = (flows) => [...flows].sort((a, b) => a.date - b.date);

const placed = (flows, dated) => {
  const ordered = dated ? inOrder(flows) : flows;
  return ordered.map(({ date, amount }, i) => ({ at: dated ? (date - ordered[0].date) / YEAR : i, amount }));
};

// From a margin below the lowest rate to one above the highest.
function rangeOf(rates) {
  if (rates.length === 0) return [-0.5, 1];
  const [low, high] = [Math.min(...rates), Math.max(...rates)];
  const margin = Math.max(high - low, 0.2);
  return [Math.max(low - (1 + low) / 2, low - margin), Math.min(high + margin, Math.max(20, 2 * low))];
}

function showPicture(figure, flows, rates) {
  const [low, high] = rangeOf(rates.map(({ rate }) => rate));
  const points = Array.from({ length: POINTS }, (_, i) => low + ((high - low) * i) / (POINTS - 1)).map((rate) => [rate * 100, presentValue(flows, rate)]);
  const marks = rates.filter(({ rate }) => rate >= low && rate <= high).map(({ rate }) => ({ at: [rate * 100, 0], text: percentage(Number(rate.toPrecision(5))) }));
  draw(figure, {
    title: `The present value of the flows over the rate, 0 at ${marks.length === 0 ? 'no rate shown' : marks.map(({ text }) => text).join(' and ')}`,
    x: { label: 'rate in %', scale: 'number', range: [low * 100, high * 100] },
    y: {},
    series: [{ name: 'present value', points: clipped(points) }],
    marks,
    zero: true,
    read: (i) => `at ${percentage(points[i][0] / 100)} the flows are worth ${grouped(points[i][1])}`,
  });
}

// Near -100 % values grow beyond all others: what is more than some times the middle ones is left out.
function clipped(points) {
  const sizes = points.map(([, value]) => Math.abs(value)).sort((a, b) => a - b);
  const most = 20 * sizes[Math.floor(sizes.length / 2)];
  return points.map(([at, value]) => [at, Math.abs(value) <= most ? value : NaN]);
}

function showAnswers(parent, answers, rates) {
  const rowOf = ([name, what, { value, sentence }]) => [name, what, value === undefined ? sentence : digits(value), value === undefined ? '' : percentage(value)];
  showTable(tableRegion(parent, 'Answers'), ['calculation', 'rate', 'answer', 'in percent'], answers.map(rowOf));
  const first = answers[0];
  return rates.map(({ rate, falls }) => [percentage(rate), digits(rate), falls ? 'falls here' : 'rises here', Math.abs(rate - first[2].value) <= SAME * Math.max(1, Math.abs(rate)) ? first[0] : '']);
}

function show(element, engine, form) {
  const outcome = element.querySelector('.outcome');
  const status = element.querySelector('.understood');
  const fault = element.querySelector('.fault');
  outcome.replaceChildren();
  fault.textContent = '';
  form.elements.text.removeAttribute('aria-invalid');
  const read = readFlows(engine.reading, form.elements.text.value, { dates: form.elements.dates.value, decimal: form.elements.decimal.value });
  const { flows, faults } = read;
  if (faults.length > 0) {
    fault.textContent = faultsText(faults);
    form.elements.text.setAttribute('aria-invalid', 'true');
  }
  if (flows.length === 0) {
    status.textContent = form.elements.text.value.trim() === '' ? 'No rows yet.' : 'No row of these can be read: an amount, or a date and an amount, are wanted. Years have four digits.';
    return;
  }
  status.textContent = understood(read);
  if (faults.length === 0) showRates(outcome, engine, flows, read.dates !== null);
}

function showRates(outcome, engine, flows, dated) {
  const inTime = placed(flows, dated);
  const rates = ratesOf(inTime);
  const rows = showAnswers(outcome, answersOf(engine, flows, dated), rates);
  part(outcome, 'h3', { text: 'All rates' });
  part(outcome, 'p', { text: howMany(rates.length, changesOfSign(inTime)), name: 'count' });
  if (rates.length > 0) showTable(tableRegion(outcome, 'All rates'), [dated ? 'rate a year' : 'rate a period', 'all digits', 'the present value', 'found by'], rows);
  showPicture(part(outcome, 'figure', { name: 'picture' }), inTime, rates);
  const details = part(outcome, 'details');
  part(details, 'summary', { text: 'The flows as they were read' });
  const headings = ['line', dated ? 'date' : 'period', 'amount'];
  const rowOf = ({ line, date, amount }, i) => [String(line), dated ? isoOfDay(date) : String(i), digits(amount)];
  details.addEventListener('toggle', () => showManyRows(details, 'Flows', headings, flows.map(rowOf)), { once: true });
}

/** @param {HTMLElement} element of pages/flows.js */
export function attachFlows(element, engine) {
  const form = element.querySelector('form');
  form.addEventListener('submit', (event) => event.preventDefault());
  form.addEventListener('input', settled(() => show(element, engine, form), 150));
  show(element, engine, form);
}
