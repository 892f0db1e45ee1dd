// Why a call has no value.
import { SUCCESS } from './core.js';

/** A call that is refused, or whose answer is none. */
export class FinanceError extends Error {
  /**
   * @param {string} message "PMT: argument 2 (nper): 2.5 is not a whole number"
   * @param {object} details what the properties are
   */
  constructor(message, details = {}) {
    super(message);
    /** 'refused', 'does not solve', 'too large'; 'usage' where no call could be made of what was given. */
    this.verdict = details.verdict ?? 'usage';
    /** The calculation's name, in upper case; null where there is none of that name. */
    this.calculation = details.calculation ?? null;
    /** The name of the argument at fault, its position (1 the first), in a list that of its value; null: none is. */
    this.argument = details.argument ?? null;
    this.position = details.position ?? null;
    this.element = details.element ?? null;
    /** What that argument must be: "whole number, must be at least 1". */
    this.rule = details.rule ?? null;
    /** The message without the calculation's name; and without the argument's. */
    this.sentence = details.sentence ?? message;
    this.reason = details.reason ?? this.sentence;
    /** A call that has the answer, as the command finance takes it; null where none is known. */
    this.remedy = details.remedy ?? null;
    /** The answer that does not solve its equation or is infinite; else null. */
    this.value = details.value ?? null;
  }

  get name() {
    return 'FinanceError';
  }
}

/** All but name, message and stack, as another thread can be told. */
export const detailsOf = (error) => ({ ...error });

const KIND_OF_ELEMENT = { numbers: 'number', dates: 'date' };

/** What an argument must be, its kind included. */
function ruleOf({ kind, rule }) {
  const words = KIND_OF_ELEMENT[kind] ?? kind;
  return rule === null ? words : `${words}, ${rule}`;
}

/** Where a fault lies: a parameter, of a list a value. */
const faultAt = (calculation, { parameter, element }) => ({
  argument: calculation.arguments[parameter].name,
  position: parameter + 1,
  element: element === 0 ? null : element,
  rule: ruleOf(calculation.arguments[parameter]),
});

/** Of what no call can be made. place: of the argument at fault, where there is one. */
export function usageError(calculation, reason, place) {
  const fault = place && faultAt(calculation, place);
  const label = fault && `argument ${fault.position} (${fault.argument}${fault.element === null ? '' : `, value ${fault.element}`})`;
  const sentence = label ? `${label}: ${reason}` : reason;
  return new FinanceError(`${calculation.calculation}: ${sentence}`, {
    calculation: calculation.calculation,
    ...fault,
    sentence,
    reason,
  });
}

/** Of a call that has no answer. places: to which parameter each of its words belongs; answer: as Core.explain gives it. */
export function refusal(calculation, places, answer) {
  const answered = answer.status === SUCCESS;
  const place = places[answer.position - 1];
  return new FinanceError(answer.namedSentence, {
    verdict: answered ? answer.verdict : 'refused',
    calculation: calculation.calculation,
    ...(place && faultAt(calculation, place)),
    sentence: answer.sentence,
    reason: answer.reason,
    remedy: answer.remedy || null,
    value: answered ? answer.value : null,
  });
}
