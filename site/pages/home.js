// The first page: what there is, by family.
import { html } from './html.js';

const entry = (linkTo) => ({ calculation, answers }) => html`
  <li><a href="${linkTo(calculation)}"><strong>${calculation}</strong> <span>${answers}</span></a></li>`;

function families(calculations) {
  const found = new Map();
  for (const calculation of calculations) found.set(calculation.family, [...(found.get(calculation.family) ?? []), calculation]);
  return [...found];
}

// People look for loans and flows first.
const FIRST = ['Annuities and loans', 'Cash flows', 'Rate conversion', 'Bonds'];
const rank = (family) => (FIRST.includes(family) ? FIRST.indexOf(family) : FIRST.length);

/** @param {object[]} calculations of the catalogue @param {(name: string) => string} linkTo the address of its page */
export const calculationList = (calculations, linkTo) => html`
  <div class="families">${families(calculations)
    .sort(([a], [b]) => rank(a) - rank(b))
    .map(([family, members]) => html`
    <section><h2>${family}</h2><ul>${members.map(entry(linkTo))}</ul></section>`)}
  </div>`;

export const homePage = (calculations) => html`
  <h1>${calculations.length} financial calculations</h1>
  <p class="lead">Bonds, loans, internal rates, depreciation, Treasury bills. Each has a page that calculates as you type,
    with exactly the answer that <code>finance</code> gives in the shell and the functions give in SQL and Python.</p>
  <ul class="jobs">
    <li><a href="schedules.html"><strong>Schedules</strong> <span>Payments of a loan, methods of depreciation side by side</span></a></li>
    <li><a href="flows.html"><strong>Paste your flows</strong> <span>Rows of date and amount from a sheet: their rates, all of them, and the picture</span></a></li>
    <li><a href="docs.html"><strong>Docs</strong> <span>For people who come from spreadsheets, the command, the engines, how rates are searched</span></a></li>
    <li><a href="zelkovan.html" download><strong>Offline</strong> <span>All calculators in one file that works from the disk</span></a></li>
  </ul>
  ${calculationList(calculations, (name) => `${name}.html`)}`;
