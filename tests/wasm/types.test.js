// The package's types and its manifest: tsc --strict on a file that uses every function, publint, arethetypeswrong.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { after, test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { catalogue, exampleInOrder, exampleOf, installed } from './packed.js';

const packed = installed();
after(packed.remove);

const programs = fileURLToPath(new URL('node_modules/.bin/', import.meta.url));
function run(program, ...words) {
  try {
    return execFileSync(join(programs, program), words, { cwd: packed.project, encoding: 'utf8', stdio: ['ignore', 'pipe', 'pipe'] });
  } catch ({ stdout, stderr }) {
    return assert.fail(`${program}: ${stdout}${stderr}`);
  }
}

function tsc(text, resolution) {
  const compilerOptions = { strict: true, noEmit: true, target: 'es2022', lib: ['es2022'], types: [], ...resolution };
  writeFileSync(join(packed.project, 'use.mts'), text);
  writeFileSync(join(packed.project, 'tsconfig.json'), JSON.stringify({ compilerOptions, files: ['use.mts'] }));
  run('tsc');
}

const written = (args) => args.map((arg) => JSON.stringify(arg)).join(', ');

// Each function in order and by name, in this thread and in another; then what must not compile.
const everyFunction = [
  "import * as finance from 'zelkovan';",
  "import * as inline from 'zelkovan/inline';",
  "import { startWorker } from 'zelkovan/worker';",
  'const worker = startWorker();',
  ...catalogue.calculations.flatMap((calculation, i) => {
    const name = calculation.calculation.toLowerCase();
    const type = `${calculation.result === 'date' ? 'string' : 'number'} | null`;
    const named = written([exampleOf(calculation)]);
    return [
      `const ordered${i}: ${type} = finance.${name}(${written(exampleInOrder(calculation))});`,
      `const named${i}: ${type} = inline.${name}(${named});`,
      `const late${i}: Promise<${type}> = worker.${name}(${named});`,
      `const byName${i}: number | string | null = finance.evaluate('${calculation.calculation}', ${named});`,
    ];
  }),
  "import { FinanceError, yield_, type PmtArguments, type Rows } from 'zelkovan';",
  'const loan: PmtArguments = { rate: 0.005, nper: 360, pv: 200000, type: true };',
  "const rows: Rows = finance.rows('PMT', { ...loan, nper: new Float64Array(3), pv: [1, null, 3] });",
  "finance.rows('IRR', { flows: [-100, [1, 2], new Float64Array(2)] });",
  'finance.pmt(0.005, 360, 200000, null, 1);',
  "finance.coupnum(new Date(), 23761, 2, 'ACTUAL');",
  "finance.xirr(new Float64Array(2), ['2024-01-01', new Date()], null);",
  'try { finance.pmt(loan); } catch (error) { if (error instanceof FinanceError) { const position: number | null = error.position; } }',
  'const maturities: string[] = finance.catalogue.calculations.map(({ example }) => example.result);',
  '// @ts-expect-error: too few',
  'finance.pmt(0.005, 360);',
  '// @ts-expect-error: too many',
  'finance.pmt(0.005, 360, 1, 2, 1, 3);',
  '// @ts-expect-error: a text where a number is wanted',
  "finance.pmt('0.005', 360, 1);",
  '// @ts-expect-error: no such argument',
  'finance.pmt({ rate: 0.005, nper: 360, pv: 1, guess: 1 });',
  '// @ts-expect-error: a required one is left out',
  'finance.pmt({ rate: 0.005, nper: null, pv: 1 });',
  '// @ts-expect-error: no list',
  'finance.irr(-100, 60, 60);',
  '// @ts-expect-error: no such calculation',
  "finance.evaluate('PMTX', []);",
  '// @ts-expect-error: a date is a text',
  "const date: number | null = finance.coupncd('2025-01-20', '2030-11-15', 2);",
  '',
].join('\n');

test('every function compiles under --strict, with either way of finding modules', () => {
  assert.equal(everyFunction.match(/^const ordered/gm).length, 54);
  tsc(everyFunction, { module: 'nodenext' });
  tsc(everyFunction, { module: 'esnext', moduleResolution: 'bundler' });
});

test('what does not fit does not compile', () => {
  assert.throws(() => tsc("import { pmt } from 'zelkovan';\npmt('0.005', 360, 1);\n", { module: 'nodenext' }), /error TS2/);
});

test('publint has nothing to say', () => {
  assert.match(run('publint', 'run', packed.tarball, '--strict'), /All good!/);
});

test('arethetypeswrong has nothing to say', () => {
  assert.doesNotMatch(run('attw', packed.tarball, '--profile', 'esm-only'), /💀|❌/);
});
