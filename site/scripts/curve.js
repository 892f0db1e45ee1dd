// A calculation over one of its arguments, all others as they stand in the form: picture and table.
import { isDated, isFlag, isList } from '../pages/parameters.js';
import { dayOfISO, isoOfDay } from './days.js';
import { isRefusal } from './form.js';
import { draw } from './picture.js';
import { showTable } from './table.js';
import { answerText, digits, scaleOf, short, Unreadable, valueOf } from './values.js';

const POINTS = 101;
const SLICE = 8; // places that are worked out before the clock is looked at
const LONGEST = 800; // milliseconds that a curve may hold the page up
const LARGEST = 1e307; // twice of it is still a number
const LARGEST_WHOLE = 2 ** 52;
const MOST_ELEMENTS = 24; // of a list that can be drawn over
const YEAR = 365;

const isOfList = ({ element }) => element !== null;

/** What the curve may run over: a parameter, of a list one value. */
export function axesOf(calculation, values) {
  return calculation.arguments.flatMap((parameter) => {
    if (!isList(parameter)) return [{ parameter, element: null, name: parameter.name }];
    const list = values[parameter.name] ?? [];
    return list.slice(0, MOST_ELEMENTS).map((_, i) => ({ parameter, element: i, name: `${parameter.name}-${i + 1}` }));
  });
}

const valueAt = ({ parameter, element }, values) => (element === null ? values[parameter.name] : values[parameter.name]?.[element]);

const within = (low, high) => (value) => Math.min(high, Math.max(low, value));
const CALENDAR = [dayOfISO('0001-01-01'), dayOfISO('9999-12-31')];

/** Where the curve begins and ends unless it is said: around the value that there is. */
export function usualRange(axis, values) {
  const value = valueAt(axis, values);
  const bound = scaleOf(axis.parameter) === 'number' ? LARGEST / 2 : LARGEST_WHOLE / 4;
  const number = within(-bound, bound)(typeof value === 'number' && !Number.isNaN(value) ? value : 0);
  const scale = scaleOf(axis.parameter);
  if (isOfList(axis) && scale === 'number' && number !== 0) return [1.5 * number, 0.5 * number].sort((a, b) => a - b);
  if (isFlag(axis.parameter)) return [0, 1];
  if (scale === 'basis') return [0, 4];
  if (scale === 'date') return [number - YEAR, number + YEAR].map(within(...CALENDAR));
  if (scale === 'whole') return [1, Math.max(12, 2 * Math.abs(Math.trunc(number)))];
  if (number === 0) return [-1, 1];
  return number > 0 ? [0, 2 * number] : [2 * number, 0];
}

/** The places, ascending: whole ones where fractions are refused. */
export function placesIn(axis, [from, to]) {
  const scale = scaleOf(axis.parameter);
  const bound = scale === 'number' ? LARGEST : LARGEST_WHOLE;
  const [low, high] = (from <= to ? [from, to] : [to, from]).map(within(-bound, bound));
  if (scale === 'number') return Array.from({ length: POINTS }, (_, i) => Number((low + ((high - low) * i) / (POINTS - 1)).toPrecision(12)));
  const [first, last] = [Math.ceil(low), Math.floor(high)];
  const step = Math.max(1, Math.ceil((last - first) / (POINTS - 1)));
  return Array.from({ length: Math.max(0, Math.floor((last - first) / step) + 1) }, (_, i) => first + i * step);
}

/** With the place where the form stands, so that it can be marked. */
const withPlace = (places, here) =>
  typeof here === 'number' && here > places[0] && here < places.at(-1) && !places.includes(here)
    ? [...places, here].sort((a, b) => a - b)
    : places;

/**
 * The answers at all places, NaN where there is none; those that are not worked out in time are left out.
 * @returns {{values: number[], firstError: Error|null, count: number}} count: of the places that were worked out
 */
export function answersInTime(engine, calculation, axis, values, places, milliseconds = LONGEST) {
  const begin = performance.now();
  const result = { values: [], firstError: null, count: 0 };
  while (result.count < places.length && (result.count === 0 || performance.now() - begin < milliseconds)) {
    const slice = answersAt(engine, calculation, axis, values, places.slice(result.count, result.count + SLICE));
    result.values.push(...slice.values);
    result.firstError ??= slice.firstError;
    result.count = result.values.length;
  }
  return { ...result, values: places.map((_, i) => result.values[i] ?? NaN) };
}

/** The answers at all places: NaN where there is none. */
export function answersAt(engine, calculation, axis, values, places) {
  const column = Float64Array.from(places);
  const columns = { ...values };
  if (isOfList(axis)) columns[axis.parameter.name] = columns[axis.parameter.name].map((value, i) => (i === axis.element ? column : value));
  else columns[axis.parameter.name] = column;
  return engine.rows(calculation.calculation, columns);
}

const reads = (axis, engine) => {
  const scale = scaleOf(axis.parameter);
  if (scale === 'date') return (at) => isoOfDay(at) ?? digits(at);
  return scale === 'basis' ? (at) => engine.catalogue.bases[at] : digits;
};

export class Curve {
  #element;
  #form;
  #calculation;
  #engine;
  #keepAddress;
  #values = null;
  #fault = null;
  #wanted = {};

  constructor(element, calculation, engine, keepAddress) {
    this.#element = element;
    this.#form = element.querySelector('form');
    this.#calculation = calculation;
    this.#engine = engine;
    this.#keepAddress = keepAddress;
    const again = (event) => {
      if (event.target === this.#form.elements.over) this.#wanted = { over: event.target.value };
      else this.#wanted = { over: this.#form.elements.over.value, from: this.#form.elements.from.value, to: this.#form.elements.to.value };
      this.#draw();
      this.#keepAddress();
    };
    this.#form.addEventListener('submit', (event) => event.preventDefault());
    this.#form.addEventListener('input', again);
  }

  /** @param {{over?: string, from?: string, to?: string}} wanted */
  choose({ over, from, to }) {
    this.#wanted = { over, from, to };
  }

  chosen() {
    const { over = '', from = '', to = '' } = this.#wanted;
    return { over, from, to };
  }

  /** @param {object|null} values of the calculation's arguments, by name; null: they cannot be read, for that fault */
  draw(values, fault) {
    [this.#values, this.#fault] = [values, fault];
    this.#draw();
  }

  #draw() {
    const fault = this.#element.querySelector('.fault');
    fault.textContent = '';
    this.#element.hidden = false; // a picture takes the room that there is
    try {
      if (this.#values === null) throw this.#fault;
      this.#show(this.#values);
    } catch (error) {
      if (!isRefusal(error)) throw error;
      this.#clear();
      fault.textContent = `No curve: ${error.argument ? `${error.argument}: ${error.reason ?? error.message}` : error.message}`;
    }
  }

  #clear() {
    for (const name of ['figure', '.gaps', '.table']) this.#element.querySelector(name).replaceChildren();
  }

  #axis(axes, values) {
    const wanted = axes.find(({ name }) => name === this.#wanted.over);
    if (wanted) return wanted;
    if (this.#wanted.over) this.#wanted = {}; // of a list that was longer
    return axes.find((axis) => scaleOf(axis.parameter) === 'number' && valueAt(axis, values) !== null) ?? axes[0];
  }

  #range(axis, values) {
    const usual = usualRange(axis, values);
    const end = (name, otherwise) => {
      const text = this.#wanted[name]?.trim() ?? '';
      return text === '' ? otherwise : this.#readEnd(name, axis, text);
    };
    const [from, to] = [end('from', usual[0]), end('to', usual[1])];
    if (from === to) throw new Unreadable(axis.name, 'from and to are the same');
    return [from, to];
  }

  #readEnd(name, axis, text) {
    const parameter = { name: `${axis.name}, ${name}`, kind: isDated(axis.parameter) ? 'date' : 'number' };
    const value = valueOf(this.#engine.reading, parameter, text);
    if (typeof value === 'number' && Number.isFinite(value)) return value;
    throw new Unreadable(parameter.name, `'${text}' is no place on the axis`);
  }

  #offer(axes, axis, [from, to], said) {
    const { over, from: first, to: last } = this.#form.elements;
    const names = axes.map(({ name }) => name);
    if ([...over.options].map(({ value }) => value).join() !== names.join()) over.replaceChildren(...names.map((name) => new Option(name, name)));
    over.value = axis.name;
    if (document.activeElement !== first) first.value = this.#wanted.from || said(from);
    if (document.activeElement !== last) last.value = this.#wanted.to || said(to);
  }

  #show(values) {
    const axes = axesOf(this.#calculation, values);
    if (axes.length === 0) throw new Unreadable('', 'there is no value to change');
    const axis = this.#axis(axes, values);
    const said = reads(axis, this.#engine);
    const usual = usualRange(axis, values);
    this.#offer(axes, axis, usual, scaleOf(axis.parameter) === 'basis' ? digits : said);
    const here = valueAt(axis, values);
    const places = withPlace(placesIn(axis, this.#range(axis, values)), here);
    if (places.length === 0) throw new Unreadable(axis.name, 'there is no whole number between from and to');
    const { values: answers, firstError, count } = answersInTime(this.#engine, this.#calculation, axis, values, places);
    const dated = this.#calculation.result === 'date';
    const drawable = (answer) => (dated && isoOfDay(answer) === undefined ? NaN : answer); // some days are in no calendar
    const shown = (answer) => (Number.isNaN(answer) ? 'no answer' : answerText(dated ? (isoOfDay(answer) ?? answer) : answer));
    const name = this.#calculation.calculation;
    const row = places.indexOf(here);
    draw(this.#element.querySelector('figure'), {
      title: `${name} over ${axis.name} from ${said(places[0])} to ${said(places.at(-1))}`,
      x: { label: axis.name, scale: scaleOf(axis.parameter), range: [places[0], places.at(-1)], ticks: scaleOf(axis.parameter) === 'basis' ? places.map((at) => ({ at, text: said(at) })) : undefined },
      y: { scale: dated ? 'date' : 'number' },
      series: [{ name, points: places.map((at, i) => [at, drawable(answers[i])]) }],
      marks: row < 0 || Number.isNaN(drawable(answers[row])) ? [] : [{ at: [places[row], answers[row]] }],
      read: (i) => `${axis.name} ${said(places[i])}: ${dated ? shown(answers[i]) : Number.isNaN(answers[i]) ? 'no answer' : short(answers[i])}`,
    });
    this.#element.querySelector('.gaps').textContent = [
      firstError ? `There is no answer at some places: ${firstError.sentence}.` : '',
      count < places.length ? `These calls are slow: ${count} of ${places.length} places were worked out.` : '',
    ].join(' ');
    showTable(this.#element.querySelector('.table'), [axis.name, name], places.map((at, i) => [said(at), shown(answers[i])]));
  }
}
