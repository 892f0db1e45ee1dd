// The page of all calculators in one file: which one is shown stands in the fragment, "#PRICE?rate=0.05".
import { calculationPage } from '../pages/calculation.js';
import { flowsPage } from '../pages/flows.js';
import { calculationList } from '../pages/home.js';
import { html } from '../pages/html.js';
import { schedulesPage } from '../pages/schedules.js';
import { addressBelow } from './address.js';
import { attachForms } from './attach.js';
import { startEngine } from './engine.js';
import { attachSearch, entryOfCalculation } from './search.js';
import { attachSkip } from './skip.js';
import { attachTheme } from './theme.js';

const PAGE = /^(\w+)\.html(?:#(.*))?$/;
const content = document.querySelector('main');

async function run() {
  attachTheme(document.querySelector('.theme'));
  attachSkip(document.querySelector('.skip'));
  const engine = await startEngine();
  const { calculations, bases } = engine.catalogue;
  const inPage = (name) => `#${name}`;
  const home = () => html`<h1>${calculations.length} financial calculations</h1>
    <p class="lead">All calculators in this one file: keep it, it needs nothing else.</p>${calculationList(calculations, inPage)}`;
  const others = new Map([
    ['schedules', { title: 'Schedules: loans and depreciation', page: () => schedulesPage(engine.catalogue) }],
    ['flows', { title: 'Paste your flows: all their rates', page: () => flowsPage }],
  ]);
  let shown;

  function show() {
    const name = location.hash.slice(1).split('?')[0];
    if (name === shown?.name) return void shown.forms.forEach((form) => form.reread());
    const calculation = calculations.find((one) => one.calculation === name);
    const { title, page } = calculation
      ? { title: `${name}: ${calculation.answers}`, page: () => calculationPage(calculation, bases) }
      : (others.get(name) ?? { title: 'zelkovan: financial calculations', page: home });
    content.innerHTML = page().text;
    document.title = title;
    const forms = attachForms(content, engine, addressBelow(name), linkTo);
    keepWithin(content);
    if (shown !== undefined) {
      scrollTo(0, 0);
      content.focus({ preventScroll: true });
    }
    shown = { name, forms };
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
    if (name === 'docs') (link.closest('li') ?? link).remove();
    else if (name !== undefined) link.setAttribute('href', name === 'index' ? '#' : linkTo(name, fragment ?? '').replace(/\?$/, ''));
  }
}

run();
