// The build that is tested.
import { readFileSync } from 'node:fs';
import { Core } from '../../wasm/javascript/core.js';

export const root = new URL('../../', import.meta.url);
export const module = new WebAssembly.Module(readFileSync(new URL('build/wasm/bin/core.wasm', root)));
export const newCore = () => new Core(new WebAssembly.Instance(module, {}));
