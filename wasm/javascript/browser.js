// The package where there is fetch.
import { fetchAndStart } from './fetch.js';

await fetchAndStart();

export * from './functions.js';
