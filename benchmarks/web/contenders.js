// RATE, IRR, XIRR, MIRR and NPV: the rows, and who answers them. Each is given a row in its own form, made beforehand.
import { createRequire } from 'node:module';
import * as formulajs from '@formulajs/formulajs';
import * as webcarrot from '@webcarrot/xirr';
import * as financial from 'financial';
import * as zelkovan from '../../build/wasm/package/node.js';

const require = createRequire(import.meta.url); // packages that are no modules
const nodeIrr = require('node-irr');
const xirr = require('xirr');
const { Finance } = require('financejs');
const financejs = new Finance();
const TvmFinance = require('tvm-financejs');
const tvm = new TvmFinance();

// mulberry32, public domain
function random(state) {
  return () => {
    state = (state + 0x6d2b79f5) | 0;
    let t = Math.imul(state ^ (state >>> 15), 1 | state);
    t = (t + Math.imul(t ^ (t >>> 7), 61 | t)) ^ t;
    return ((t ^ (t >>> 14)) >>> 0) / 2 ** 32;
  };
}
const draw = random(1);
const between = (low, high) => low + (high - low) * draw();
const whole = (low, high) => Math.floor(between(low, high + 1));
const rowsOf = (count, make) => Array.from({ length: count }, make);

// An outlay, and what comes back: more than it, in all.
function project(length) {
  const returns = rowsOf(length - 1, () => between(500, 1500));
  return [-returns.reduce((sum, x) => sum + x, 0) * between(0.5, 0.95), ...returns];
}
const swings = (length) => [-between(5000, 20000), ...rowsOf(length - 1, () => between(-300, 1000) * (60 / length))];
const DAY = 86_400_000;
const dated = (length) => {
  let day = Date.UTC(2015, 0, 1);
  return { amounts: project(length), dates: rowsOf(length, (_, i) => new Date(i === 0 ? day : (day += whole(1, 60) * DAY))) };
};

const same = (row) => row;
// name: of the calculation; peers: what form of a row each takes, and its call. As many rows as the nearest cache holds of
// one form: who makes calls one by one has just made their lists.
export const cases = [
  {
    name: 'RATE', rows: rowsOf(1000, () => [whole(60, 400), -between(1000, 2000), between(10000, 50000)]),
    peers: {
      zelkovan: [same, ([n, a, p]) => zelkovan.rate(n, a, p)],
      financial: [same, ([n, a, p]) => financial.rate(n, a, p, 0)],
      '@formulajs/formulajs': [same, ([n, a, p]) => formulajs.RATE(n, a, p)],
      'tvm-financejs': [same, ([n, a, p]) => tvm.RATE(n, a, p)],
    },
  },
  ...[[6, 1000], [60, 100]].flatMap(([length, count]) => [
    {
      name: 'IRR', length, rows: rowsOf(count, () => project(length)),
      peers: {
        zelkovan: [same, (flows) => zelkovan.irr(flows)],
        financial: [same, (flows) => financial.irr(flows)],
        '@formulajs/formulajs': [same, (flows) => formulajs.IRR(flows)],
        'node-irr': [same, (flows) => nodeIrr.irr(flows)],
        financejs: [same, (flows) => financejs.IRR(...flows) / 100],
      },
    },
    {
      name: 'XIRR', length, rows: rowsOf(count, () => dated(length)),
      peers: {
        zelkovan: [same, ({ amounts, dates }) => zelkovan.xirr(amounts, dates)],
        '@formulajs/formulajs': [same, ({ amounts, dates }) => formulajs.XIRR(amounts, dates, 0.1)],
        xirr: [({ amounts, dates }) => amounts.map((amount, i) => ({ amount, when: dates[i] })), xirr],
        '@webcarrot/xirr': [({ amounts, dates }) => amounts.map((amount, i) => ({ amount, date: dates[i] })), webcarrot.xirr],
        // A rate a day there.
        'node-irr': [
          ({ amounts, dates }) => amounts.map((amount, i) => ({ amount, date: dates[i] })),
          (flows) => (1 + nodeIrr.xirr(flows).rate) ** 365 - 1,
        ],
        financejs: [same, ({ amounts, dates }) => financejs.XIRR(amounts, dates, 0.1) / 100],
      },
    },
    {
      name: 'MIRR', length, rows: rowsOf(count, () => [swings(length), between(0.03, 0.1), between(0.01, 0.05)]),
      peers: {
        zelkovan: [same, ([flows, finance, reinvest]) => zelkovan.mirr(flows, finance, reinvest)],
        financial: [same, ([flows, finance, reinvest]) => financial.mirr(flows, finance, reinvest)],
        '@formulajs/formulajs': [same, ([flows, finance, reinvest]) => formulajs.MIRR(flows, finance, reinvest)],
      },
    },
    {
      name: 'NPV', length, rows: rowsOf(count, () => [between(0.01, 0.2), rowsOf(length, () => between(-1000, 2000))]),
      peers: {
        zelkovan: [same, ([rate, flows]) => zelkovan.npv(rate, flows)],
        // The first flow is today's there.
        financial: [same, ([rate, flows]) => financial.npv(rate, flows) / (1 + rate)],
        '@formulajs/formulajs': [same, ([rate, flows]) => formulajs.NPV(rate, flows)],
        financejs: [([rate, flows]) => [rate * 100, 0, ...flows], (row) => financejs.NPV(...row)],
        'tvm-financejs': [same, ([rate, flows]) => tvm.NPV(rate, ...flows)],
      },
    },
  ]),
];
