// Pages of docs from their Markdown.
import assert from 'node:assert/strict';
import { readdirSync } from 'node:fs';
import { test } from 'node:test';
import { LEADS, pageOf, readDocument, slug } from '../../site/pages/document.js';
import { root } from './engine.js';

test('every page of docs is in the site', () => {
  const files = readdirSync(new URL('docs/', root)).filter((file) => file.endsWith('.md'));
  assert.deepEqual(Object.keys(LEADS).map((name) => `${name}.md`).sort(), files.sort());
});

test('links lead to pages of the site, or are none', () => {
  const documents = new Set(['solvers', 'command']);
  const cases = [
    ['solvers.md#what-is-checked', 'solvers.html#what-is-checked'],
    ['#here', '#here'],
    ['reference/README.md', 'index.html'],
    ['reference/PRICE.md', 'PRICE.html'],
    ['../README.md', undefined],
    ['../scripts/fuzz', undefined],
    ['elsewhere.md', undefined],
  ];
  for (const [target, page] of cases) assert.equal(pageOf(target, documents), page, target);
});

test('headings have the fragments that Markdown gives them', () => {
  assert.equal(slug('What is checked'), 'what-is-checked');
  assert.equal(slug('RATE, `IRR` & XIRR: a list'), 'rate-irr--xirr-a-list');
});

test('a page is escaped, and knows its sections', () => {
  const { title, headings, content } = readDocument('solvers', '# A `title`\n\nWords <here>.\n\n## One\n\n    $ x < y\n', new Set());
  assert.equal(title, 'A title');
  assert.deepEqual(headings.map((heading) => [heading.title, heading.slug]), [['A title', ''], ['One', 'one']]);
  assert.match(content.text, /<pre tabindex="0">\$ x &lt; y/);
});
