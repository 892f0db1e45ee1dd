// Flows pasted from a sheet, and their rates. scripts/flows.js works on it.
import { html } from './html.js';

export const EXAMPLE = '2021-03-01\t-1,000.00\n2022-03-01\t2,300.00\n2023-03-01\t(1,320.00)\n';

const option = ([value, text]) => html`<option value="${value}">${text}</option>`;

const DATES = [
  ['', 'as they fit'],
  ['ymd', 'year, month, day'],
  ['dmy', 'day, month, year'],
  ['mdy', 'month, day, year'],
  ['sheet', "a sheet's serial numbers (45292)"],
  ['days', 'days since 1960-01-01'],
];
const DECIMALS = [
  ['', 'as they fit'],
  ['point', 'point: 1,234.56'],
  ['comma', 'comma: 1.234,56'],
];

export const flowsPage = html`
  <h1>Paste your flows</h1>
  <p class="lead">Rows of date and amount as a sheet has them, or amounts alone for periods of equal length. Money paid is
    negative, money received positive. Nothing leaves this page.</p>
  <section class="flows" aria-labelledby="flows-title">
    <h2 id="flows-title" class="visually-hidden">Flows</h2>
    <form novalidate>
      <div class="field wide">
        <label for="flows-text">Rows</label>
        <textarea id="flows-text" name="text" rows="10" spellcheck="false" autocomplete="off" aria-describedby="flows-note flows-fault">${EXAMPLE}</textarea>
        <p class="fault" id="flows-fault"></p>
        <p class="note" id="flows-note">Between the fields a tab, a semicolon, or a comma that no amount needs. Groups of digits,
          currencies, brackets for a minus and titles above the rows are understood.</p>
      </div>
      <div class="row">
        <p><label for="flows-dates">dates</label> <select id="flows-dates" name="dates" autocomplete="off">${DATES.map(option)}</select></p>
        <p><label for="flows-decimal">decimal sign</label> <select id="flows-decimal" name="decimal" autocomplete="off">${DECIMALS.map(option)}</select></p>
      </div>
    </form>
    <p class="understood" role="status"></p>
    <div class="outcome"></div>
    <noscript><p class="note">Flows are worked out on this page, which needs JavaScript. In a shell:
      <code>finance fold 'XIRR(amount, date)' flows.csv</code>.</p></noscript>
  </section>`;
