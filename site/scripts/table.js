// Tables made of rows, in regions that scroll.
import { html } from '../pages/html.js';
import { part } from './elements.js';

const MOST_SHOWN = 500; // rows: a page is slow with more

const FIGURE = /^[-+\d.,:e %]*$/;

/** A place for a table, which a keyboard can scroll. @param {string} name for those who hear the page */
export function tableRegion(parent, name, { tall = false } = {}) {
  const region = part(parent, 'div', { name: tall ? 'table tall' : 'table' });
  region.tabIndex = 0;
  region.setAttribute('role', 'region');
  region.setAttribute('aria-label', name);
  return region;
}

/** @param {HTMLElement} element @param {string[]} headings @param {string[][]} rows the first text of each is its heading */
export function showTable(element, headings, rows) {
  const cells = ([first, ...rest]) => html`<tr><th scope="row">${first}</th>${rest.map((text) => html`<td${FIGURE.test(text) ? html` class="figure"` : null}>${text}</td>`)}</tr>`;
  element.innerHTML = html`<table><thead><tr>${headings.map((heading) => html`<th scope="col">${heading}</th>`)}</tr></thead>
    <tbody>${rows.map(cells)}</tbody></table>`.text;
}

/** Many rows, in a region that scrolls: the first of them. @param {string} rest where the others are */
export function showManyRows(parent, name, headings, rows, rest = '') {
  showTable(tableRegion(parent, name, { tall: true }), headings, rows.slice(0, MOST_SHOWN));
  if (rows.length > MOST_SHOWN) part(parent, 'p', { text: `The first ${MOST_SHOWN} of ${rows.length}${rest}.`, name: 'note' });
}
