// The page of one calculation: all of it can be read without a script, which then makes it calculate.
import { html } from './html.js';
import { fields } from './form.js';
import { isOptional, textsOf } from './parameters.js';

function signature({ calculation, arguments: parameters }) {
  const words = parameters.map((parameter) => (isOptional(parameter) ? `[${parameter.name}]` : parameter.name));
  return `${calculation}(${words.join(', ')})`;
}

const calculator = (calculation, bases) => html`
  <section class="calculator" aria-labelledby="calculate">
    <h2 id="calculate" class="visually-hidden">Calculate</h2>
    <form novalidate>
      ${fields(calculation.arguments, textsOf(calculation.example.arguments), calculation.calculation, bases)}
      <div class="result">
        <output class="answer">${calculation.example.result}</output>
        <p class="reading"></p>
        <p class="refusal" role="status"></p>
        <noscript><p class="note">This is the example's answer. To calculate here, the page needs JavaScript.</p></noscript>
      </div>
      <p class="actions"><button type="reset">Back to the example</button> <button type="button" class="share">Copy the address</button></p>
    </form>
  </section>`;

// Shown by scripts/curve.js.
const curve = html`
  <section class="curve" aria-labelledby="curve-title" hidden>
    <h2 id="curve-title">As one argument changes</h2>
    <form class="row" novalidate>
      <p><label for="curve-argument">over</label> <select id="curve-argument" name="over"></select></p>
      <p><label for="curve-from">from</label> <input id="curve-from" name="from" type="text" autocomplete="off" spellcheck="false"></p>
      <p><label for="curve-to">to</label> <input id="curve-to" name="to" type="text" autocomplete="off" spellcheck="false"></p>
    </form>
    <p class="fault" role="status"></p>
    <figure class="picture"></figure>
    <p class="note gaps"></p>
    <details><summary>The values as a table</summary><div class="table" tabindex="0" role="region" aria-label="Values of the curve"></div></details>
  </section>`;

// Shown by scripts/copy.js.
const copy = html`
  <section class="copy" aria-labelledby="copy-title" hidden>
    <h2 id="copy-title">The same call elsewhere</h2>
    <div class="snippets"></div>
  </section>`;

const argumentRow = (parameter) => html`
  <tr><th scope="row">${parameter.name}</th><td>${parameter.kind}</td><td>${parameter.unit}</td>
    <td>${isOptional(parameter) ? `${parameter.default} if left out` : parameter.need}</td>
    <td>${parameter.meaning}</td><td>${parameter.rule}</td></tr>`;

const reference = (calculation) => html`
  <section aria-labelledby="arguments">
    <h2 id="arguments">Arguments</h2>
    <p><code class="signature">${signature(calculation)}</code></p>
    <div class="table" tabindex="0" role="region" aria-label="Table of arguments"><table>
      <thead><tr><th scope="col">name</th><th scope="col">kind</th><th scope="col">unit</th><th scope="col">need</th>
        <th scope="col">what it is</th><th scope="col">rule</th></tr></thead>
      <tbody>${calculation.arguments.map(argumentRow)}</tbody>
    </table></div>
  </section>
  <section aria-labelledby="formula"><h2 id="formula">Formula</h2><pre tabindex="0">${calculation.formula}</pre></section>
  ${calculation.remarks && html`<section aria-labelledby="remarks"><h2 id="remarks">Worth knowing</h2><p>${calculation.remarks}</p></section>`}
  <section aria-labelledby="failure"><h2 id="failure">When there is no answer</h2><p>${calculation.failure}</p></section>
  <section aria-labelledby="example"><h2 id="example">Example</h2>
    <pre tabindex="0">$ finance ${calculation.calculation} ${calculation.example.arguments}
${calculation.example.result}</pre></section>`;

/** @param {object} calculation of the catalogue @param {string[]} bases keywords */
export const calculationPage = (calculation, bases) => html`
  <article class="calculation" data-calculation="${calculation.calculation}">
    <p class="family">${calculation.family}</p>
    <h1>${calculation.calculation}</h1>
    <p class="lead">${calculation.answers}.</p>
    ${calculator(calculation, bases)}${curve}${copy}${reference(calculation)}
  </article>`;
