// The modules that are made: functions, catalogue, and the bytes of the calculations.
import { declared, lowerCase, renamed } from './names.js';

export const functionsModule = (calculations) =>
  [
    '// One function a calculation.',
    "import { functionOf } from './library.js';",
    '',
    "export { catalogue, evaluate, FinanceError, rows, toDay, toISODate } from './library.js';",
    '',
    ...calculations.map((calculation) => {
      const name = lowerCase(calculation);
      return `export const ${declared(name)} = /* @__PURE__ */ functionOf('${calculation.calculation}');`;
    }),
    `export { ${renamed(calculations).map((name) => `${declared(name)} as ${name}`).join(', ')} };`,
    '',
  ].join('\n');

export const catalogueModule = (catalogue) => `// What is known of each calculation.\nexport default ${JSON.stringify(catalogue)};\n`;

export const wasmModule = (wasm) => `// zelkovan.wasm in base64.\nexport default '${wasm.toString('base64')}';\n`;
