// Runs in a worker thread of Node's.
import { parentPort } from 'node:worker_threads';
import '../node.js';
import { serve } from './serve.js';

parentPort.on('message', (request) => {
  const { answer, moved } = serve(request);
  parentPort.postMessage(answer, moved);
});
