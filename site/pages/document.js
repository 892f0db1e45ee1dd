// Pages of docs/ from their Markdown: links between them go to the pages made here, those into the sources to none.
import { Marked } from 'marked';
import { html, raw } from './html.js';

/** What each page is for, those first that people look for first. */
export const LEADS = {
  install: 'The command, packages for Debian and Python, extensions of databases, JavaScript',
  'from-spreadsheets': 'Where answers differ from those of a sheet, and what to type instead',
  command: 'Calls, tables, schedules, pictures, the prompt, answers for machines',
  sqlite: 'The calculations as functions and aggregates of SQLite',
  postgresql: 'The calculations as functions and aggregates of PostgreSQL',
  duckdb: 'The calculations as functions of DuckDB, over columns',
  'duckdb-wasm': 'The same where DuckDB runs in a page',
  numpy: 'The calculations over arrays, with pandas and dask',
  solvers: 'How rates are searched, how a search ends, and what is checked',
  performance: 'What a call costs, measured',
  columns: 'What a row of a column costs, beside other libraries',
  web: 'What a row and a call cost in JavaScript, beside other packages',
  reliability: 'What is tried on all of it, and what came of that',
  hosting: 'Calls from a program of your own, in C',
  names: 'Names and records that hosts and linkers rely on',
  decisions: 'Where two ways were open, which one is taken, and why',
};

/** A heading's fragment, as Markdown's readers make it. */
export const slug = (text) =>
  text
    .toLowerCase()
    .replace(/<[^>]*>/g, '')
    .replace(/[^\p{L}\p{N} _-]/gu, '')
    .replace(/ /g, '-');

/**
 * The page that a link of the Markdown means; undefined: it has none here.
 * @param {string} target "solvers.md#what-is-checked" @param {Set<string>} documents names without .md
 */
export function pageOf(target, documents) {
  const [, path, fragment] = /^([^#]*)(#.*)?$/.exec(target);
  if (path === '') return fragment;
  if (path === 'reference/README.md') return 'index.html';
  const calculation = /^reference\/(\w+)\.md$/.exec(path);
  if (calculation) return `${calculation[1]}.html${fragment ?? ''}`;
  const document = /^([\w-]+)\.md$/.exec(path);
  return document && documents.has(document[1]) ? `${document[1]}.html${fragment ?? ''}` : undefined;
}

function markdown(documents) {
  const marked = new Marked();
  let tables = 0; // each is named, for those who hear the page
  marked.use({
    renderer: {
      heading({ tokens, depth }) {
        const text = this.parser.parseInline(tokens);
        return `<h${depth} id="${slug(text)}">${text}</h${depth}>\n`;
      },
      link({ href, tokens }) {
        const text = this.parser.parseInline(tokens);
        const page = pageOf(href, documents);
        return page === undefined ? text : `<a href="${page}">${text}</a>`;
      },
      code({ text }) {
        return `<pre tabindex="0">${html`${text}`}</pre>\n`;
      },
      table({ header, rows }) {
        const cell = (element) => (token) => {
          const text = this.parser.parseInline(token.tokens);
          return element === 'th' && text !== '' ? `<th scope="col">${text}</th>` : `<td>${text}</td>`;
        };
        const row = (cells, element) => `<tr>${cells.map(cell(element)).join('')}</tr>`;
        const body = rows.map((cells) => row(cells, 'td')).join('');
        const region = `class="table" tabindex="0" role="region" aria-label="Table ${++tables}"`;
        return `<div ${region}><table><thead>${row(header, 'th')}</thead><tbody>${body}</tbody></table></div>\n`;
      },
    },
  });
  return marked;
}

const TITLE = /^# (.+)$/m;

/** @returns {{name, title, lead, headings: {title, slug, words}[], content}} of a page of docs; words: what stands below it */
export function readDocument(name, text, documents) {
  const title = TITLE.exec(text)?.[1].replace(/`/g, '') ?? name;
  const sections = text.split(/^#{2,} /m).map((part, i) => {
    const [heading, ...rest] = part.split('\n');
    const own = i === 0 ? title : heading.replace(/`/g, '');
    return { title: own, slug: i === 0 ? '' : slug(own), words: rest.join(' ') };
  });
  return { name, title, lead: LEADS[name] ?? '', headings: sections, content: raw(markdown(documents).parse(text)) };
}

export const documentPage = ({ content }) => html`<article class="document">${content}</article>`;

export const documentList = (documents) => html`
  <h1>Docs</h1>
  <ul class="jobs">${documents.map(({ name, title, lead }) => html`
    <li><a href="${name}.html"><strong>${title}</strong> <span>${lead}</span></a></li>`)}</ul>`;
