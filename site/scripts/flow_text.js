// Rows of flows as people paste them: which column has dates, which amounts, and how both are written.
//
//  (1) Fields stand between tabs, semicolons, commas or blanks, whichever reads most rows. Quotation marks around a field go.
//  (2) Where nothing else is said, dates are tried as year-month-day, day-month-year, month-day-year, and as a sheet's serial
//      numbers where nothing else reads as a date; amounts with a decimal point, then with a comma.
//  (3) Rows above the first that can be read are titles. Any other that cannot be read is a fault, and nothing is worked out.

const SAMPLE = 60; // rows that decide
const FORMS_OF_DATES = ['ymd', 'dmy', 'mdy'];
const SERIALS = [15_000, 80_000]; // 1941 to 2119

const unquoted = (field) => field.trim().replace(/^(["'])(.*)\1$/, '$2').trim();

// Quotation marks keep what they enclose together.
function splitAt(line, separator) {
  const fields = [];
  let [field, quote] = ['', ''];
  for (const character of line) {
    if (quote !== '') {
      if (character === quote) quote = '';
    } else if (character === '"') quote = character;
    if (quote === '' && separator.test(character)) {
      fields.push(field);
      field = '';
    } else field += character;
  }
  return [...fields, field].map(unquoted);
}

const around = (index, line) => (index < 0 ? [line] : [line.slice(0, index), line.slice(index + 1)]).map(unquoted);

const SPLITS = [
  (line) => splitAt(line, /\t/),
  (line) => splitAt(line, /;/),
  (line) => around(line.indexOf(','), line), // 2021-03-01,-1,000.00
  (line) => splitAt(line, /,/),
  (line) => around(line.lastIndexOf(','), line),
  (line) => around(line.trim().search(/\s/), line.trim()), // 2021-03-01 -1 000.00
  (line) => around(/\s\S*$/.exec(line.trim())?.index ?? -1, line.trim()),
  (line) => [unquoted(line)],
];

const readDate = (reading, form) => (text) => {
  const { value } = reading.read('date', text, { dates: form, loose: true });
  return typeof value === 'number' && Number.isInteger(value) ? value : undefined;
};

const readAmount = (reading, decimal) => (text) => {
  const { value } = reading.read('number', text, { loose: true, decimalComma: decimal === 'comma' });
  return typeof value === 'number' && Number.isFinite(value) ? value : undefined;
};

const isSerial = (text) => /^\d+$/.test(text) && Number(text) >= SERIALS[0] && Number(text) <= SERIALS[1];

function readerOfDates(reading, form, fixed) {
  if (form === 'sheet' && !fixed) return (text) => (isSerial(text) ? readDate(reading, 'sheet')(text) : undefined);
  return readDate(reading, form);
}

// The column in which most rows read; of several the first.
function bestColumn(rows, read, but) {
  const width = Math.max(...rows.map((fields) => fields.length));
  let best = { column: -1, count: 0 };
  for (let column = 0; column < width; ++column) {
    if (column === but) continue;
    const count = rows.filter((fields) => fields[column] !== undefined && read(fields[column]) !== undefined).length;
    if (count > best.count) best = { column, count };
  }
  return best;
}

const readsBoth = (fields, layout) =>
  (layout.date < 0 || layout.readDate(fields[layout.date] ?? '') !== undefined) && layout.readAmount(fields[layout.amount] ?? '') !== undefined;

function layoutOf(reading, rows, split, dates, decimal, fixed) {
  const layout = { split, dates, decimal, readDate: readerOfDates(reading, dates, fixed), readAmount: readAmount(reading, decimal) };
  const fields = rows.map(split);
  const date = bestColumn(fields, layout.readDate, -1);
  const amount = bestColumn(fields, layout.readAmount, date.count > 0 ? date.column : -1);
  if (amount.count === 0) return undefined;
  Object.assign(layout, { date: date.count > 0 ? date.column : -1, amount: amount.column });
  const dated = date.count > 0 && 2 * date.count >= amount.count;
  return { ...layout, dated, count: fields.filter((row) => readsBoth(row, layout)).length };
}

function layouts(reading, rows, { dates, decimal }) {
  const forms = dates ? [dates] : [...FORMS_OF_DATES, 'sheet'];
  const decimals = decimal ? [decimal] : ['point', 'comma'];
  const found = [];
  for (const split of SPLITS)
    for (const form of forms) for (const sign of decimals) found.push(layoutOf(reading, rows, split, form, sign, Boolean(dates)));
  return found.filter((layout) => layout !== undefined);
}

// Rows with dates rather than without, though some may be faulty; then most rows; else the first that was tried.
const better = (a, b) => Number(b.dated) - Number(a.dated) || b.count - a.count;

const sameValues = (a, b) => a.length === b.length && a.every(({ date, amount }, i) => date === b[i].date && amount === b[i].amount);

function readRows(lines, layout) {
  const [flows, faults] = [[], []];
  for (const { text, number } of lines) {
    const fields = layout.split(text);
    if (readsBoth(fields, layout)) {
      flows.push({ line: number, date: layout.date < 0 ? null : layout.readDate(fields[layout.date]), amount: layout.readAmount(fields[layout.amount]) });
    } else if (flows.length > 0) {
      const dateFaulty = layout.date >= 0 && layout.readDate(fields[layout.date] ?? '') === undefined;
      faults.push({ line: number, what: dateFaulty ? 'date' : 'amount', text: fields[dateFaulty ? layout.date : layout.amount] ?? '' });
    }
  }
  return { flows, faults };
}

/**
 * @param {object} reading of wasm/javascript/reading.js
 * @param {{dates?: string, decimal?: string}} said how they are written, where that is known
 * @returns {{flows: {line, date: number|null, amount}[], faults: {line, what, text}[], dates: string|null, decimal: string,
 *   otherDates: string[], otherDecimal: boolean}} flows: as they stand, date: a day; otherDates: forms that read all dates
 *   too, as other days; otherDecimal: whether the other decimal sign would read all amounts, some as others
 */
export function readFlows(reading, text, said = {}) {
  const lines = text.split(/\r?\n/).map((one, i) => ({ text: one, number: i + 1 })).filter(({ text: one }) => one.trim() !== '');
  const nothing = { flows: [], faults: [], dates: null, decimal: said.decimal || 'point', otherDates: [], otherDecimal: false };
  const rows = lines.slice(0, SAMPLE).map((line) => line.text);
  const found = rows.length === 0 ? [] : layouts(reading, rows, said).sort(better);
  if (found.length === 0) return nothing;
  const [chosen] = found;
  const result = readRows(lines, chosen);
  const others = found.filter((one) => one.split === chosen.split && one.count === chosen.count && one.date === chosen.date && one.amount === chosen.amount);
  const differs = (one) => {
    const other = readRows(lines, one);
    return other.faults.length === 0 && other.flows.length === result.flows.length && !sameValues(other.flows, result.flows);
  };
  return {
    ...result,
    dates: chosen.date < 0 ? null : chosen.dates,
    decimal: chosen.decimal,
    otherDates: chosen.date < 0 ? [] : others.filter((one) => one.decimal === chosen.decimal && one.dates !== chosen.dates && differs(one)).map((one) => one.dates),
    otherDecimal: others.some((one) => one.dates === chosen.dates && one.decimal !== chosen.decimal && differs(one)),
  };
}
