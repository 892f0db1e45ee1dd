// HTML as template literals: what is put in is escaped, unless it is HTML itself; of a list its items, of nothing nothing.
const ENTITIES = { '&': '&amp;', '<': '&lt;', '>': '&gt;', '"': '&quot;', "'": '&#39;' };

class Html {
  constructor(text) {
    this.text = text;
  }
  toString() {
    return this.text;
  }
}

export const raw = (text) => new Html(text);

const escaped = (text) => text.replace(/[&<>"']/g, (character) => ENTITIES[character]);

function put(value) {
  if (value === null || value === undefined || value === false) return '';
  if (value instanceof Html) return value.text;
  if (Array.isArray(value)) return value.map(put).join('');
  return escaped(String(value));
}

export const html = (strings, ...values) => new Html(String.raw({ raw: strings }, ...values.map(put)));
