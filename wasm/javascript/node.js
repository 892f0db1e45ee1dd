// The package in Node: zelkovan.wasm lies beside this file.
import { readFile } from 'node:fs/promises';
import { start } from './library.js';

await start(await readFile(new URL('./zelkovan.wasm', import.meta.url)));

export * from './functions.js';
