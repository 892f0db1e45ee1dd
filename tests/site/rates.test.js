// All rates by bracketing: of flows that are made from the rates that they must have.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { changesOfSign, howMany, presentValue, ratesOf } from '../../site/scripts/rates.js';

// The flows whose present value is the product of (z - z_i), z = 1 / (1 + rate): coefficients, the constant one first.
const flowsWith = (rates) =>
  rates
    .reduce((coefficients, rate) => {
      const z = 1 / (1 + rate);
      return [...coefficients, 0].map((_, k) => (coefficients[k - 1] ?? 0) - z * (coefficients[k] ?? 0));
    }, [1])
    .map((amount, at) => ({ at, amount }));

const near = (found, wanted) => Math.abs(found - wanted) <= 1e-9 * (1 + Math.abs(wanted));

test('every rate of flows that are made of them is found, and no other', () => {
  const cases = [[0.1], [0.1, 0.2], [-0.5, 0, 3], [-0.9, -0.1, 0.05, 0.5], [0.01, 0.02, 0.03], [1000, 0.25]];
  for (const rates of cases) {
    const wanted = [...rates].sort((a, b) => a - b);
    const found = ratesOf(flowsWith(rates));
    assert.equal(found.length, wanted.length, `${rates}`);
    found.forEach(({ rate }, i) => assert.ok(near(rate, wanted[i]), `${rate}, not ${wanted[i]}`));
    const directions = found.map(({ falls }) => falls);
    directions.slice(1).forEach((falls, i) => assert.notEqual(falls, directions[i], 'the value falls and rises in turn'));
  }
});

test('whether the present value falls is seen beside the rate', () => {
  for (const { rate, falls } of ratesOf(flowsWith([0.1, 0.2, 0.4]))) {
    const flows = flowsWith([0.1, 0.2, 0.4]);
    const [before, after] = [presentValue(flows, rate - 0.01), presentValue(flows, rate + 0.01)];
    assert.equal(before > after, falls);
  }
});

test('long lists do not overflow', () => {
  const loan = [{ at: 0, amount: -1000 }, ...Array.from({ length: 1200 }, (_, i) => ({ at: i + 1, amount: 10 }))];
  // 10 forever on 1000 is 1 %; 1,200 periods of it are 1 % less 1.01^-1200 of it
  const [{ rate }] = ratesOf(loan);
  assert.ok(Math.abs(rate - 0.01) < 1e-6, String(rate));
});

test('amounts near the largest double', () => {
  // 1e308 * (1 + z - z^2 - z^3) = 1e308 * (1 + z)^2 (1 - z): the rate is 0
  const [found, ...others] = ratesOf([1e308, 1e308, -1e308, -1e308].map((amount, at) => ({ at, amount })));
  assert.deepEqual(others, []);
  assert.ok(Math.abs(found.rate) < 1e-12, String(found.rate));
});

test('what is said of their number', () => {
  assert.equal(changesOfSign([{ amount: -1 }, { amount: 0 }, { amount: 2 }, { amount: -3 }]), 2);
  assert.equal(howMany(0, 0), 'The amounts do not change sign: there is no rate.');
  assert.equal(howMany(1, 1), '1 rate, and no others: the amounts change sign once.');
  assert.match(howMany(1, 3), /^Found by bracketing: 1 rate between .* at most 3;/);
  assert.deepEqual(ratesOf([{ at: 0, amount: 1 }, { at: 1, amount: 2 }]), []);
});
