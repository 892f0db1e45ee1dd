// The builds that are tested.
import { readFileSync } from 'node:fs';
import { Core } from '../../wasm/javascript/core.js';

export const root = new URL('../../', import.meta.url);
export const bytesOf = (file) => readFileSync(new URL(`build/wasm/bin/${file}`, root));
export const module = new WebAssembly.Module(bytesOf('core.wasm'));
export const newCore = () => new Core(new WebAssembly.Instance(module, {}));
export const moduleWithSentences = new WebAssembly.Module(bytesOf('zelkovan.wasm'));
export const newCoreWithSentences = () => new Core(new WebAssembly.Instance(moduleWithSentences, {}));
