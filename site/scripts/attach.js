// All forms below an element, made live.
import { Calculator } from './calculator.js';
import { attachFlows } from './flows.js';
import { attachSchedule } from './schedule_forms.js';

/**
 * @param {object} address of scripts/address.js @param {(name: string, fragment: string) => string} linkTo a calculation
 * @returns {{reread: () => void}[]} for when the address has changed
 */
export function attachForms(element, engine, address, linkTo) {
  const all = (selector, attach) => [...element.querySelectorAll(selector)].map(attach);
  all('.flows', (flows) => attachFlows(flows, engine));
  return [
    ...all('[data-calculation]', (calculation) => new Calculator(calculation, engine, address, linkTo)),
    ...all('[data-schedule]', (schedule) => attachSchedule(schedule, engine, address)),
  ];
}
