// Payments of a loan, and methods of depreciation side by side. scripts/schedules.js fills them.
import { html } from './html.js';
import { fields } from './form.js';

const parameterOf = (calculations, name, argument) =>
  calculations.find(({ calculation }) => calculation === name).arguments.find((parameter) => parameter.name === argument);

const START = { name: 'start', kind: 'date', unit: null, meaning: 'the day the first period begins', need: 'optional', default: 'no dates', rule: null };
const MONTHS = { name: 'months', kind: 'whole number', unit: 'months', meaning: 'how far payments are apart', need: 'optional', default: '1', rule: 'must be at least 1' };

/** The arguments of both schedules: those of the calculations behind them, and what dates need. */
export const scheduleParameters = (calculations) => ({
  loan: [...['rate', 'nper', 'pv', 'fv', 'type'].map((name) => parameterOf(calculations, 'PMT', name)), START, MONTHS],
  depreciation: [
    ...['cost', 'salvage', 'life'].map((name) => parameterOf(calculations, 'DB', name)),
    { ...parameterOf(calculations, 'VDB', 'factor'), rule: 'must be above 0' },
    parameterOf(calculations, 'DB', 'month'),
  ],
});

export const EXAMPLES = {
  loan: { rate: '0.5%', nper: '360', pv: '200000', start: '2025-01-31' },
  depreciation: { cost: '10000', salvage: '1000', life: '5', month: '7' },
};

const schedule = (kind, title, lead, parameters, bases) => html`
  <section class="schedule" data-schedule="${kind}" aria-labelledby="${kind}">
    <h2 id="${kind}">${title}</h2>
    <p>${lead}</p>
    <form novalidate>${fields(parameters, EXAMPLES[kind], kind, bases)}
      <p class="actions"><button type="reset">Back to the example</button></p></form>
    <p class="refusal" role="status"></p>
    <div class="outcome"></div>
  </section>`;

export function schedulesPage({ calculations, bases }) {
  const { loan, depreciation } = scheduleParameters(calculations);
  return html`
  <h1>Schedules</h1>
  <noscript><p class="note">Schedules are worked out on this page, which needs JavaScript. In a shell:
    <code>finance schedule loan rate=0.005 nper=360 pv=200000</code>.</p></noscript>
  ${schedule('loan', 'A loan, payment by payment', html`Payment, interest and principal of each period are
    <a href="PMT.html">PMT</a>, <a href="IPMT.html">IPMT</a> and <a href="PPMT.html">PPMT</a>. Money paid is negative; the
    balance begins at pv and ends at <code>-fv</code>.`, loan, bases)}
  ${schedule('depreciation', 'Five methods of depreciation', html`<a href="SLN.html">SLN</a>, <a href="SYD.html">SYD</a>,
    <a href="DB.html">DB</a>, <a href="DDB.html">DDB</a> and <a href="VDB.html">VDB</a> with its switch to straight line: what
    is written off in each period, and the book value that is left.`, depreciation, bases)}`;
}
