// Search over names, arguments and words: of calculations and of the pages of docs.

const WEIGHT = { name: 100, beginning: 60, title: 30, argument: 12, words: 4 };
const MOST = 12;

const wordsOf = (text) => text.toLowerCase().match(/[\p{L}\p{N}]+/gu) ?? [];

/** @param {object} calculation of the catalogue */
export function entryOfCalculation(calculation, address) {
  const { calculation: name, answers, family, remarks, formula, failure, arguments: parameters } = calculation;
  return {
    address, name, title: answers,
    argumentNames: parameters.map((parameter) => parameter.name.toLowerCase()),
    words: new Set(wordsOf([family, remarks, formula, failure, ...parameters.map(({ meaning }) => meaning)].join(' '))),
  };
}

/** @param {{address, title, words: string}} section of a page of docs */
export const entryOfSection = ({ address, name, title, words }) => ({ address, name, title, argumentNames: [], words: new Set(wordsOf(words)) });

const someBegins = (words, word) => {
  for (const one of words) if (one.startsWith(word)) return true;
  return false;
};

// How well one word fits; 0: it does not.
function fit(entry, word) {
  const name = entry.name.toLowerCase();
  if (name === word) return WEIGHT.name;
  if (name.startsWith(word)) return WEIGHT.beginning;
  if (someBegins(wordsOf(entry.title), word) || someBegins(wordsOf(name), word)) return WEIGHT.title;
  if (entry.argumentNames.some((argument) => argument.startsWith(word))) return WEIGHT.argument;
  return someBegins(entry.words, word) ? WEIGHT.words : 0;
}

/** Entries that every word fits, or else some do, the best first. */
export function found(entries, query) {
  const words = wordsOf(query);
  if (words.length === 0) return [];
  const rated = entries.map((entry) => {
    const fits = words.map((word) => fit(entry, word));
    return { entry, all: !fits.includes(0), rating: fits.reduce((sum, one) => sum + one, 0) };
  });
  const whole = rated.filter(({ all }) => all);
  const fitting = whole.length > 0 ? whole : rated.filter(({ rating }) => rating > 0);
  return fitting.sort((a, b) => b.rating - a.rating).slice(0, MOST).map(({ entry }) => entry);
}

/** The field in the header: what is found below it, chosen with arrows and Enter. */
export function attachSearch(element, entries) {
  const input = element.querySelector('input');
  const list = element.querySelector('ul');
  let active = -1;
  const options = () => [...list.querySelectorAll('[role=option]')];
  const activate = (next) => {
    const all = options();
    active = all.length === 0 ? -1 : (next + all.length) % all.length;
    all.forEach((option, i) => option.setAttribute('aria-selected', String(i === active)));
    if (active >= 0) {
      input.setAttribute('aria-activedescendant', all[active].id);
      all[active].scrollIntoView({ block: 'nearest' });
    } else input.removeAttribute('aria-activedescendant');
  };
  const open = (shown) => {
    list.hidden = !shown;
    input.setAttribute('aria-expanded', String(shown));
  };
  const show = () => {
    const results = found(entries, input.value);
    list.replaceChildren(...results.map(optionOf));
    if (results.length === 0 && input.value.trim() !== '') list.append(nothing());
    open(input.value.trim() !== '');
    activate(results.length > 0 ? 0 : -1);
  };
  input.addEventListener('input', show);
  input.addEventListener('keydown', (event) => {
    if (event.key === 'ArrowDown' || event.key === 'ArrowUp') {
      event.preventDefault();
      if (list.hidden) show();
      else activate(active + (event.key === 'ArrowDown' ? 1 : -1));
    } else if (event.key === 'Enter' && active >= 0) {
      event.preventDefault();
      options()[active].click();
    } else if (event.key === 'Escape') open(false);
  });
  list.addEventListener('click', () => open(false));
  document.addEventListener('click', (event) => element.contains(event.target) || open(false));
  element.addEventListener('focusout', (event) => element.contains(event.relatedTarget) || setTimeout(() => open(false), 150));
  element.hidden = false;
}

function optionOf(entry, i) {
  const option = document.createElement('li');
  option.id = `found-${i}`;
  option.setAttribute('role', 'option');
  const name = document.createElement('strong');
  name.textContent = entry.name;
  option.append(name, entry.title === '' ? '' : ` ${entry.title}`);
  option.addEventListener('mousedown', (event) => event.preventDefault());
  option.addEventListener('click', () => location.assign(entry.address));
  return option;
}

function nothing() {
  const item = document.createElement('li');
  item.setAttribute('role', 'option');
  item.setAttribute('aria-disabled', 'true');
  item.textContent = 'nothing found';
  return item;
}
