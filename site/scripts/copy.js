// The same call as it is typed in a shell, in SQL, in Python and in JavaScript.
import { isBasis, isDated, isList, isOptional } from '../pages/parameters.js';
import { declared, lowerCase } from '../../wasm/packaging/names.js';
import { isoOfDay } from './days.js';
import { copyButton, part } from './elements.js';
import { digits } from './values.js';

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
  return `SELECT fin_${lowerCase(calculation)}(${args.join(', ')});`;
}

// Dates are texts there, and lists rows.
function sqlite(calculation, values) {
  const lists = calculation.arguments.filter(isList);
  const column = ({ name }) => `"${name}"`;
  const args = inOrder(calculation, values).map(([parameter, value]) => (isList(parameter) ? column(parameter) : literal(parameter, value, 'NULL')));
  const call = `SELECT fin_${lowerCase(calculation)}(${args.join(', ')})`;
  if (lists.length === 0) return `${call};`;
  const rows = values[lists[0].name].map((_, i) => `(${lists.map((parameter) => literal(parameter, values[parameter.name][i], 'NULL')).join(', ')})`);
  return `WITH flow(${lists.map(column).join(', ')}) AS (VALUES ${rows.join(', ')})\n${call} FROM flow;`;
}

const listed = (parameter, value, missing) =>
  isList(parameter) ? `[${value.map((one) => literal(parameter, one, missing)).join(', ')}]` : literal(parameter, value, missing);

function python(calculation, values) {
  const args = given(calculation, values).map(([parameter, value]) => `${declared(parameter.name)}=${listed(parameter, value, 'None')}`);
  return `import zelkovan\nzelkovan.${declared(lowerCase(calculation))}(${args.join(', ')})`;
}

function javascript(calculation, values) {
  const called = declared(lowerCase(calculation));
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

function addSnippet(parent, [where, text]) {
  const made = part(parent, 'div', { name: 'snippet' });
  part(made, 'h3', { text: where });
  copyButton(made, 'Copy', () => text).setAttribute('aria-label', `Copy for ${where}`);
  part(made, 'pre', { text }).tabIndex = 0;
}

/** Shows them. @param {object|null} values null: there is no such call */
export function showCopies(element, calculation, texts, values) {
  element.hidden = values === null;
  const snippets = element.querySelector('.snippets');
  snippets.replaceChildren();
  if (values !== null) for (const copy of copiesOf(calculation, texts, values)) addSnippet(snippets, copy);
}
