// Scripts as one file that a page loads as it is, from the disk too: Vite puts the modules together.
import { join } from 'node:path';
import { build } from 'vite';

/** @param {string} entry @param {{made: string, package: string}} folders of modules that are made: @site, @zelkovan */
export async function bundle(entry, folders) {
  const [{ output }] = await build({
    configFile: false,
    logLevel: 'warn',
    resolve: {
      alias: [
        { find: '@site/documents.js', replacement: join(folders.made, 'documents.js') },
        { find: '@zelkovan/reading-wasm.js', replacement: join(folders.made, 'reading-wasm.js') },
        { find: /^@zelkovan\//, replacement: `${folders.package}/` },
      ],
    },
    build: {
      write: false,
      minify: 'esbuild',
      target: 'es2022',
      lib: { entry, formats: ['iife'], name: 'zelkovan' },
    },
  });
  return output[0].code.replaceAll('</script', '<\\/script');
}
