// Makes the site in a folder: node site/make.js [BUILD_FOLDER], in BUILD_FOLDER/site from BUILD_FOLDER/package, the catalogue
// and docs/. Pages are files that need no server: script and style stand beside them, the calculations are in the script.
// zelkovan.html is all calculators in one file.
import { createHash } from 'node:crypto';
import { mkdirSync, readdirSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { join, resolve } from 'node:path';
import { fileURLToPath } from 'node:url';
import { wasmModule } from '../wasm/packaging/modules.js';
import { bundle } from './bundle.js';
import { calculationPage } from './pages/calculation.js';
import { documentList, documentPage, LEADS, readDocument } from './pages/document.js';
import { flowsPage } from './pages/flows.js';
import { frame } from './pages/frame.js';
import { homePage } from './pages/home.js';
import { html, raw } from './pages/html.js';
import { schedulesPage } from './pages/schedules.js';

const site = fileURLToPath(new URL('.', import.meta.url));
const root = resolve(site, '..');
const build = resolve(process.argv[2] ?? join(root, 'build/wasm'));
const folder = join(build, 'site');
const made = join(build, 'site-modules');

const catalogue = JSON.parse(readFileSync(join(build, 'package/catalogue.json'), 'utf8'));
const style = readFileSync(join(site, 'style/site.css'), 'utf8');

// ---- The pages of docs

const names = Object.keys(LEADS);
const documents = names.map((name) => readDocument(name, readFileSync(join(root, 'docs', `${name}.md`), 'utf8'), new Set(names)));

const sections = documents.flatMap(({ name, title, headings }) =>
  headings.map((heading) => ({
    address: `${name}.html${heading.slug === '' ? '' : `#${heading.slug}`}`,
    name: title,
    title: heading.slug === '' ? '' : heading.title,
    words: heading.words,
  })));

// ---- Scripts

rmSync(folder, { recursive: true, force: true });
mkdirSync(folder, { recursive: true });
mkdirSync(made, { recursive: true });
const reading = readFileSync(join(build, 'bin/reading.wasm'));
writeFileSync(join(made, 'documents.js'), `export default ${JSON.stringify(sections)};\n`);
writeFileSync(join(made, 'reading-wasm.js'), wasmModule(reading));
const script = await bundle(join(site, 'scripts/site.js'), { made, package: join(build, 'package') });
const offline = await bundle(join(site, 'scripts/offline.js'), { made, package: join(build, 'package') });

// ---- Pages

const NOTHING_ELSE = "default-src 'none'; base-uri 'none'; form-action 'none'; img-src data:";
const hashOf = (text) => `'sha256-${createHash('sha256').update(text).digest('base64')}'`;

const beside = {
  head: html`<link rel="stylesheet" href="site.css">\n<script defer src="site.js"></script>`,
  policy: `${NOTHING_ELSE}; style-src 'self' file:; script-src 'self' file: 'wasm-unsafe-eval'`,
};
const within = {
  head: html`<style>${raw(style)}</style>`,
  policy: `${NOTHING_ELSE}; style-src ${hashOf(style)}; script-src ${hashOf(offline)} 'wasm-unsafe-eval'`,
};

const write = (file, page, how = beside) => writeFileSync(join(folder, file), frame({ file, ...how, ...page }).text);

write('index.html', {
  title: 'zelkovan: financial calculations',
  description: 'Bonds, loans, internal rates, depreciation: calculated as you type, in this page.',
  content: homePage(catalogue.calculations),
});
for (const calculation of catalogue.calculations) {
  const name = calculation.calculation;
  write(`${name}.html`, { title: `${name}: ${calculation.answers}`, description: `${calculation.answers}.`, content: calculationPage(calculation, catalogue.bases) });
}
write('schedules.html', { title: 'Schedules: loans and depreciation', description: 'Payments of a loan, methods of depreciation side by side.', content: schedulesPage(catalogue) });
write('flows.html', { title: 'Paste your flows: all their rates', description: 'IRR, XIRR and all rates of flows from a sheet.', content: flowsPage });
write('docs.html', { title: 'Docs', description: 'How to use the calculations, and how they work.', content: documentList(documents) });
for (const document of documents) write(`${document.name}.html`, { title: document.title, description: document.lead, content: documentPage(document) });

writeFileSync(join(folder, 'site.css'), style);
writeFileSync(join(folder, 'site.js'), script);
const inOneFile = { title: 'zelkovan: financial calculations', description: 'All calculators in one file.', content: html`<noscript><p>This page needs JavaScript.</p></noscript>` };
const page = frame({ file: 'zelkovan.html', ...within, ...inOneFile }).text.replace('</body>', () => `<script>${offline}</script>\n</body>`);
writeFileSync(join(folder, 'zelkovan.html'), page);
console.log(`${folder}: ${readdirSync(folder).length} files`);
