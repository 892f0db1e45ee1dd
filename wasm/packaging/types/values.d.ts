/** A day: an ISO date ('2008-02-15'), a Date (its day in UTC), or days since 1960-01-01. */
export type Day = string | Date | number;
/** 0 or 1, false or true. */
export type Flag = number | boolean;
/** A list of numbers; null and NaN are missing values. */
export type Numbers = readonly (number | null)[] | Float64Array;
/** A list of days. */
export type Days = readonly (Day | null)[] | Float64Array;

/** Whatever an argument may be. */
export type Value = number | string | boolean | Date | null | undefined;
/** In order, or by name. */
export type Arguments = readonly (Value | Numbers | Days)[] | Readonly<Record<string, Value | Numbers | Days>>;
/** Upper or lower case. */
export type AnyName = CalculationName | Lowercase<CalculationName>;

/** A value a row (a basis by its code), or one that is the same in all; a list has an array of them. */
export type Column = Value | Float64Array | readonly Value[] | readonly (Value | Float64Array | readonly Value[])[];
/** In order, or by name. */
export type Columns = readonly Column[] | Readonly<Record<string, Column>>;
export interface Rows {
  /** One a row, NaN where it has none; dates as days since 1960-01-01 (toISODate). */
  values: Float64Array;
  /** The rows that are refused, ascending. One whose value is missing is not. */
  refused: Uint32Array;
  /** Why the first of them is. */
  firstError: FinanceError | null;
}

export type Verdict = 'refused' | 'does not solve' | 'too large' | 'usage';

/** A call that is refused, or whose answer is none. */
export class FinanceError extends Error {
  readonly name: 'FinanceError';
  /** 'usage': no call could be made of what was given. */
  readonly verdict: Verdict;
  /** In upper case; null where there is none of that name. */
  readonly calculation: string | null;
  /** The name of the argument at fault; null: none is. */
  readonly argument: string | null;
  /** Its position, 1 the first. */
  readonly position: number | null;
  /** In a list, the position of the value at fault. */
  readonly element: number | null;
  /** What the argument must be: "whole number, must be at least 1". */
  readonly rule: string | null;
  /** The message without the calculation's name. */
  readonly sentence: string;
  /** The same without the argument's. */
  readonly reason: string;
  /** A call that has the answer, as the command finance takes it; null where none is known. */
  readonly remedy: string | null;
  /** The answer that does not solve its equation or is infinite; else null. */
  readonly value: number | null;
}

/** Days since 1960-01-01; undefined where it is no date. */
export function toDay(date: Day): number | undefined;
/** The ISO date of a day, a part of which is dropped; undefined outside the years 1 to 9999, and of a missing value. */
export function toISODate(day: number): string | undefined;

/** A calculation by its name. */
export function evaluate(name: AnyName, args: Arguments): number | string | null;
/** A calculation over rows. */
export function rows(name: AnyName, columns: Columns): Rows;

export interface CatalogueArgument {
  readonly name: string;
  readonly kind: string;
  readonly unit: string | null;
  readonly meaning: string;
  readonly need: 'required' | 'may be missing' | 'optional';
  readonly default: string | null;
  readonly rule: string | null;
}
export interface CatalogueEntry {
  readonly calculation: CalculationName;
  readonly family: string;
  readonly answers: string;
  readonly result: 'number' | 'date' | 'rate' | 'amount';
  readonly arguments: readonly CatalogueArgument[];
  readonly formula: string;
  readonly remarks: string | null;
  readonly failure: string;
  /** Whether the answer is looked for step by step. */
  readonly searches: boolean;
  readonly example: { readonly arguments: string; readonly result: string };
}
/** What is known of each calculation. */
export const catalogue: { readonly bases: readonly string[]; readonly calculations: readonly CatalogueEntry[] };
