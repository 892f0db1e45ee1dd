// The corpus in Node.
import { execFileSync } from 'node:child_process';
import { readdirSync } from 'node:fs';
import { root } from './core.js';
import { callsIn } from './corpus_lines.js';

export { callOf, sameResult } from './corpus_lines.js';

const folder = new URL('tests/corpus/', root);

export const names = readdirSync(folder)
  .filter((file) => file.endsWith('.tsv.xz'))
  .map((file) => file.slice(0, -'.tsv.xz'.length));

/** The lines of a calculation. */
export function linesOf(name) {
  const file = new URL(`${name}.tsv.xz`, folder);
  return execFileSync('xz', ['--decompress', '--stdout', file.pathname], { maxBuffer: 1 << 28 }).toString();
}

export const callsOf = (name) => callsIn(linesOf(name));
