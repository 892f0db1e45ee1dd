// The package's functions in another thread: each gives a promise.
//
// A request is {id, ask, name, args}; its answer {id, value} or, of a FinanceError, {id, message, details}, of any other
// error {id, error}.
import { FinanceError } from '../errors.js';

const errorOf = ({ message, details, error }) => (details === undefined ? error : new FinanceError(message, details));

/**
 * @param {object} thread post(request), onAnswer(take), onFailure(take) and end() of a worker that serves (serve.js)
 * @param {object} catalogue whose calculations it has
 */
export function clientOf(thread, catalogue) {
  const waiting = new Map();
  let lastId = 0;
  let failure;

  const failAll = (error) => {
    failure ??= error;
    for (const { reject } of waiting.values()) reject(failure);
    waiting.clear();
  };
  thread.onFailure(failAll);
  thread.onAnswer((answer) => {
    const { resolve, reject } = waiting.get(answer.id) ?? {};
    waiting.delete(answer.id);
    if ('value' in answer) resolve?.(answer.value);
    else reject?.(errorOf(answer));
  });

  const asked = (ask, name, args) =>
    new Promise((resolve, reject) => {
      if (failure !== undefined) throw failure;
      const id = ++lastId;
      thread.post({ id, ask, name, args }); // throws where an argument cannot be sent
      waiting.set(id, { resolve, reject });
    });

  const functions = catalogue.calculations.map(({ calculation }) => [
    calculation.toLowerCase(),
    (...args) => asked('call', calculation, args),
  ]);
  return {
    ...Object.fromEntries(functions),
    evaluate: (name, args) => asked('evaluate', name, args),
    rows: async (name, columns) => {
      const { firstError, ...rest } = await asked('rows', name, columns);
      return { ...rest, firstError: firstError && errorOf(firstError) };
    },
    close: async () => {
      failAll(new Error('the worker is closed'));
      await thread.end();
    },
  };
}
