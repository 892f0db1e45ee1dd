// How pasted rows are laid out: what separates their fields, which column has dates, which amounts, how both are written.

const FORMS_OF_DATES = ['ymd', 'dmy', 'mdy'];
const SERIALS = [15_000, 80_000]; // of a sheet: 1941 to 2119

export const hasDigit = (text) => /\d/.test(text);
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

const AT_TABS = (line) => splitAt(line, /\t/);
const AT_SEMICOLONS = (line) => splitAt(line, /;/);
const AT_COMMAS = (line) => splitAt(line, /,/);
const OTHERS = [
  (line) => [unquoted(line)],
  (line) => around(line.indexOf(','), line), // 2021-03-01,-1,000.00
  AT_COMMAS,
  (line) => around(line.lastIndexOf(','), line),
  (line) => around(line.trim().search(/\s/), line.trim()), // 2021-03-01 -1 000.00
  (line) => around(/\s\S*$/.exec(line.trim())?.index ?? -1, line.trim()),
];

const most = (rows, holds) => 2 * rows.filter(holds).length > rows.length;

function splitsOf(rows) {
  if (most(rows, (row) => row.includes('\t'))) return [AT_TABS];
  return most(rows, (row) => row.includes(';')) ? [AT_SEMICOLONS] : OTHERS;
}

const readDate = (reading, form) => (text) => {
  const { value } = reading.read('date', text, { dates: form, loose: true });
  return typeof value === 'number' && Number.isInteger(value) ? value : undefined;
};

const readAmount = (reading, decimal) => (text) => {
  const { value } = reading.read('number', text, { loose: true, decimalComma: decimal === 'comma' });
  return typeof value === 'number' && Number.isFinite(value) ? value : undefined;
};

const isSerial = (text) => /^\d+$/.test(text) && Number(text) >= SERIALS[0] && Number(text) <= SERIALS[1];

function readerOfDates(reading, form, isSaid) {
  if (form === 'sheet' && !isSaid) return (text) => (isSerial(text) ? readDate(reading, 'sheet')(text) : undefined);
  return readDate(reading, form);
}

// ---- Columns

const columnsOf = (rows) => Array.from({ length: Math.max(...rows.map((fields) => fields.length)) }, (_, i) => rows.map((fields) => fields[i] ?? ''));

const counted = (values) => values.filter((value) => value !== undefined).length;

// Numbers of rows, periods, years: whole ones, each one more than that before.
const isCount = (values) => values.every((value, i) => i === 0 || value === undefined || values[i - 1] === undefined || value === values[i - 1] + 1);

// Flows have signs; else the column that reads most, counts of rows last.
function amountColumn(columns, read, but) {
  const rated = columns.map((texts, column) => {
    const values = texts.map(read);
    const count = column === but ? 0 : counted(values);
    return { column, count, signed: 2 * count >= texts.length && values.some((value) => value < 0), plain: !isCount(values) };
  });
  const [best] = rated.sort((a, b) => Number(b.signed) - Number(a.signed) || b.count - a.count || Number(b.plain) - Number(a.plain) || a.column - b.column);
  return best.count > 0 ? best.column : -1;
}

// The column in which most rows read; of several the first.
function dateColumn(columns, read) {
  const counts = columns.map((texts) => counted(texts.map(read)));
  const best = Math.max(...counts);
  return best > 0 ? counts.indexOf(best) : -1;
}

// What stands where a date would, and is none that reads: digits, and no amount, unless dates are said to be there.
function unreadDates(columns, layout, isSaid) {
  return columns.findIndex((texts, column) => {
    if (column === layout.amount) return false;
    return most(texts, (text) => hasDigit(text) && (isSaid || layout.readAmount(text) === undefined));
  });
}

export const readsBoth = (fields, layout) =>
  (layout.date < 0 || layout.readDate(fields[layout.date] ?? '') !== undefined) && layout.readAmount(fields[layout.amount] ?? '') !== undefined;

function layoutOf(reading, rows, split, dates, decimal, isSaid) {
  const layout = { split, dates, decimal, readDate: readerOfDates(reading, dates, isSaid), readAmount: readAmount(reading, decimal) };
  const fields = rows.map(split);
  const columns = columnsOf(fields);
  layout.date = dateColumn(columns, layout.readDate);
  layout.amount = amountColumn(columns, layout.readAmount, layout.date);
  if (layout.amount < 0) return undefined;
  if (layout.date < 0) layout.date = unreadDates(columns, layout, isSaid);
  layout.count = fields.filter((row) => readsBoth(row, layout)).length;
  const used = [layout.date, layout.amount];
  layout.otherNumbers = columns.flatMap((texts, i) => (!used.includes(i) && most(texts, (text) => layout.readAmount(text) !== undefined) ? [i] : []));
  return layout;
}

// Dates, where they can be read; then most rows; else the first that was tried.
const isDated = ({ date, count }) => date >= 0 && count > 0;
const better = (a, b) => Number(isDated(b)) - Number(isDated(a)) || b.count - a.count || Number(b.date >= 0) - Number(a.date >= 0);

/**
 * Ways to read rows, the best first.
 * @param {string[]} rows @param {{dates?: string, decimal?: string}} said how they are written, where that is known
 * @returns {{split, dates, decimal, date: number, amount: number, otherNumbers: number[], count, readDate, readAmount}[]}
 *   date, amount: columns, date -1 without one; otherNumbers: columns of numbers that are neither; count: rows that read
 */
export function layoutsOf(reading, rows, { dates, decimal }) {
  const forms = dates ? [dates] : [...FORMS_OF_DATES, 'sheet'];
  const decimals = decimal ? [decimal] : ['point', 'comma'];
  const found = [];
  for (const split of splitsOf(rows))
    for (const form of forms) for (const sign of decimals) found.push(layoutOf(reading, rows, split, form, sign, Boolean(dates)));
  return found.filter((layout) => layout !== undefined).sort(better);
}

/** Several amounts in one line; undefined: it is something else. */
export function amountsInLine(reading, line, decimals) {
  for (const decimal of decimals) {
    const read = readAmount(reading, decimal);
    if (read(unquoted(line)) !== undefined) return undefined;
    for (const split of [AT_TABS, AT_SEMICOLONS, AT_COMMAS, (text) => text.trim().split(/\s+/)]) {
      const amounts = split(line).map(read);
      if (amounts.length > 1 && amounts.every((amount) => amount !== undefined)) return { decimal, amounts };
    }
  }
  return undefined;
}
