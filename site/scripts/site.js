// What every page of the site runs.
import documents from '@site/documents.js';
import { ownAddress } from './address.js';
import { Calculator } from './calculator.js';
import { startEngine } from './engine.js';
import { attachFlows } from './flows.js';
import { attachSchedule } from './schedule_forms.js';
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
  const all = (selector, attach) => [...document.querySelectorAll(selector)].map(attach);
  const forms = [
    ...all('[data-calculation]', (element) => new Calculator(element, engine, ownAddress, linkTo)),
    ...all('[data-schedule]', (element) => attachSchedule(element, engine, ownAddress)),
  ];
  addEventListener('hashchange', () => forms.forEach((form) => form.reread()));
  for (const flows of document.querySelectorAll('.flows')) attachFlows(flows, engine);
  document.documentElement.dataset.ready = '';
}

run();
