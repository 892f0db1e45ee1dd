// The one instance behind all functions of the package: entries start it with the bytes of zelkovan.wasm.
import catalogue from './catalogue.js';
import { Core } from './core.js';
import { Finance } from './finance.js';
import { shortWay } from './short_way.js';

let finance;

/** @param {BufferSource} bytes of zelkovan.wasm; only the first time counts */
export async function start(bytes) {
  if (finance !== undefined) return;
  const { instance } = await WebAssembly.instantiate(bytes);
  if (finance !== undefined) return;
  const core = new Core(instance);
  finance = new Finance(core, catalogue, shortWay(core, catalogue));
}

export const evaluate = (name, args) => finance.evaluate(name, args);
export const rows = (name, columns) => finance.rows(name, columns);

/** A calculation as a function, which may be made before anything has started. */
export function functionOf(name) {
  let call;
  return (...args) => (call ??= finance.callOf(name))(args);
}

export { catalogue };
export { toDay, toISODate } from './dates.js';
export { FinanceError } from './errors.js';
