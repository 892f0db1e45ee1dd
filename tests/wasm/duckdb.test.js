// docs/duckdb-wasm.md: its files run word for word, in Node and in Chromium, and its queries come to what is written below
// them. Expected of every function is the example of the catalogue, which the slow model in Python agrees with.
import assert from 'node:assert/strict';
import { execFile } from 'node:child_process';
import { existsSync, readFileSync, symlinkSync, writeFileSync } from 'node:fs';
import { createServer } from 'node:http';
import { join } from 'node:path';
import { after, test } from 'node:test';
import { fileURLToPath, pathToFileURL } from 'node:url';
import { promisify } from 'node:util';
import { Utf8 } from 'apache-arrow';
import { toISODate } from '../../wasm/javascript/dates.js';
import { root } from './core.js';
import { catalogue, exampleInOrder, exampleOf, installed, resultOf } from './packed.js';

const { CHROMIUM = '/usr/bin/chromium' } = process.env;
const DAYS_TO_1970 = 3653; // from 1960-01-01

const text = readFileSync(new URL('docs/duckdb-wasm.md', root), 'utf8');
const packed = installed();
after(packed.remove);

const files = [...text.matchAll(/`([\w-]+\.(?:js|html))`:\n\n```(?:js|html)\n(.*?)```/gs)].map(([, name, content]) => [name, content]);
for (const [name, content] of files) writeFileSync(join(packed.project, name), content);
for (const name of ['@duckdb', 'apache-arrow', 'flatbuffers', 'tslib'])
  symlinkSync(fileURLToPath(new URL(`node_modules/${name}`, import.meta.url)), join(packed.project, 'node_modules', name));

const { connection } = await import(pathToFileURL(join(packed.project, 'database.js')));
const rowsOf = (query) => connection.query(query).toArray().map((row) => Object.values(row.toJSON()));

test('the page has three files', () => {
  assert.deepEqual(files.map(([name]) => name), ['finance-functions.js', 'database.js', 'page.html']);
});

const literal = (value) => (Array.isArray(value) ? `[${value.map(literal).join(', ')}]` : typeof value === 'string' ? `'${value}'` : String(value));

test('every function answers its example, in order and by name, and answers dates', () => {
  let functions = 0;
  for (const calculation of catalogue.calculations) {
    const name = `fin_${calculation.calculation.toLowerCase()}`;
    const inOrder = exampleInOrder(calculation).map(literal);
    const named = Object.entries(exampleOf(calculation)).map(([parameter, value]) => `"${parameter}" := ${literal(value)}`);
    const column = calculation.result === 'date' ? (call) => `${call}::VARCHAR` : (call) => call;
    for (const args of [inOrder, named]) {
      const call = `${name}(${args.join(', ')})`;
      assert.deepEqual(rowsOf(`SELECT ${column(call)} AS value, typeof(${call}) AS type`), [[resultOf(calculation), calculation.result === 'date' ? 'DATE' : 'DOUBLE']], call);
    }
    ++functions;
  }
  assert.equal(functions, 54);
});

const shown = (value) => {
  if (value === null) return 'NULL';
  return typeof value === 'number' && value > 1e9 ? toISODate(value / 86_400_000 + DAYS_TO_1970) : String(value);
};

function saidTo(query) {
  try {
    return rowsOf(query).map((row) => row.map(shown).join(' | ')).join('\n');
  } catch ({ message }) {
    return message;
  }
}

test('queries come to what the page says', () => {
  const blocks = [...text.matchAll(/```sql\n(.*?)```/gs)].flatMap(([, block]) => block.trim().split('\n\n'));
  const said = blocks.map((block) => /^(.*?);\n(.*)$/s.exec(block).slice(1));
  for (const [query, expected] of said) assert.equal(saidTo(query), expected, query);
  assert.equal(said.length, 12);
});

test('many rows, of which some are missing', () => {
  // Level payments of 12000 over n periods at a rate that does not matter: SLN is 12000 / n.
  const rows = rowsOf('SELECT x, fin_sln(12000, 0, CASE WHEN x % 7 = 0 THEN NULL ELSE x END) FROM range(1, 10001) AS t(x) ORDER BY x');
  assert.equal(rows.length, 10_000);
  for (const [x, value] of rows) assert.equal(value, Number(x) % 7 === 0 ? null : 12000 / Number(x));
});

test('what the bindings cannot do', () => {
  for (const argument of ["DATE '2025-01-20'", '0.05', '1::BIGINT', '[1.5]', 'NULL'])
    assert.match(saidTo(`SELECT zelkovan_sln(${argument})`), /^Invalid Error: Unsupported UDF argument type/, argument);
  connection.createScalarFunction('word', new Utf8(), () => 'abc');
  assert.deepEqual(rowsOf('SELECT word(1) AS word'), [['\0\0\0']]);
});

const TYPES = { js: 'text/javascript', mjs: 'text/javascript', wasm: 'application/wasm', html: 'text/html' };

test('page.html in Chromium', { skip: !existsSync(CHROMIUM) && `no ${CHROMIUM}` }, async () => {
  const server = createServer(({ url }, response) => {
    const file = join(packed.project, url);
    const there = existsSync(file);
    response.writeHead(there ? 200 : 404, { 'content-type': TYPES[url.split('.').at(-1)] ?? 'text/plain' }).end(there ? readFileSync(file) : '');
  });
  await new Promise((listening) => server.listen(0, '127.0.0.1', listening));
  try {
    const words = ['--headless', '--disable-gpu', '--virtual-time-budget=60000', '--dump-dom', `http://127.0.0.1:${server.address().port}/page.html`];
    if (process.getuid() === 0) words.unshift('--no-sandbox'); // its own walls are not there for root
    const { stdout } = await promisify(execFile)(CHROMIUM, words, { timeout: 120_000 });
    assert.match(stdout, /<body>-1199\.1010503055047<\/body>/);
  } finally {
    server.close();
  }
});
