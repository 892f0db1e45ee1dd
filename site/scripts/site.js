// What every page of the site runs.
import documents from '@site/documents.js';
import { ownAddress } from './address.js';
import { attachForms } from './attach.js';
import { startEngine } from './engine.js';
import { attachSearch, entryOfCalculation, entryOfSection } from './search.js';
import { attachSkip } from './skip.js';
import { attachTheme } from './theme.js';

async function run() {
  attachTheme(document.querySelector('.theme'));
  attachSkip(document.querySelector('.skip'));
  const engine = await startEngine();
  attachSearch(document.querySelector('.search'), [
    ...engine.catalogue.calculations.map((calculation) => entryOfCalculation(calculation, `${calculation.calculation}.html`)),
    ...documents.map(entryOfSection),
  ]);
  const linkTo = (name, fragment) => `${name}.html#${fragment}`;
  const forms = attachForms(document, engine, ownAddress, linkTo);
  addEventListener('hashchange', () => forms.forEach((form) => form.reread()));
  document.documentElement.dataset.ready = '';
}

run();
