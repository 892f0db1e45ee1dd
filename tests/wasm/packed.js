// The package as npm packs it (build/wasm/package), installed in an empty project: nothing is asked of a registry.
import { execFileSync } from 'node:child_process';
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { fileURLToPath, pathToFileURL } from 'node:url';
import { root } from './core.js';

const npm = (cwd, ...words) => execFileSync('npm', words, { cwd, encoding: 'utf8', stdio: ['ignore', 'pipe', 'pipe'] });

/** The catalogue, which a test of its own compares with the C++ table. */
export const catalogue = JSON.parse(readFileSync(new URL('wasm/javascript/catalogue.json', root), 'utf8'));

/** @returns {{project: string, tarball: string, load(text: string): Promise<object>, remove(): void}} */
export function installed() {
  const project = mkdtempSync(join(tmpdir(), 'zelkovan-'));
  const tarball = npm(fileURLToPath(new URL('build/wasm/package/', root)), 'pack', '--silent', '--pack-destination', project).trim();
  writeFileSync(join(project, 'package.json'), '{ "private": true, "type": "module" }\n');
  npm(project, 'install', '--offline', '--no-audit', '--no-fund', `./${tarball}`);
  let modules = 0;
  return {
    project,
    tarball: join(project, tarball),
    /** Imports a module of that text, written into the project. */
    load(text) {
      const file = join(project, `module${++modules}.js`);
      writeFileSync(file, text);
      return import(pathToFileURL(file));
    },
    remove: () => rmSync(project, { recursive: true, force: true }),
  };
}

/** The example of a calculation as arguments by name: texts as they are, numbers, lists. */
export function exampleOf({ arguments: parameters, example }) {
  const read = (kind, text) => (kind.startsWith('date') || kind === 'day-count basis' ? text : Number(text));
  const given = example.arguments.split(' ').map((word) => {
    const [name, text] = word.split('=');
    const { kind } = parameters.find((parameter) => parameter.name === name);
    const values = text.split(',').map((value) => read(kind, value));
    return [name, kind === 'numbers' || kind === 'dates' ? values : values[0]];
  });
  return Object.fromEntries(given);
}

/** The same in order. */
export const exampleInOrder = (calculation) => {
  const named = exampleOf(calculation);
  return calculation.arguments.map(({ name }) => named[name]).slice(0, Object.keys(named).length);
};

export const resultOf = ({ result, example }) => (result === 'date' ? example.result : Number(example.result));
