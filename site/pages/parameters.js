// What pages know of a parameter beside the catalogue's own words.

export { isBasis, isDated, isList } from '../../wasm/javascript/arguments.js';

export const isFlag = ({ kind }) => kind === 'flag';
export const isOptional = ({ need }) => need === 'optional';

/** The arguments of an example, "rate=0.005 nper=360", as texts by name. */
export const textsOf = (words) => Object.fromEntries(words.split(' ').map((word) => word.split(/=(.*)/s, 2)));

/** What is said beside a field: what it is, and the rule. */
export function noteOf(parameter) {
  const left = isOptional(parameter) && parameter.default !== 'none' ? `left out: ${parameter.default}` : null;
  const said = parameter.meaning.includes('left out') ? null : left;
  return [parameter.meaning, parameter.rule, said].filter(Boolean).join('; ');
}
