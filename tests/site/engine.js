// The calculations as the pages have them, from the builds that are tested.
import { Finance } from '../../wasm/javascript/finance.js';
import { Reading } from '../../wasm/javascript/reading.js';
import { bytesOf, newCoreWithSentences, root } from '../wasm/core.js';
import { catalogue } from '../wasm/packed.js';

export { catalogue, root };
export const native = (program) => new URL(`build/gcc.release/${program}`, root).pathname;

const finance = new Finance(newCoreWithSentences(), catalogue);
const reading = new Reading(new WebAssembly.Instance(new WebAssembly.Module(bytesOf('reading.wasm')), {}));

export const engine = {
  catalogue,
  reading,
  evaluate: (name, args) => finance.evaluate(name, args),
  rows: (name, columns) => finance.rows(name, columns),
};

export const calculationNamed = (name) => catalogue.calculations.find(({ calculation }) => calculation === name);
