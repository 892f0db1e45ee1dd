// Packages of npm over the columns that peers.py writes:
//
//     node npm_columns.mjs PACKAGE DATA PACKAGES    PACKAGE is financial, @formulajs/formulajs or xirr
//
// For each line of input, CASE ROWS LENGTH, it calculates the first rows, writes the answers to DATA/answers.f64 and
// prints the seconds that they took, or "none" where the package has no such function. Arrays, dates and transactions
// are made before: what is timed is the package.
import { readFileSync, writeFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { createInterface } from 'node:readline';

const [, , name, data, packages] = process.argv;
const peer = createRequire(`${packages}/`)(name);

const numbers = (which, column) => {
  const bytes = readFileSync(`${data}/${which}.${column}.f64`);
  return new Float64Array(bytes.buffer, bytes.byteOffset, bytes.length / 8);
};
const date = (day) => new Date((day - 3653) * 86400e3);  // days since 1960-01-01, 3653 before 1970-01-01

// What answers row i, or nothing. of(k) is column k, lists(k) its lists.
const tables = {
  financial: {
    PMT: (of) => { const [r, n, pv] = [of(0), of(1), of(2)]; return (i) => peer.pmt(r[i], n[i], pv[i]); },
    RATE: (of) => { const [n, a, pv] = [of(0), of(1), of(2)]; return (i) => peer.rate(n[i], a[i], pv[i], 0); },
    // The first flow is today's there.
    NPV: (of, lists) => { const [r, v] = [of(0), lists(1)]; return (i) => peer.npv(r[i], v[i]) / (1 + r[i]); },
    IRR: (of, lists) => { const v = lists(0); return (i) => peer.irr(v[i]); },
    MIRR: (of, lists) => { const [v, f, r] = [lists(0), of(1), of(2)]; return (i) => peer.mirr(v[i], f[i], r[i]); },
  },
  '@formulajs/formulajs': {
    PMT: (of) => { const [r, n, pv] = [of(0), of(1), of(2)]; return (i) => peer.PMT(r[i], n[i], pv[i]); },
    RATE: (of) => { const [n, a, pv] = [of(0), of(1), of(2)]; return (i) => peer.RATE(n[i], a[i], pv[i]); },
    NPV: (of, lists) => { const [r, v] = [of(0), lists(1)]; return (i) => peer.NPV(r[i], v[i]); },
    IRR: (of, lists) => { const v = lists(0); return (i) => peer.IRR(v[i]); },
    MIRR: (of, lists) => { const [v, f, r] = [lists(0), of(1), of(2)]; return (i) => peer.MIRR(v[i], f[i], r[i]); },
    XNPV: (of, lists) => {
      const [r, v, days] = [of(0), lists(1), lists(2, date)];
      return (i) => peer.XNPV(r[i], v[i], days[i]);
    },
    XIRR: (of, lists) => { const [v, days] = [lists(0), lists(1, date)]; return (i) => peer.XIRR(v[i], days[i], 0.1); },
  },
  xirr: {
    XIRR: (of, lists) => {
      const [v, days] = [lists(0), lists(1, date)];
      const flows = v.map((row, i) => row.map((amount, k) => ({ amount, when: days[i][k] })));
      return (i) => peer(flows[i]);
    },
  },
};

function made(which, rows, length) {
  const lists = (column, of = (x) => x) => {
    const all = numbers(which, column);
    return Array.from({ length: rows }, (_, i) => Array.from(all.subarray(i * length, (i + 1) * length), of));
  };
  return tables[name][which]((column) => numbers(which, column), lists);
}

const kept = new Map();
for await (const line of createInterface({ input: process.stdin })) {
  const [which, rows, length] = line.split(' ');
  if (!(which in tables[name])) {
    console.log('none');
    continue;
  }
  if (!kept.has(which)) kept.set(which, made(which, Number(rows), Number(length)));
  const answer = kept.get(which);
  const answers = new Float64Array(Number(rows));
  const start = process.hrtime.bigint();
  for (let i = 0; i < answers.length; ++i) {
    try {
      answers[i] = answer(i);  // what is no number becomes NaN
    } catch {
      answers[i] = NaN;
    }
  }
  const seconds = Number(process.hrtime.bigint() - start) / 1e9;
  writeFileSync(`${data}/answers.f64`, answers);
  console.log(seconds);
}
