// The package without a file to load: zelkovan.wasm is within.
import { start } from './library.js';
import base64 from './wasm.js';

await start(Uint8Array.from(atob(base64), (character) => character.charCodeAt(0)));

export * from './functions.js';
