// The calculations where there is fetch: zelkovan.wasm lies beside this file.
import { start } from './library.js';

export async function fetchAndStart() {
  const response = await fetch(new URL('./zelkovan.wasm', import.meta.url));
  if (!response.ok) throw new Error(`zelkovan.wasm cannot be fetched: ${response.status} ${response.statusText}`);
  await start(await response.arrayBuffer());
}
