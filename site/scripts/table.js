// Tables made of rows.
import { html } from '../pages/html.js';

const FIGURE = /^[-+\d.,:e %]*$/;

/** @param {HTMLElement} element @param {string[]} headings @param {string[][]} rows the first text of each is its heading */
export function showTable(element, headings, rows) {
  const cells = ([first, ...rest]) => html`<tr><th scope="row">${first}</th>${rest.map((text) => html`<td${FIGURE.test(text) ? html` class="figure"` : null}>${text}</td>`)}</tr>`;
  element.innerHTML = html`<table><thead><tr>${headings.map((heading) => html`<th scope="col">${heading}</th>`)}</tr></thead>
    <tbody>${rows.map(cells)}</tbody></table>`.text;
}
