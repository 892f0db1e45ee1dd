export { FinanceError } from './index.js';

/** The calculations in another thread, where a long column keeps nobody waiting. */
export interface FinanceWorker extends AsyncCalculations {
  evaluate(name: AnyName, args: Arguments): Promise<number | string | null>;
  rows(name: AnyName, columns: Columns): Promise<Rows>;
  /** Ends the worker; what has no answer yet is rejected. */
  close(): Promise<void>;
}

export function startWorker(): FinanceWorker;
