// What calculations and arguments are called in JavaScript.

const RESERVED = new Set(['yield']);

export const lowerCase = ({ calculation }) => calculation.toLowerCase();

/** A name that may be declared: yield_, since JavaScript keeps that word for itself. */
export const declared = (name) => (RESERVED.has(name) ? `${name}_` : name);

/** The exported functions whose declared name is another one. */
export const renamed = (calculations) => calculations.map(lowerCase).filter((name) => declared(name) !== name);
