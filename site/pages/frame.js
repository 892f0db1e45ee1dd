// What is around every page: head, navigation, search.
import { html } from './html.js';

const NAVIGATION = [
  ['index.html', 'Calculations'],
  ['schedules.html', 'Schedules'],
  ['flows.html', 'Flows'],
  ['docs.html', 'Docs'],
];

export const header = (current) => html`
  <header class="top">
    <a class="skip" href="#content">Skip to the content</a>
    <a class="brand" href="index.html">zelkovan</a>
    <nav aria-label="Site"><ul>${NAVIGATION.map(([address, name]) =>
      html`<li><a href="${address}"${address === current ? html` aria-current="page"` : null}>${name}</a></li>`)}</ul></nav>
    <div class="search" role="search" hidden>
      <label class="visually-hidden" for="search">Search calculations, arguments and docs</label>
      <input id="search" type="search" placeholder="Search" autocomplete="off" spellcheck="false" role="combobox"
        aria-expanded="false" aria-controls="found" aria-autocomplete="list">
      <ul id="found" role="listbox" aria-label="Found" hidden></ul>
    </div>
    <button class="theme" type="button" hidden></button>
  </header>`;

/**
 * A whole page. Nothing is loaded from anywhere but beside it.
 * @param {{title: string, description: string, file: string, content: object, head: object}} page head: what links style
 *   and script
 */
export const frame = ({ title, description, file, content, head, policy }) => html`<!doctype html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta http-equiv="Content-Security-Policy" content="${policy}">
<meta name="color-scheme" content="light dark">
<meta name="description" content="${description}">
<title>${title}</title>
<link rel="icon" href="data:,">
${head}
</head>
<body>
${header(file)}
<main id="content" tabindex="-1">${content}
</main>
<footer><p>zelkovan: the same bits in the shell, in SQL, in Python and here. This page sends nothing anywhere.</p></footer>
</body>
</html>
`;
