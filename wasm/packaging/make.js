// Makes the npm package in a folder: node wasm/packaging/make.js [BUILD_FOLDER], in BUILD_FOLDER/package from
// BUILD_FOLDER/bin/zelkovan.wasm. What it knows of the calculations is wasm/javascript/catalogue.json.
import { cpSync, mkdirSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { join, resolve } from 'node:path';
import { fileURLToPath } from 'node:url';
import { catalogueModule, functionsModule, wasmModule } from './modules.js';
import { manifest } from './manifest.js';
import { indexTypes, inlineTypes, workerTypes } from './types.js';

const root = fileURLToPath(new URL('../../', import.meta.url));
const build = resolve(process.argv[2] ?? join(root, 'build/wasm'));
const folder = join(build, 'package');
const javascript = join(root, 'wasm/javascript');

const version = /project\(zelkovan VERSION ([\d.]+)/.exec(readFileSync(join(root, 'CMakeLists.txt'), 'utf8'))[1];
const wasm = readFileSync(join(build, 'bin/zelkovan.wasm'));
const { bases, calculations } = JSON.parse(readFileSync(join(javascript, 'catalogue.json'), 'utf8'));

rmSync(folder, { recursive: true, force: true });
mkdirSync(folder, { recursive: true });
// Reading what is typed is the business of pages.
cpSync(javascript, folder, { recursive: true, filter: (file) => !file.endsWith('/reading.js') });
cpSync(join(root, 'wasm/packaging/README.md'), join(folder, 'README.md'));
cpSync(join(root, 'LICENSE'), join(folder, 'LICENSE'));

const files = {
  'package.json': `${JSON.stringify(manifest(version), null, 2)}\n`,
  'zelkovan.wasm': wasm,
  'wasm.js': wasmModule(wasm),
  'catalogue.js': catalogueModule({ bases, calculations }),
  'functions.js': functionsModule(calculations),
  'index.d.ts': indexTypes(bases, calculations),
  'inline.d.ts': inlineTypes(),
  'worker.d.ts': workerTypes(calculations),
};
for (const [name, content] of Object.entries(files)) writeFileSync(join(folder, name), content);
console.log(`${folder}: zelkovan ${version}, ${calculations.length} calculations`);
