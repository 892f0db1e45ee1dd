// What the worker does with a request (client.js).
import { detailsOf, FinanceError } from '../errors.js';
import { evaluate, functionOf, rows } from '../library.js';

const told = (error) =>
  error instanceof FinanceError ? { message: error.message, details: detailsOf(error) } : { error };

const work = {
  call: (name, args) => functionOf(name)(...args),
  evaluate,
  rows: (name, columns) => {
    const { firstError, ...rest } = rows(name, columns);
    return { ...rest, firstError: firstError && told(firstError) };
  },
};

/** Gives the answer, and what of it need not be copied. */
export function serve({ id, ask, name, args }) {
  try {
    const value = work[ask](name, args);
    return { answer: { id, value }, moved: ask === 'rows' ? [value.values.buffer, value.refused.buffer] : [] };
  } catch (error) {
    return { answer: { id, ...told(error) }, moved: [] };
  }
}
