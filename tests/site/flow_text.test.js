// Rows as people paste them. Expected days and amounts are derived by hand.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { readFlows } from '../../site/scripts/flow_text.js';
import { toDay } from '../../wasm/javascript/dates.js';
import { engine } from './engine.js';

const read = (text, said) => readFlows(engine.reading, text, said);
const flowsOf = ({ flows }) => flows.map(({ date, amount }) => [date, amount]);
const rows = (...pairs) => pairs.map(([date, amount]) => [date === null ? null : toDay(date), amount]);

const CASES = [
  ['tabs of a sheet', '2021-03-01\t-1,000.00\n2022-03-01\t$2,300.50\n', rows(['2021-03-01', -1000], ['2022-03-01', 2300.5])],
  ['brackets, and a title', 'Date\tAmount\n2021-03-01\t(1,000)\n2022-03-01\t1 200\n', rows(['2021-03-01', -1000], ['2022-03-01', 1200])],
  ['semicolons and decimal commas', '01.03.2021;-1.000,50\n15.03.2022;1.200,00\n', rows(['2021-03-01', -1000.5], ['2022-03-15', 1200])],
  ['commas', '2021-03-01,-1000.25\n2022-03-01,1300\n', rows(['2021-03-01', -1000.25], ['2022-03-01', 1300])],
  ['commas that group, too', '2021-03-01,-1,000.25\n2022-03-01,1300\n', rows(['2021-03-01', -1000.25], ['2022-03-01', 1300])],
  ['quoted fields', '"2021-03-01","-1,000.25"\n"2022-03-01","1,300"\n', rows(['2021-03-01', -1000.25], ['2022-03-01', 1300])],
  ['more columns', 'mill,2021-03-01,-1000\nmill,2022-03-01,1300\n', rows(['2021-03-01', -1000], ['2022-03-01', 1300])],
  ['amounts before dates', '-1000\t2021-03-01\n1300\t2022-03-01\n', rows(['2021-03-01', -1000], ['2022-03-01', 1300])],
  ['blanks', '2021-03-01 -1 000.25\n2022-03-01 1300\n', rows(['2021-03-01', -1000.25], ['2022-03-01', 1300])],
  ["a sheet's serial numbers", '44256\t-1000\n44621\t1300\n', rows(['2021-03-01', -1000], ['2022-03-01', 1300])],
  ['months first', '03/31/2021\t-1000\n12/31/2022\t1300\n', rows(['2021-03-31', -1000], ['2022-12-31', 1300])],
  ['amounts alone', '-1,000.00\n600\n600\n', rows([null, -1000], [null, 600], [null, 600])],
  ['currencies by code', '2021-03-01\tEUR -5\n2022-03-01\t6 EUR\n', rows(['2021-03-01', -5], ['2022-03-01', 6])],
];

for (const [what, text, expected] of CASES) {
  test(what, () => {
    const got = read(text);
    assert.deepEqual(flowsOf(got), expected);
    assert.deepEqual(got.faults, []);
  });
}

test('where another reading fits as well, it is told', () => {
  assert.deepEqual(read('01/03/2021\t-1000\n02/03/2022\t1300\n').otherDates, ['mdy']);
  assert.deepEqual(read('31/03/2021\t-1000\n02/03/2022\t1300\n').otherDates, []);
  assert.deepEqual(flowsOf(read('01/03/2021\t-1000\n', { dates: 'mdy' })), rows(['2021-01-03', -1000]));
  assert.equal(read('-1.000\n1.500\n').otherDecimal, true);
  assert.deepEqual(flowsOf(read('-1.000\n1.500\n', { decimal: 'comma' })), rows([null, -1000], [null, 1500]));
  assert.equal(read('-1000\n1500\n').otherDecimal, false);
});

test('a row that cannot be read is a fault, with its line', () => {
  const { flows, faults } = read('date\tamount\n2021-03-01\t-1000\n2021-02-30\t5\n2022-03-01\tn/a\n\n2023-03-01\t1300\n');
  assert.equal(flows.length, 2);
  assert.deepEqual(faults, [
    { line: 3, what: 'date', text: '2021-02-30' },
    { line: 4, what: 'amount', text: 'n/a' },
  ]);
});

test('nothing that can be read', () => {
  for (const text of ['', '\n \n']) assert.deepEqual([read(text).flows, read(text).faults], [[], []]);
  assert.deepEqual(read('hello\nworld\n').faults, [{ line: 1, what: 'amount', text: 'hello' }]);
});

test('a first row with digits that cannot be read is no title', () => {
  const firsts = ['2021-03-01\t-1000.0O', '2021-02-30\t-1000', '2021-03-01\t\u22121 000,50', '2021-03-01\t1000-', 'invested\t-1000'];
  for (const first of firsts) {
    const { flows, faults } = read(`${first}\n2022-03-01\t-50\n2023-03-01\t1300\n`);
    assert.deepEqual([flows.length, faults.map(({ line }) => line)], [2, [1]], first);
  }
  assert.deepEqual(read('My fund\nday\tamount\n2021-03-01\t-5\n').titles, [1, 2]);
});

test('amounts are the column with signs, and other numbers are told', () => {
  const cases = [
    ['1\t2021-03-01\t-1000\n2\t2022-03-01\t1300\n', [-1000, 1300], 3, [1]],
    ['0\t-1000\n1\t300\n2\t900\n', [-1000, 300, 900], 2, [1]],
    ['0,-1000\n1,300\n2,900\n', [-1000, 300, 900], 2, [1]],
    ['2020\t1000\n2021\t-300\n', [1000, -300], 2, [1]],
    ['1\t500\n2\t700\n3\t900\n', [500, 700, 900], 2, [1]],
    ['2021-03-01\t1001\t-1000\n2022-03-01\t1002\t1300\n', [-1000, 1300], 3, [2]],
  ];
  for (const [text, amounts, column, others] of cases) {
    const got = read(text);
    assert.deepEqual([got.flows.map(({ amount }) => amount), got.column, got.otherColumns], [amounts, column, others], text);
  }
});

test('dates that do not read are faults, not rows without dates', () => {
  for (const date of ['01/03/21', '1 Mar 2021', '2021-03-01 00:00:00']) {
    const { flows, faults } = read(`${date}\t-1000\n${date}\t1300\n`);
    assert.deepEqual([flows, faults.map(({ what, text }) => [what, text])], [[], [['date', date], ['date', date]]], date);
  }
  assert.equal(read('1\t-1000\n2\t1300\n', { dates: 'dmy' }).faults.length, 2);
});

test('amounts in two columns are not taken for one', () => {
  const { faults } = read('2021-03-01\t1000\t\n2022-03-01\t\t1300\n');
  assert.equal(faults.length, 1);
});

test('one line of amounts is a list', () => {
  for (const text of ['-1000, 300, 400, 500', '-1000\t300\t400\t500\n', '-1000;300;400;500', '-1000 300 400 500'])
    assert.deepEqual(flowsOf(read(text)), rows([null, -1000], [null, 300], [null, 400], [null, 500]), text);
  assert.deepEqual(flowsOf(read('-1,000.50')), rows([null, -1000.5]));
});

test('rows beyond the first sixty decide, too', () => {
  const text = Array.from({ length: 80 }, (_, i) => `${String((i % 12) + 1).padStart(2, '0')}/${i < 70 ? '01' : '15'}/20${10 + Math.floor(i / 12)}\t${i === 0 ? -100 : 2}`).join('\r\n');
  const got = read(text);
  assert.deepEqual([got.dates, got.flows.length, got.faults], ['mdy', 80, []]);
});
