// Pictures as SVG: lines, bars, marked points over two axes, and what lies under the pointer.
import { html, raw } from '../pages/html.js';
import { dateTicks, numberTicks } from './ticks.js';

const WIDEST = 640;
const NARROWEST = 280;
const ROOM = { left: 52, right: 18, top: 14, bottom: 46 };
const PIXELS_OF_LETTER = 6.8;
const PIXELS_OF_TICK = 75;
const MANY_BARS = 100;
const GAP = 0.04; // of the height, above and below what is drawn

const place = (number) => number.toFixed(1).replace(/\.0$/, '');

function extent(values) {
  let [low, high] = [Infinity, -Infinity];
  for (const value of values) {
    if (!Number.isFinite(value)) continue;
    low = Math.min(low, value);
    high = Math.max(high, value);
  }
  return low <= high ? [low, high] : [0, 1];
}

function widened([low, high], share) {
  const span = high - low || Math.abs(high) || 1;
  return high === low ? [low - span / 2, high + span / 2] : [low - span * share, high + span * share];
}

const between = (low, high, from, to) => (value) => from + ((value - low) / (high - low)) * (to - from);

// As wide as there is room, so that letters keep their size.
function plotOf(figure) {
  const width = Math.min(WIDEST, Math.max(NARROWEST, Math.round(figure.clientWidth || WIDEST)));
  const height = Math.round(Math.max(240, width * 0.53));
  return { width, height, left: ROOM.left, right: width - ROOM.right, top: ROOM.top, bottom: height - ROOM.bottom };
}

/** Where what is drawn lies: the scales of both axes. */
function scalesOf({ x, series, marks = [], zero }, plot) {
  const bars = series.filter(({ kind }) => kind === 'bars');
  const xs = x.range ?? extent(series.flatMap(({ points }) => points.map(([at]) => at)));
  const heights = series.flatMap(({ points }) => points.map(([, height]) => height)).concat(marks.map(({ at }) => at[1]));
  if (zero || bars.length > 0) heights.push(0);
  const [low, high] = bars.length > 0 ? widened(xs, 0.5 / Math.max(1, bars[0].points.length - 1)) : xs[0] === xs[1] ? widened(xs, 0) : xs;
  const [bottom, top] = widened(extent(heights), GAP);
  return { plot, low, high, bottom, top, x: between(low, high, plot.left, plot.right), y: between(bottom, top, plot.bottom, plot.top) };
}

// A line is broken where there is no value; a value alone is a dot.
function line(points, scales) {
  const parts = [];
  let part = [];
  for (const [at, height] of [...points, [NaN, NaN]]) {
    if (Number.isFinite(height)) {
      part.push(`${place(scales.x(at))},${place(scales.y(height))}`);
    } else if (part.length > 0) {
      parts.push(part);
      part = [];
    }
  }
  return parts.map((one) => {
    if (one.length > 1) return html`<polyline points="${one.join(' ')}"/>`;
    const [cx, cy] = one[0].split(',');
    return html`<circle cx="${cx}" cy="${cy}" r="2.5"/>`;
  });
}

function bars(points, scales, stacked) {
  const share = points.length > MANY_BARS ? 1.05 : 0.8; // of what there is for each: many touch
  const width = ((scales.plot.right - scales.plot.left) / Math.max(1, points.length)) * share;
  return points.map(([at, height], i) => {
    if (!Number.isFinite(height)) return null;
    const from = stacked[i] ?? 0;
    const [a, b] = [scales.y(from), scales.y(height)];
    return html`<rect x="${place(scales.x(at) - width / 2)}" y="${place(Math.min(a, b))}" width="${place(width)}" height="${place(Math.abs(a - b))}"/>`;
  });
}

const group = (series, i, content) => html`<g class="series s${i + 1} ${series.kind ?? 'line'}">${content}</g>`;

/** Bars stand on those before them: points of bars are the tops. */
function drawn(series, scales) {
  let stacked = [];
  return series.map((one, i) => {
    if (one.kind !== 'bars') return group(one, i, line(one.points, scales));
    const content = bars(one.points, scales, stacked);
    stacked = one.points.map(([, height]) => height);
    return group(one, i, content);
  });
}

const ticksUp = ({ y }, { bottom, top }) => (y.scale === 'date' ? dateTicks(bottom, top, 5) : numberTicks(bottom, top, 6));

// The last label ends with the picture.
const anchorOf = (plot, x) => (x > plot.right - 2 * ROOM.right ? html` class="last"` : null);

function axes(picture, scales) {
  const { x } = picture;
  const { plot } = scales;
  const most = Math.max(3, Math.floor((plot.right - plot.left) / PIXELS_OF_TICK));
  const across = x.ticks ?? (x.scale === 'date' ? dateTicks(scales.low, scales.high, most) : numberTicks(scales.low, scales.high, most, x.scale === 'whole'));
  const up = ticksUp(picture, scales);
  const yOf = ({ at }) => place(scales.y(at));
  const xOf = ({ at }) => place(scales.x(at));
  return html`<g class="grid">${up.map((tick) => html`<line x1="${plot.left}" x2="${plot.right}" y1="${yOf(tick)}" y2="${yOf(tick)}"${
    tick.at === 0 ? html` class="zero"` : null}/>`)}</g>
    <g class="ticks up">${up.map((tick) => html`<text x="${plot.left - 8}" y="${yOf(tick)}" dy="0.32em">${tick.text}</text>`)}</g>
    <g class="ticks across">${across.map((tick) => html`<line x1="${xOf(tick)}" x2="${xOf(tick)}" y1="${plot.bottom}" y2="${plot.bottom + 5}"/><text${anchorOf(plot, scales.x(tick.at))} x="${
      xOf(tick)}" y="${plot.bottom + 18}">${tick.text}</text>`)}</g>
    <text class="axis" x="${(plot.left + plot.right) / 2}" y="${plot.height - 8}">${x.label}</text>`;
}

const mark = (scales) => ({ at: [x, y], text }) => html`
  <g class="mark"><circle cx="${place(scales.x(x))}" cy="${place(scales.y(y))}" r="5"/>${
    text && html`<text x="${place(scales.x(x))}" y="${place(scales.y(y) - 10)}">${text}</text>`}</g>`;

const legend = (series) =>
  series.length < 2 ? null : html`<ul class="legend">${series.map(({ name, kind }, i) => html`<li class="s${i + 1} ${kind ?? 'line'}">${name}</li>`)}</ul>`;

/**
 * @param {HTMLElement} figure that shows it
 * @param {{title: string, x: {label, scale, range?, ticks?}, y: {scale?}, series: {name, kind?: 'line'|'bars', points: [number, number][]}[],
 *   marks?: {at: [number, number], text?: string}[], zero?: boolean, read: (i: number) => string}} picture
 *   zero: whether the axis must reach 0; read: what the i-th point says, shown under the pointer
 */
export function draw(figure, picture) {
  const plot = plotOf(figure);
  let scales = scalesOf(picture, plot);
  const letters = Math.max(...ticksUp(picture, scales).map(({ text }) => text.length), 0);
  plot.left = Math.max(ROOM.left, Math.round(14 + PIXELS_OF_LETTER * letters));
  scales = scalesOf(picture, plot);
  figure.innerHTML = html`<figcaption>${picture.title}</figcaption><svg viewBox="0 0 ${plot.width} ${plot.height}" role="img" aria-label="${picture.title}">
    ${axes(picture, scales)}${drawn(picture.series, scales)}${(picture.marks ?? []).map(mark(scales))}
    <line class="pointer" y1="${plot.top}" y2="${plot.bottom}" visibility="hidden"/></svg>
    <p class="readout" aria-hidden="true">${raw('&nbsp;')}</p>${legend(picture.series)}`.text;
  follow(figure, picture, scales);
  drawAgain(figure, picture, plot.width);
}

const watched = new WeakMap();

// Where there is more room, or less, than there was.
function drawAgain(figure, picture, width) {
  watched.get(figure)?.disconnect();
  const watch = new ResizeObserver(() => figure.isConnected && plotOf(figure).width !== width && draw(figure, picture));
  watched.set(figure, watch);
  watch.observe(figure);
}

// The nearest point under the pointer.
function follow(figure, picture, scales) {
  const svg = figure.querySelector('svg');
  const pointer = svg.querySelector('.pointer');
  const readout = figure.querySelector('.readout');
  const points = picture.series[0].points;
  svg.addEventListener('pointermove', (event) => {
    const box = svg.getBoundingClientRect();
    const across = ((event.clientX - box.left) / box.width) * scales.plot.width;
    const distance = ([at]) => Math.abs(scales.x(at) - across);
    let nearest = 0;
    for (let i = 1; i < points.length; ++i) if (distance(points[i]) < distance(points[nearest])) nearest = i;
    const x = place(scales.x(points[nearest][0]));
    pointer.setAttribute('x1', x);
    pointer.setAttribute('x2', x);
    pointer.setAttribute('visibility', 'visible');
    readout.textContent = picture.read(nearest);
  });
  svg.addEventListener('pointerleave', () => {
    pointer.setAttribute('visibility', 'hidden');
    readout.textContent = '\u00a0';
  });
}
