// A worker of the browser's, and its client.
import catalogue from '../catalogue.js';
import { clientOf } from './client.js';

/** The functions, evaluate and rows, giving promises; close() ends the worker. */
export function startWorker() {
  const worker = new Worker(new URL('./thread.js', import.meta.url), { type: 'module' });
  const thread = {
    post: (request) => worker.postMessage(request),
    onAnswer: (take) => worker.addEventListener('message', ({ data }) => take(data)),
    onFailure: (take) => worker.addEventListener('error', (event) => take(event.error ?? new Error(event.message || 'the worker failed'))),
    end: () => worker.terminate(),
  };
  return clientOf(thread, catalogue);
}

export { FinanceError } from '../errors.js';
