// A worker thread of Node's, and its client.
import { Worker } from 'node:worker_threads';
import catalogue from '../catalogue.js';
import { clientOf } from './client.js';

/** The functions, evaluate and rows, giving promises; close() ends the worker. */
export function startWorker() {
  const worker = new Worker(new URL('./thread.node.js', import.meta.url));
  const thread = {
    post: (request) => worker.postMessage(request),
    onAnswer: (take) => worker.on('message', take),
    onFailure: (take) => worker.on('error', take).on('exit', () => take(new Error('the worker has ended'))),
    end: () => worker.terminate(),
  };
  return clientOf(thread, catalogue);
}

export { FinanceError } from '../errors.js';
