// The page of all calculators in one file: which one is shown stands in the fragment, "#PRICE?rate=0.05".
import { calculationPage } from '../pages/calculation.js';
import { flowsPage } from '../pages/flows.js';
import { calculationList } from '../pages/home.js';
import { html } from '../pages/html.js';
import { schedulesPage } from '../pages/schedules.js';
import { addressBelow } from './address.js';
import { Calculator } from './calculator.js';
import { startEngine } from './engine.js';
import { attachFlows } from './flows.js';
import { attachSchedule } from './schedule_forms.js';
import { attachSearch, entryOfCalculation } from './search.js';
import { attachTheme } from './theme.js';

const PAGE = /^(\w+)\.html(?:#(.*))?$/;
const content = document.querySelector('main');

async function run() {
  attachTheme(document.querySelector('.theme'));
  const engine = await startEngine();
  const { calculations, bases } = engine.catalogue;
  const inPage = (name) => `#${name}`;
  const home = () => html`<h1>${calculations.length} financial calculations</h1>
    <p class="lead">All calculators in this one file: keep it, it needs nothing else.</p>${calculationList(calculations, inPage)}`;
  let shown;

  function show() {
    const name = location.hash.slice(1).split('?')[0];
    if (name === 'content') return;
    if (name === shown?.name) return void shown.calculator?.reread();
    const calculation = calculations.find((one) => one.calculation === name);
    const page = { schedules: () => schedulesPage(engine.catalogue), flows: () => flowsPage }[name] ?? home;
    content.innerHTML = (calculation ? calculationPage(calculation, bases) : page()).text;
    document.title = calculation ? `${name}: ${calculation.answers}` : 'zelkovan: financial calculations';
    shown = { name, calculator: calculation && new Calculator(content.querySelector('article'), engine, addressBelow(name), linkTo) };
    for (const schedule of content.querySelectorAll('[data-schedule]')) attachSchedule(schedule, engine, addressBelow(name));
    for (const flows of content.querySelectorAll('.flows')) attachFlows(flows, engine);
    keepWithin(content);
    scrollTo(0, 0);
  }

  attachSearch(document.querySelector('.search'), calculations.map((calculation) => entryOfCalculation(calculation, inPage(calculation.calculation))));
  keepWithin(document.querySelector('header'));
  addEventListener('hashchange', show);
  show();
  document.documentElement.dataset.ready = '';
}

const linkTo = (name, fragment) => `#${name}?${fragment}`;

// Pages link to each other as files; here all of them are this one. What is not in it is no link.
function keepWithin(element) {
  for (const link of element.querySelectorAll('a[href]')) {
    const [, name, fragment] = PAGE.exec(link.getAttribute('href')) ?? [];
    if (name === 'docs') link.remove();
    else if (name !== undefined) link.setAttribute('href', name === 'index' ? '#' : linkTo(name, fragment ?? '').replace(/\?$/, ''));
  }
}

run();
