// The live form of a calculation: an answer, or a refusal at its field, as one types.
import { showCopies } from './copy.js';
import { Curve } from './curve.js';
import { copyText } from './elements.js';
import { faultOf, fill, isRefusal, settled, showFault, textsIn, usualTexts } from './form.js';
import { answerText, digits, grouped, percentage, valuesOf } from './values.js';

const SHORT_ANSWER = 9; // characters that are read at a glance
const CURVE_WORDS = ['over', 'from', 'to'];

/** What people read beside an answer's digits. */
function readingOf(calculation, answer) {
  if (answer === null) return 'a missing value';
  if (typeof answer !== 'number') return '';
  if (calculation.result === 'rate') return percentage(answer);
  return calculation.result === 'amount' && digits(answer).length > SHORT_ANSWER ? `about ${grouped(answer)}` : '';
}

// "RATE nper=60 pmt=-400", which a refusal proposes.
function proposal(remedy) {
  const [, name, words] = /^(\w+) (.*)$/.exec(remedy) ?? [];
  if (!name || !words.split(' ').every((word) => word.includes('='))) return undefined;
  return { name, fragment: words.split(' ').map((word) => word.split(/=(.*)/s, 2).map((part) => encodeURIComponent(part)).join('=')).join('&') };
}

export class Calculator {
  #element;
  #form;
  #calculation;
  #engine;
  #address;
  #usual;
  #curve;
  #drawn;
  #error = null; // why there is no answer
  #values = null; // as they were read last; null: they could not be

  /**
   * @param {HTMLElement} element of pages/calculation.js @param {object} engine evaluate, rows, reading, catalogue
   * @param {object} address of scripts/address.js @param {(name: string, fragment: string) => string} linkTo
   */
  constructor(element, engine, address, linkTo) {
    this.#element = element;
    this.#engine = engine;
    this.#address = address;
    this.linkTo = linkTo;
    this.#calculation = engine.catalogue.calculations.find(({ calculation }) => calculation === element.dataset.calculation);
    this.#form = element.querySelector('.calculator form');
    this.#usual = usualTexts(this.#form, this.#calculation.arguments);
    this.#curve = new Curve(element.querySelector('.curve'), this.#calculation, engine, () => this.#keepAddress());
    this.#drawn = settled(() => this.#showRest(), 60);
    this.#listen();
    this.reread();
  }

  #listen() {
    this.#form.addEventListener('submit', (event) => event.preventDefault());
    this.#form.addEventListener('input', () => this.#changed());
    this.#form.addEventListener('reset', () => {
      this.#curve.choose({});
      setTimeout(() => this.#changed());
    });
    const share = this.#element.querySelector('.share');
    share.addEventListener('click', () => copyText(location.href, share));
  }

  /** The address has changed under the page. */
  reread() {
    const given = this.#address.read();
    fill(this.#form, this.#calculation.arguments, { ...this.#usual, ...given });
    this.#curve.choose(given);
    this.#calculate();
    this.#showRest();
  }

  #changed() {
    this.#calculate();
    this.#keepAddress();
    this.#drawn();
  }

  #texts() {
    return textsIn(this.#form, this.#calculation.arguments);
  }

  #keepAddress() {
    const curve = this.#curve.chosen();
    const usual = Object.fromEntries(CURVE_WORDS.map((word) => [word, '']));
    this.#address.write({ ...this.#texts(), ...curve }, { ...this.#usual, ...usual });
  }

  #calculate() {
    this.#values = null;
    try {
      this.#values = valuesOf(this.#engine.reading, this.#calculation.arguments, this.#texts());
      const answer = this.#engine.evaluate(this.#calculation.calculation, this.#values);
      this.#show({ answer: answerText(answer), reading: readingOf(this.#calculation, answer) });
    } catch (error) {
      if (!isRefusal(error)) throw error;
      this.#show({ error });
    }
  }

  #show({ answer = '', reading = '', error = null }) {
    const find = (name) => this.#form.querySelector(name);
    this.#error = error;
    find('.answer').textContent = answer;
    find('.reading').textContent = reading;
    const refusal = find('.refusal');
    refusal.textContent = error === null ? '' : error.argument ? `${error.argument}: ${faultOf(error).text}` : error.message;
    showFault(this.#form, this.#calculation.arguments, error?.argument ? faultOf(error) : null);
    if (error?.remedy) this.#propose(refusal, error.remedy);
  }

  #propose(refusal, remedy) {
    const found = proposal(remedy);
    const said = document.createElement(found ? 'a' : 'code');
    said.textContent = remedy;
    if (found) said.href = this.linkTo(found.name, found.fragment);
    refusal.append(' Instead: ', said);
  }

  // What takes longer than the answer.
  #showRest() {
    this.#curve.draw(this.#values, this.#error);
    showCopies(this.#element.querySelector('.copy'), this.#calculation, this.#texts(), this.#error === null ? this.#values : null);
  }
}
