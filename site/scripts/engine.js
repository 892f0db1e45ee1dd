// The calculations and the reading of texts, from the bytes that are built into the page.
import { catalogue, evaluate, rows, start } from '@zelkovan/library.js';
import calculations from '@zelkovan/wasm.js';
import { Reading } from '../../wasm/javascript/reading.js';
import reading from '@zelkovan/reading-wasm.js';

const bytesOf = (base64) => Uint8Array.from(atob(base64), (character) => character.charCodeAt(0));

/** @returns {Promise<{catalogue, evaluate, rows, reading}>} as wasm/javascript/library.js and reading.js have them */
export async function startEngine() {
  const [{ instance }] = await Promise.all([WebAssembly.instantiate(bytesOf(reading)), start(bytesOf(calculations))]);
  return { catalogue, evaluate, rows, reading: new Reading(instance) };
}
