// The calculations as the pages have them, from the builds that are tested.
import { readFileSync } from 'node:fs';
import { Core } from '../../wasm/javascript/core.js';
import { Finance } from '../../wasm/javascript/finance.js';
import { Reading } from '../../wasm/javascript/reading.js';

export const root = new URL('../../', import.meta.url);
export const native = (program) => new URL(`build/gcc.release/${program}`, root).pathname;

const instanceOf = (file) => new WebAssembly.Instance(new WebAssembly.Module(readFileSync(new URL(`build/wasm/bin/${file}`, root))), {});

export const catalogue = JSON.parse(readFileSync(new URL('wasm/javascript/catalogue.json', root), 'utf8'));
const finance = new Finance(new Core(instanceOf('zelkovan.wasm')), catalogue);

export const engine = {
  catalogue,
  reading: new Reading(instanceOf('reading.wasm')),
  evaluate: (name, args) => finance.evaluate(name, args),
  rows: (name, columns) => finance.rows(name, columns),
};

export const calculationNamed = (name) => catalogue.calculations.find(({ calculation }) => calculation === name);
