// A form of a calculation: a field an argument, filled with texts.
import { html } from './html.js';
import { isBasis, isDated, isFlag, isList, isOptional, noteOf } from './parameters.js';

const FLAGS = ['0', '1'];

const option = (value, text, chosen) => html`<option value="${value}"${chosen === value ? html` selected` : null}>${text}</option>`;

// Left out, each of the words, missing. A text that is none of them is kept.
function choice(parameter, attributes, words, text) {
  const known = ['', '.', ...words].includes(text);
  const leftOut = isOptional(parameter) ? `left out: ${parameter.default}` : 'choose';
  return html`<select ${attributes}>${option('', leftOut, text)}${words.map((word) => option(word, word, text))}${
    option('.', '. (missing value)', text)}${known ? null : option(text, text, text)}</select>`;
}

function inputMode(parameter) {
  if (isDated(parameter)) return 'numeric';
  return isList(parameter) ? 'text' : 'decimal';
}

function control(parameter, id, text, bases) {
  const described = html`id="${id}" name="${parameter.name}" aria-describedby="${id}-note ${id}-fault"`;
  if (isBasis(parameter)) return choice(parameter, described, bases, text);
  if (isFlag(parameter)) return choice(parameter, described, FLAGS, text);
  const typed = html`${described} autocomplete="off" autocapitalize="off" spellcheck="false"`;
  if (isList(parameter)) return html`<textarea ${typed} rows="3">${text}</textarea>`;
  const placeholder = isDated(parameter) ? 'year-month-day' : isOptional(parameter) ? parameter.default : '';
  return html`<input ${typed} type="text" inputmode="${inputMode(parameter)}" placeholder="${placeholder}" value="${text}">`;
}

function field(parameter, prefix, text, bases) {
  const id = `${prefix}-${parameter.name}`;
  const unit = parameter.unit ? html` <span class="unit">${parameter.unit}</span>` : null;
  const optional = isOptional(parameter) ? html` <span class="unit">optional</span>` : null;
  return html`
    <div class="field${isList(parameter) ? ' wide' : ''}">
      <label for="${id}"><span class="name">${parameter.name}</span>${unit}${optional}</label>
      ${control(parameter, id, text, bases)}
      <p class="fault" id="${id}-fault"></p>
      <p class="note" id="${id}-note">${noteOf(parameter)}</p>
    </div>`;
}

/**
 * @param {object[]} parameters of the catalogue @param {object} texts what stands in the fields, by name
 * @param {string} prefix of the fields' ids @param {string[]} bases keywords
 */
export const fields = (parameters, texts, prefix, bases) =>
  html`<div class="fields">${parameters.map((parameter) => field(parameter, prefix, texts[parameter.name] ?? '', bases))}
  </div>`;
