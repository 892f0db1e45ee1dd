// A form's fields as texts by name, and faults at them.
import { Unreadable } from './values.js';

/** @param {HTMLFormElement} form */
export const textsIn = (form, parameters) => Object.fromEntries(parameters.map(({ name }) => [name, form.elements[name].value]));

/** Whether there is no answer for a reason that people are told; all else is a fault of ours. */
export const isRefusal = (error) => error instanceof Unreadable || error.name === 'FinanceError';

/** What the page came with, before anybody typed. */
export function usualTexts(form, parameters) {
  const usual = (element) => ('defaultValue' in element ? element.defaultValue : (element.querySelector('[selected]')?.value ?? ''));
  return Object.fromEntries(parameters.map(({ name }) => [name, usual(form.elements[name])]));
}

export function fill(form, parameters, texts) {
  for (const { name } of parameters) {
    if (texts[name] === undefined) continue;
    const element = form.elements[name];
    element.value = texts[name];
    // A choice that is none of a list stands there all the same, so that it can be refused.
    if (element.value !== texts[name] && element.tagName === 'SELECT') element.add(new Option(texts[name], texts[name], false, true));
  }
}

function setFault(form, name, text) {
  const element = form.elements[name];
  form.querySelector(`#${CSS.escape(`${element.id}-fault`)}`).textContent = text;
  if (text === '') element.removeAttribute('aria-invalid');
  else element.setAttribute('aria-invalid', 'true');
}

/** @param {{argument: string, text: string}|null} fault null: none is at fault */
export function showFault(form, parameters, fault) {
  for (const { name } of parameters) setFault(form, name, fault?.argument === name ? fault.text : '');
}

/** "value 3: ..." where it is one of a list. */
export const faultOf = ({ argument, element, reason, message }) => ({
  argument,
  text: element ? `value ${element}: ${reason ?? message}` : (reason ?? message),
});

/** Once things have been still for a moment. */
export function settled(action, milliseconds) {
  let timer;
  return () => {
    clearTimeout(timer);
    timer = setTimeout(action, milliseconds);
  };
}
