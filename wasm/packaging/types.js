// The types of the package, and in them the documentation of each function.
import { readFileSync } from 'node:fs';
import { declared, lowerCase, renamed } from './names.js';

const typesFile = (name) => readFileSync(new URL(`types/${name}`, import.meta.url), 'utf8');

const TYPE_OF_KIND = {
  number: 'number',
  'whole number': 'number',
  date: 'Day',
  'date (or part of a day)': 'Day',
  'day-count basis': 'Basis',
  flag: 'Flag',
  numbers: 'Numbers',
  dates: 'Days',
};

function typeOf({ kind }) {
  if (!(kind in TYPE_OF_KIND)) throw new Error(`there is no type for the kind '${kind}'`);
  return TYPE_OF_KIND[kind];
}

const isRequired = ({ need }) => need === 'required';
const nullable = (parameter) => (isRequired(parameter) ? typeOf(parameter) : `${typeOf(parameter)} | null`);
const resultOf = ({ result }) => (result === 'date' ? 'string | null' : 'number | null');
const argumentsName = ({ calculation }) => `${calculation[0]}${calculation.slice(1).toLowerCase()}Arguments`;

// Text in a comment, which it cannot end.
const inComment = (text) => text.replaceAll('*/', '*\\/');

function comment(lines, indent = '') {
  const inner = lines.flatMap((line) => line.split('\n')).map((line) => `${indent} * ${inComment(line)}`.trimEnd());
  return [`${indent}/**`, ...inner, `${indent} */`].join('\n');
}

function wordsOf(parameter) {
  const more = [parameter.unit, parameter.rule, parameter.default && `left out: ${parameter.default}`];
  return [parameter.meaning, ...more.filter(Boolean)].join('; ');
}

// A parameter may only have a question mark where none that needs a value follows it.
function inOrder(parameters) {
  const lastRequired = parameters.findLastIndex(isRequired);
  return parameters.map((parameter, i) => {
    const name = declared(parameter.name);
    if (i > lastRequired) return `${name}?: ${nullable(parameter)}`;
    return `${name}: ${nullable(parameter)}${isRequired(parameter) ? '' : ' | undefined'}`;
  });
}

const argumentsInterface = (calculation) =>
  [
    `/** What ${lowerCase(calculation)} takes by name. */`,
    `export interface ${argumentsName(calculation)} {`,
    ...calculation.arguments.flatMap((parameter) => [
      comment([wordsOf(parameter)], '  '),
      `  ${parameter.name}${isRequired(parameter) ? '' : '?'}: ${nullable(parameter)}${isRequired(parameter) ? '' : ' | undefined'};`,
    ]),
    '}',
  ].join('\n');

const documentation = (calculation) => [
  `${calculation.answers}.`,
  '',
  ...calculation.formula.split('\n').map((line) => `    ${line}`),
  '',
  ...(calculation.remarks === null ? [] : [calculation.remarks, '']),
  `No answer: ${calculation.failure}.`,
  '',
  ...calculation.arguments.map((parameter) => `@param ${declared(parameter.name)} ${wordsOf(parameter)}`),
  `@returns ${calculation.result === 'date' ? 'ISO date' : calculation.result}; null: a missing value`,
  `@throws {FinanceError} where there is no answer`,
  `@example finance ${calculation.calculation} ${calculation.example.arguments}`,
  calculation.example.result,
];

// Both forms of a call. before: 'export function pmt' or '  pmt'.
const signatures = (calculation, before, result) => [
  `${before}(${inOrder(calculation.arguments).join(', ')}): ${result};`,
  `${before}(args: ${argumentsName(calculation)}): ${result};`,
];

function functionTypes(calculation) {
  const [ordered, named] = signatures(calculation, `export function ${declared(lowerCase(calculation))}`, resultOf(calculation));
  return [comment(documentation(calculation)), ordered, `/** ${calculation.answers}. */`, named].join('\n');
}

export const indexTypes = (bases, calculations) =>
  [
    typesFile('values.d.ts').trimEnd(),
    '',
    '/** A day-count basis: its keyword or its code, 0 to 4 in this order. */',
    `export type Basis = ${bases.map((basis) => `'${basis}'`).join(' | ')} | (string & {}) | number;`,
    '',
    '/** The names of all calculations. */',
    `export type CalculationName =\n${calculations.map(({ calculation }) => `  | '${calculation}'`).join('\n')};`,
    '',
    ...calculations.flatMap((calculation) => [argumentsInterface(calculation), '', functionTypes(calculation), '']),
    `export { ${renamed(calculations).map((name) => `${declared(name)} as ${name}`).join(', ')} };`,
    '',
  ].join('\n');

export const inlineTypes = () => `// The same as the package itself, without a file to load.\nexport * from './index.js';\n`;

export const workerTypes = (calculations) =>
  [
    `import type { AnyName, Arguments, Columns, Rows, Value, Basis, Day, Days, Flag, Numbers } from './index.js';`,
    `import type {\n${calculations.map((calculation) => `  ${argumentsName(calculation)},`).join('\n')}\n} from './index.js';`,
    '',
    typesFile('worker.d.ts').trimEnd(),
    '',
    '/** Each calculation, in the other thread. */',
    'export interface AsyncCalculations {',
    ...calculations.flatMap((calculation) => [
      `  /** ${calculation.answers}. */`,
      ...signatures(calculation, `  ${lowerCase(calculation)}`, `Promise<${resultOf(calculation)}>`),
    ]),
    '}',
    '',
  ].join('\n');
