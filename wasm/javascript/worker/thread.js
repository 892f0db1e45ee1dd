// Runs in a worker of the browser's. Requests may come while the calculations are still on their way: nothing is awaited
// before somebody listens.
import { fetchAndStart } from '../fetch.js';
import { serve } from './serve.js';

const started = fetchAndStart();

addEventListener('message', async ({ data: request }) => {
  try {
    await started;
  } catch (error) {
    postMessage({ id: request.id, error });
    return;
  }
  const { answer, moved } = serve(request);
  postMessage(answer, moved);
});
