// What every page of the site runs.
import documents from '@site/documents.js';
import { ownAddress } from './address.js';
import { Calculator } from './calculator.js';
import { startEngine } from './engine.js';
import { attachFlows } from './flows.js';
import { attachSchedule } from './schedule_forms.js';
import { attachSearch, entryOfCalculation, entryOfSection } from './search.js';
import { attachTheme } from './theme.js';

async function run() {
  attachTheme(document.querySelector('.theme'));
  const engine = await startEngine();
  attachSearch(document.querySelector('.search'), [
    ...engine.catalogue.calculations.map((calculation) => entryOfCalculation(calculation, `${calculation.calculation}.html`)),
    ...documents.map(entryOfSection),
  ]);
  const linkTo = (name, fragment) => `${name}.html#${fragment}`;
  const calculation = document.querySelector('[data-calculation]');
  if (calculation) {
    const calculator = new Calculator(calculation, engine, ownAddress, linkTo);
    addEventListener('hashchange', () => calculator.reread());
  }
  for (const schedule of document.querySelectorAll('[data-schedule]')) attachSchedule(schedule, engine, ownAddress);
  for (const flows of document.querySelectorAll('.flows')) attachFlows(flows, engine);
  document.documentElement.dataset.ready = '';
}

run();
