// Flows from rows as people paste them.
//
//  (1) Fields stand between tabs, semicolons, commas or blanks, whichever reads most rows (flow_layout.js). Quotation marks
//      around a field go.
//  (2) Where nothing else is said, dates are tried as year-month-day, day-month-year, month-day-year, and as a sheet's serial
//      numbers where nothing else reads as a date; amounts with a decimal point, then with a comma.
//  (3) Rows above the first that can be read are titles where they have no digit. Any other that cannot be read is a fault,
//      and nothing is worked out.
//  (4) One line of amounts is a list of them.
import { amountsInLine, hasDigit, layoutsOf, readsBoth } from './flow_layout.js';

const SAMPLE = 60; // rows that decide

const sameValues = (a, b) => a.length === b.length && a.every(({ date, amount }, i) => date === b[i].date && amount === b[i].amount);

const fieldOf = (fields, column) => (column < 0 ? '' : (fields[column] ?? ''));

function readRows(lines, layout) {
  const [flows, faults, titles] = [[], [], []];
  for (const { text, number } of lines) {
    const fields = layout.split(text);
    const [date, amount] = [fieldOf(fields, layout.date), fieldOf(fields, layout.amount)];
    if (readsBoth(fields, layout)) {
      flows.push({ line: number, date: layout.date < 0 ? null : layout.readDate(date), amount: layout.readAmount(amount) });
    } else if (flows.length === 0 && faults.length === 0 && !hasDigit(date + amount)) {
      titles.push(number);
    } else {
      const isDate = layout.date >= 0 && layout.readDate(date) === undefined;
      faults.push({ line: number, what: isDate ? 'date' : 'amount', text: isDate ? date : amount });
    }
  }
  return { flows, faults, titles };
}

// What decides in the first rows need not hold for all of them.
function bestOf(lines, layouts) {
  const alike = layouts.filter(({ split }) => split === layouts[0].split);
  const results = alike.slice(0, 1).map((layout) => ({ layout, ...readRows(lines, layout) }));
  if (results[0].faults.length > 0) results.push(...alike.slice(1).map((layout) => ({ layout, ...readRows(lines, layout) })));
  return results.reduce((best, one) => (one.flows.length > best.flows.length ? one : best));
}

// Other forms that read all rows too, some of them as something else.
function alternatives(lines, layouts, { layout, flows, faults }) {
  if (faults.length > 0) return [];
  return layouts
    .filter((one) => one !== layout && one.split === layout.split && one.date === layout.date && one.amount === layout.amount)
    .filter((one) => {
      const other = readRows(lines, one);
      return other.faults.length === 0 && other.flows.length === flows.length && !sameValues(other.flows, flows);
    });
}

const NOTHING = { flows: [], faults: [], titles: [], dates: null, decimal: 'point', column: 0, otherColumns: [], otherDates: [], otherDecimal: false };

function ofOneLine(reading, { text, number }, decimals) {
  const list = amountsInLine(reading, text, decimals);
  return list && { ...NOTHING, decimal: list.decimal, flows: list.amounts.map((amount) => ({ line: number, date: null, amount })) };
}

/**
 * @param {object} reading of wasm/javascript/reading.js
 * @param {{dates?: string, decimal?: string}} said how they are written, where that is known
 * @returns {{flows: {line, date: number|null, amount}[], faults: {line, what, text}[], titles: number[], dates: string|null,
 *   decimal: string, column: number, otherColumns: number[], otherDates: string[], otherDecimal: boolean}} flows: as they
 *   stand, date: a day; titles: lines; column: of the amounts, 1 the first; otherColumns: that have numbers, too; otherDates:
 *   forms that read all dates as well, some as other days; otherDecimal: the same of the other decimal sign
 */
export function readFlows(reading, text, said = {}) {
  const lines = text.split(/\r\n|\r|\n/).map((one, i) => ({ text: one, number: i + 1 })).filter(({ text: one }) => one.trim() !== '');
  if (lines.length === 0) return NOTHING;
  const list = lines.length === 1 ? ofOneLine(reading, lines[0], said.decimal ? [said.decimal] : ['point', 'comma']) : undefined;
  if (list) return list;
  const layouts = layoutsOf(reading, lines.slice(0, SAMPLE).map((line) => line.text), said);
  if (layouts.length === 0) return { ...NOTHING, faults: [{ line: lines[0].number, what: 'amount', text: lines[0].text.trim() }] };
  const result = bestOf(lines, layouts);
  const { layout, flows, faults, titles } = result;
  const others = alternatives(lines, layouts, result);
  return {
    flows, faults, titles,
    dates: layout.date < 0 ? null : layout.dates,
    decimal: layout.decimal,
    column: layout.amount + 1,
    otherColumns: layout.otherNumbers.map((column) => column + 1),
    otherDates: layout.date < 0 ? [] : others.filter(({ decimal }) => decimal === layout.decimal).map(({ dates }) => dates),
    otherDecimal: others.some(({ dates, decimal }) => dates === layout.dates && decimal !== layout.decimal),
  };
}
