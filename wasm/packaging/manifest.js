// The package's package.json.

export const manifest = (version) => ({
  name: 'zelkovan',
  version,
  description: 'More than fifty financial calculations: bonds, annuities, internal rates, depreciation. WebAssembly, no dependencies',
  keywords: ['finance', 'bond', 'yield', 'annuity', 'irr', 'xirr', 'npv', 'depreciation', 'wasm'],
  license: 'MIT',
  author: 'the zelkovan authors',
  type: 'module',
  engines: { node: '>=18' },
  types: './index.d.ts',
  exports: {
    '.': { types: './index.d.ts', node: './node.js', default: './browser.js' },
    './inline': { types: './inline.d.ts', default: './inline.js' },
    './worker': { types: './worker.d.ts', node: './worker/node.js', default: './worker/browser.js' },
    './catalogue.json': './catalogue.json',
    './package.json': './package.json',
  },
});
