// What a page does: all calls of the corpus with core.wasm, fetched from the server of chromium.test.js.
import { Core } from '../../wasm/javascript/core.js';
import { callsIn, Comparison } from './corpus_lines.js';

async function fetched(path) {
  const response = await fetch(path);
  if (!response.ok) throw new Error(`${path}: ${response.status}`);
  return response;
}

/** @returns {{counts: object, differences: string[]}} as Comparison has them */
export async function compareCorpus(names) {
  const { instance } = await WebAssembly.instantiateStreaming(fetched('/build/wasm/bin/core.wasm'));
  const core = new Core(instance);
  const comparison = new Comparison();
  for (const name of names) {
    const text = await (await fetched(`/tests/corpus/${name}`)).text();
    for (const call of callsIn(text)) comparison.make(core, call);
  }
  return { ...comparison };
}
