// Texts of fields, addresses, ticks, search: what pages do beside calculating. Expected values are derived by hand.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { textsOf } from '../../site/pages/parameters.js';
import { fragmentOf, readFragment } from '../../site/scripts/address.js';
import { monthsLater } from '../../site/scripts/days.js';
import { entryOfCalculation, found } from '../../site/scripts/search.js';
import { dateTicks, numberTicks } from '../../site/scripts/ticks.js';
import { grouped, percentage, Unreadable, valueOf, valuesOf } from '../../site/scripts/values.js';
import { toDay } from '../../wasm/javascript/dates.js';
import { calculationNamed, catalogue, engine } from './engine.js';

const number = { name: 'x', kind: 'number' };
const list = { name: 'flows', kind: 'numbers' };

test('a field is read as the command reads an argument', () => {
  const cases = [
    [number, ' 5.75% ', 0.0575],
    [number, '', null],
    [number, '.', NaN],
    [number, '1e-3', 0.001],
    [{ name: 'd', kind: 'date' }, '2008-02-15', 17577],
    [{ name: 'b', kind: 'day-count basis' }, 'ACT/360', 'ACT/360'],
    [list, '-1000, 300,400 , 50%', [-1000, 300, 400, 0.5]],
    [list, '-1,000.00\n300.00\n(900)\n', [-1000, 300, -900]],
    [list, '-1,000;300', [-1000, 300]],
    [list, ' \n', null],
    [{ name: 'dates', kind: 'dates' }, '1960-01-01,1960-01-02', [0, 1]],
  ];
  for (const [parameter, text, value] of cases) assert.deepEqual(valueOf(engine.reading, parameter, text), value, text);
});

test('what cannot be read is said of its argument, in a list of its value', () => {
  const fault = (parameter, text) => {
    try {
      valueOf(engine.reading, parameter, text);
    } catch (error) {
      assert.ok(error instanceof Unreadable);
      return [error.argument, error.element, error.message];
    }
    return undefined;
  };
  assert.deepEqual(fault(number, 'five'), ['x', null, "'five' is not a number"]);
  assert.deepEqual(fault(list, '1,2,x'), ['flows', 3, "'x' is not a number"]);
  assert.deepEqual(fault(list, '1,,2'), ['flows', 2, 'there is no value between two commas']);
  assert.deepEqual(fault(list, '1 2'), ['flows', 1, "'1 2' is not a number"]);
  assert.deepEqual(fault(number, '200,000'), ['x', null, "'200,000' is not a number: write 200000"]);
  assert.deepEqual(fault(number, '6%/12'), ['x', null, "'6%/12' is not a number (formulas are worked out by the command finance)"]);
});

test('the text of each example gives its answer', () => {
  for (const { calculation, arguments: parameters, example, result } of catalogue.calculations) {
    const answer = engine.evaluate(calculation, valuesOf(engine.reading, parameters, textsOf(example.arguments)));
    assert.equal(answer, result === 'date' ? example.result : Number(example.result), calculation);
  }
});

test('an address keeps texts as they were typed, and only those that differ', () => {
  const texts = { rate: '5.75%', dates: '2024-01-01,2025-01-01', odd: 'a=b&c d+e', basis: '30/360', same: '1' };
  const fragment = fragmentOf(texts, { same: '1' });
  assert.equal(fragment, 'rate=5.75%25&dates=2024-01-01,2025-01-01&odd=a%3Db%26c%20d%2Be&basis=30/360');
  assert.deepEqual(readFragment(`#${fragment}`), { rate: '5.75%', dates: '2024-01-01,2025-01-01', odd: 'a=b&c d+e', basis: '30/360' });
  assert.deepEqual(readFragment(''), {});
});

test('numbers for people', () => {
  assert.equal(grouped(-1199.1010503), '-1,199.10');
  assert.equal(grouped(-1e-9), '0.00');
  assert.equal(grouped(NaN), '');
  assert.equal(percentage(0.0602972282), '6.02972 %');
  assert.equal(percentage(0.1), '10 %');
  assert.equal(percentage(-0.5), '-50 %');
});

test('months later is the same day of the month or the last', () => {
  const cases = [
    ['2025-01-31', 1, '2025-02-28'],
    ['2023-01-31', 13, '2024-02-29'],
    ['2025-01-31', 2, '2025-03-31'],
    ['1899-11-30', 3, '1900-02-28'],
    ['2025-03-15', -3, '2024-12-15'],
  ];
  for (const [from, months, to] of cases) assert.equal(monthsLater(toDay(from), months), toDay(to), `${from} ${months}`);
  assert.equal(monthsLater(toDay('9999-12-31'), 1), undefined);
});

test('ticks are round and within', () => {
  const texts = (ticks) => ticks.map(({ text }) => text);
  assert.deepEqual(texts(numberTicks(0, 0.1, 5)), ['0.00', '0.02', '0.04', '0.06', '0.08', '0.10']);
  assert.deepEqual(texts(numberTicks(-1200, 80, 6)), ['-1,000', '-500', '0']);
  assert.deepEqual(texts(numberTicks(1, 4, 12, true)), ['1', '2', '3', '4']);
  assert.deepEqual(numberTicks(0, Infinity), []);
  const years = dateTicks(toDay('2024-06-01'), toDay('2030-06-01'), 6);
  assert.deepEqual(texts(years), ['2025', '2026', '2027', '2028', '2029', '2030']);
  const months = dateTicks(toDay('2024-12-15'), toDay('2025-05-02'), 6);
  assert.deepEqual(texts(months), ['2025-01', '2025-02', '2025-03', '2025-04', '2025-05']);
  for (const span of [1, 3, 40, 300, 4000, 100_000, 3_000_000]) {
    const ticks = dateTicks(0, Math.min(span, toDay('9999-12-31')), 6);
    assert.ok(ticks.length >= 1 && ticks.length <= 14, `${span}: ${ticks.length}`);
  }
});

test('search finds names first, then titles, arguments and words', () => {
  const entries = catalogue.calculations.map((calculation) => entryOfCalculation(calculation, calculation.calculation));
  const names = (query) => found(entries, query).map(({ name }) => name);
  assert.equal(names('pmt')[0], 'PMT');
  assert.equal(names('PRICE')[0], 'PRICE');
  assert.deepEqual(names('bond equivalent'), ['TBILLEQ']);
  assert.ok(names('reinvestRate').includes('MIRR'));
  assert.equal(names('irr zzz')[0], 'IRR');
  assert.deepEqual(names('zzz'), []);
  assert.deepEqual(names('  '), []);
  assert.equal(calculationNamed('TBILLEQ').calculation, 'TBILLEQ');
});
