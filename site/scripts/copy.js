// The same call as it is typed in a shell, in SQL, in Python and in JavaScript.
import { isBasis, isDated, isList, isOptional } from '../pages/parameters.js';
import { copyText } from './form.js';
import { digits, Unreadable, valuesOf } from './values.js';
import { isoOfDay } from './days.js';

// What languages keep for themselves.
const IN_PYTHON = { yield: 'yield_' };
const IN_JAVASCRIPT = { yield: 'yield_' };

const quoted = (text) => `'${text.replace(/'/g, "''")}'`;
const inShell = (text) => (/^[\w.,:;%+/=@-]*$/.test(text) ? text : `'${text.replace(/'/g, "'\\''")}'`);

function literal(parameter, value, missing) {
  if (Number.isNaN(value)) return missing;
  if (isDated(parameter) && Number.isInteger(value)) return quoted(isoOfDay(value) ?? digits(value));
  return typeof value === 'string' ? quoted(value) : digits(value);
}

// Given arguments: as [parameter, value], what is left out at the end or has a default left out where names are used.
const given = (calculation, values) =>
  calculation.arguments.map((parameter) => [parameter, values[parameter.name]]).filter(([, value]) => value !== null);

// What was typed, of a list its values.
function typed(parameter, text, value) {
  if (!isList(parameter)) return text.trim();
  return value === null ? '' : value.map((one) => inCall(parameter, one)).join(',');
}

function inCall(parameter, value) {
  if (Number.isNaN(value)) return '.';
  return isDated(parameter) ? (isoOfDay(value) ?? digits(value)) : digits(value);
}

function shell(calculation, texts, values) {
  const words = calculation.arguments
    .map((parameter) => [parameter.name, typed(parameter, texts[parameter.name] ?? '', values[parameter.name])])
    .filter(([, text]) => text !== '')
    .map(([name, text]) => inShell(`${name}=${text}`));
  return ['finance', calculation.calculation, ...words].join(' ');
}

// Arguments in order: what is left out before another one is what it then is.
function inOrder(calculation, values) {
  const all = calculation.arguments.map((parameter) => [parameter, values[parameter.name]]);
  while (all.length > 0 && all.at(-1)[1] === null) all.pop();
  return all.map(([parameter, value]) => [parameter, value ?? defaultOf(parameter)]);
}

function defaultOf(parameter) {
  if (isBasis(parameter)) return parameter.default;
  return isOptional(parameter) && parameter.default !== 'none' ? Number(parameter.default) : NaN;
}

const array = (parameter, values) =>
  `ARRAY[${values.map((value) => literal(parameter, value, 'NULL')).join(', ')}]${parameter.kind === 'dates' ? '::date[]' : ''}`;

// Where texts are no dates, these are said to be.
const typedLiteral = (parameter, value) => `${isDated(parameter) && Number.isInteger(value) ? 'DATE ' : ''}${literal(parameter, value, 'NULL')}`;

function sql(calculation, values) {
  const args = inOrder(calculation, values).map(([parameter, value]) =>
    isList(parameter) ? array(parameter, value ?? []) : typedLiteral(parameter, value));
  return `SELECT fin_${calculation.calculation.toLowerCase()}(${args.join(', ')});`;
}

// Dates are texts there, and lists rows.
function sqlite(calculation, values) {
  const lists = calculation.arguments.filter(isList);
  const name = `fin_${calculation.calculation.toLowerCase()}`;
  if (lists.length === 0) return `SELECT ${name}(${inOrder(calculation, values).map(([parameter, value]) => literal(parameter, value, 'NULL')).join(', ')});`;
  const rows = (values[lists[0].name] ?? []).map((_, i) => `(${lists.map((parameter) => literal(parameter, values[parameter.name][i], 'NULL')).join(', ')})`);
  const column = ({ name }) => `"${name}"`;
  const args = inOrder(calculation, values).map(([parameter, value]) => (isList(parameter) ? column(parameter) : literal(parameter, value, 'NULL')));
  return `WITH flow(${lists.map(column).join(', ')}) AS (VALUES ${rows.join(', ')})\nSELECT ${name}(${args.join(', ')}) FROM flow;`;
}

const listed = (parameter, value, missing) =>
  isList(parameter) ? `[${value.map((one) => literal(parameter, one, missing)).join(', ')}]` : literal(parameter, value, missing);

function python(calculation, values) {
  const name = calculation.calculation.toLowerCase();
  const args = given(calculation, values).map(([parameter, value]) => `${IN_PYTHON[parameter.name] ?? parameter.name}=${listed(parameter, value, 'None')}`);
  return `import zelkovan\nzelkovan.${IN_PYTHON[name] ?? name}(${args.join(', ')})`;
}

function javascript(calculation, values) {
  const name = calculation.calculation.toLowerCase();
  const called = IN_JAVASCRIPT[name] ?? name;
  const args = given(calculation, values).map(([parameter, value]) => `${parameter.name}: ${listed(parameter, value, 'NaN')}`);
  return `import { ${called} } from 'zelkovan';\n${called}({ ${args.join(', ')} });`;
}

// One for all engines, where they agree.
function inSQL(calculation, values) {
  const [typed, bare] = [sql(calculation, values), sqlite(calculation, values)];
  return typed === bare ? [['SQL', typed]] : [['SQL (PostgreSQL, DuckDB)', typed], ['SQL (SQLite)', bare]];
}

/**
 * @param {object} calculation of the catalogue @param {object} texts by name @param {object} values by name, as
 *   valuesOf of scripts/values.js gives them
 * @returns {[string, string][]} where, and what is typed there
 */
export function copiesOf(calculation, texts, values) {
  const lists = calculation.arguments.filter(isList);
  const empty = lists.some(({ name }) => values[name] === null);
  const endless = Object.values(values).flat().some((value) => Math.abs(value) === Infinity); // languages write it in ways of their own
  if (endless) return [['Shell', shell(calculation, texts, values)]];
  return [
    ['Shell', shell(calculation, texts, values)],
    ...(empty ? [] : inSQL(calculation, values)),
    ['Python', python(calculation, values)],
    ['JavaScript', javascript(calculation, values)],
  ];
}

function snippet([where, text]) {
  const part = document.createElement('div');
  part.className = 'snippet';
  const title = document.createElement('h3');
  title.textContent = where;
  const button = document.createElement('button');
  button.type = 'button';
  button.textContent = 'Copy';
  button.setAttribute('aria-label', `Copy for ${where}`);
  button.addEventListener('click', () => copyText(text, button));
  const code = document.createElement('pre');
  code.tabIndex = 0;
  code.textContent = text;
  part.append(title, button, code);
  return part;
}

/** Shows them, unless the call is refused or what stands in the fields cannot be read. */
export function showCopies(element, calculation, texts, reading, refused) {
  let copies = [];
  try {
    if (!refused) copies = copiesOf(calculation, texts, valuesOf(reading, calculation.arguments, texts));
  } catch (error) {
    if (!(error instanceof Unreadable)) throw error;
  }
  element.hidden = copies.length === 0;
  element.querySelector('.snippets').replaceChildren(...copies.map(snippet));
}
