// All rates at which flows are worth nothing today, found by bracketing: where the present value changes its sign between
// two points of a fine grid. Rates between which it does not (two within one step, or one that touches 0) are missed; by the
// rule of signs there are at most as many as the flows change theirs.

const LOWEST = Math.log(1e-6); // ln(1 + rate): -99.9999 %
const HIGHEST = Math.log(1 + 1e6);
const STEPS = 8000;

/** @param {{at: number, amount: number}[]} flows at: years, or periods, from the first */
export const changesOfSign = (flows) => {
  const signs = flows.filter(({ amount }) => amount !== 0).map(({ amount }) => amount > 0);
  return signs.filter((sign, i) => i > 0 && sign !== signs[i - 1]).length;
};

export const presentValue = (flows, rate) => flows.reduce((sum, { at, amount }) => sum + amount / (1 + rate) ** at, 0);

// The present value's sign at u = ln(1 + rate): that of the sum times a positive power, so that no factor is above 1.
function signedValue({ flows, largest }, u) {
  const last = flows.at(-1).at;
  const shift = u < 0 ? last : 0;
  let sum = 0;
  for (const { at, amount } of flows) sum += (amount / largest) * Math.exp(-u * (at - shift));
  return sum;
}

// Sums of amounts near the largest double would leave its range.
const scaled = (flows) => ({ flows, largest: Math.max(...flows.map(({ amount }) => Math.abs(amount))) || 1 });

function bisected(scaledFlows, low, high) {
  const falls = signedValue(scaledFlows, low) > 0;
  for (;;) {
    const middle = low + (high - low) / 2;
    if (middle <= low || middle >= high) return middle;
    const value = signedValue(scaledFlows, middle);
    if (value === 0) return middle;
    if (value > 0 === falls) low = middle;
    else high = middle;
  }
}

/**
 * @param {{at: number, amount: number}[]} flows ascending
 * @returns {{rate: number, falls: boolean}[]} ascending; falls: whether the present value falls there as the rate grows
 */
export function ratesOf(flows) {
  const rates = [];
  const scaledFlows = scaled(flows);
  let [before, sign] = [LOWEST, Math.sign(signedValue(scaledFlows, LOWEST))];
  for (let k = 1; k <= STEPS; ++k) {
    const u = LOWEST + ((HIGHEST - LOWEST) * k) / STEPS;
    const next = Math.sign(signedValue(scaledFlows, u));
    if (next === 0) continue; // the next point tells
    if (sign !== 0 && next !== sign) rates.push({ rate: Math.expm1(bisected(scaledFlows, before, u)), falls: sign > 0 });
    [before, sign] = [u, next];
  }
  return rates;
}

/** What can be said of how many there are. @param {number} found rates @param {number} changes of sign */
export function howMany(found, changes) {
  const rates = found === 1 ? '1 rate' : `${found === 0 ? 'no' : found} rates`;
  const range = 'between -99.9999 % and 100,000,000 %';
  if (changes === 0) return 'The amounts do not change sign: there is no rate.';
  if (found === changes) return `${rates[0].toUpperCase()}${rates.slice(1)}, and no others: the amounts change sign ${changes === 1 ? 'once' : `${changes} times`}.`;
  return `Found by bracketing: ${rates} ${range}. The amounts change sign ${changes === 1 ? 'once' : `${changes} times`}, so there are at most ${changes}; those that touch 0 or lie closely in pairs are not seen.`;
}
