// What a curve runs over, and that each of its points is the answer of a call.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { textsOf } from '../../site/pages/parameters.js';
import { answersAt, axesOf, placesIn, usualRange } from '../../site/scripts/curve.js';
import { valuesOf } from '../../site/scripts/values.js';
import { toDay } from '../../wasm/javascript/dates.js';
import { calculationNamed, catalogue, engine } from './engine.js';

const exampleOf = ({ arguments: parameters, example }) => valuesOf(engine.reading, parameters, textsOf(example.arguments));

function answer(calculation, values) {
  try {
    return engine.evaluate(calculation, values);
  } catch (error) {
    assert.equal(error.name, 'FinanceError');
    return null;
  }
}

test('each point of each curve of each example is the answer of its call', () => {
  let points = 0;
  let answered = 0;
  for (const calculation of catalogue.calculations) {
    const values = exampleOf(calculation);
    for (const axis of axesOf(calculation, values)) {
      const all = placesIn(axis, usualRange(axis, values));
      const places = all.filter((_, i) => i % 9 === 0);
      const { values: answers } = answersAt(engine, calculation, axis, values, places);
      places.forEach((at, i) => {
        const { name } = axis.parameter;
        const changed = axis.element === null ? at : values[name].map((value, k) => (k === axis.element ? at : value));
        const expected = answer(calculation.calculation, { ...values, [name]: changed });
        const number = typeof expected === 'string' ? (toDay(expected) ?? Number(expected)) : expected;
        assert.ok(Object.is(answers[i], number ?? NaN), `${calculation.calculation} over ${axis.name} at ${at}: ${answers[i]}, not ${number}`);
        ++points;
        if (number !== null) ++answered;
      });
    }
  }
  assert.ok(points > 1000 && answered > points / 2, `${answered} of ${points}`);
});

test('a list is drawn over one of its values', () => {
  const irr = calculationNamed('IRR');
  assert.deepEqual(axesOf(irr, exampleOf(irr)).map(({ name }) => name), ['flows-1', 'flows-2', 'flows-3', 'flows-4', 'flows-5']);
  assert.deepEqual(axesOf(irr, { flows: null }), []);
});

test('places: ascending, whole where the argument is, both ends of numbers', () => {
  const axis = (kind) => ({ parameter: { name: 'x', kind }, element: null, name: 'x' });
  const numbers = placesIn(axis('number'), [0, 0.1]);
  assert.deepEqual([numbers[0], numbers[50], numbers.at(-1), numbers.length], [0, 0.05, 0.1, 101]);
  assert.deepEqual(placesIn(axis('whole number'), [4, 1]), [1, 2, 3, 4]);
  assert.deepEqual(placesIn(axis('whole number'), [0.2, 0.8]), []);
  assert.ok(placesIn(axis('whole number'), [1, 100_000]).length <= 101);
  assert.deepEqual(placesIn(axis('flag'), usualRange(axis('flag'), { x: 1 })), [0, 1]);
  assert.deepEqual(placesIn(axis('day-count basis'), usualRange(axis('day-count basis'), { x: null })), [0, 1, 2, 3, 4]);
});
