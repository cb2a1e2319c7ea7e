'use strict';
// Reads the data, fills the overview and draws a row of charts for each stream. All charts share their range and cursor.

const data = JSON.parse(document.getElementById('data').textContent);
const root = document.documentElement;
const EVENTS = ['PLI', 'FIR', 'BYE'];
const MOST_OPEN = 24;  // streams whose charts are drawn at once; the others are drawn when they are opened
const CHART_HEIGHT = 160;
const charts = [];

function element(name, properties = {}, ...children) {
  const made = Object.assign(document.createElement(name), properties);
  made.append(...children);
  return made;
}

function endpoint({address, port}) {
  return (address.includes(':') ? `[${address}]` : address) + ':' + port;
}

function digits(value) {
  const size = Math.abs(value);
  return value.toFixed(size >= 1000 || value === Math.round(value) ? 0 : size >= 10 ? 1 : 2);
}

// Themes. The system's choice holds until the button is pressed.

const dark = matchMedia('(prefers-color-scheme: dark)');
let chosen = null;
try {
  chosen = localStorage.getItem('theme');
} catch { /* a page from a file may have no storage */ }

function color(name) {
  return getComputedStyle(root).getPropertyValue('--' + name).trim();
}

function applyTheme() {
  root.dataset.theme = chosen ?? (dark.matches ? 'dark' : 'light');
  document.getElementById('theme').textContent = root.dataset.theme === 'dark' ? 'Light' : 'Dark';
  for (const chart of charts) chart.redraw(false);
}

document.getElementById('theme').onclick = () => {
  chosen = root.dataset.theme === 'dark' ? 'light' : 'dark';
  try {
    localStorage.setItem('theme', chosen);
  } catch { /* it holds as long as the page */ }
  applyTheme();
};
dark.addEventListener('change', applyTheme);

// The range of time that all charts show.

const full = {min: 0, max: Math.max(data.duration, 0.001)};
let range = {...full};
let applying = false;

function show(min, max) {
  const span = Math.min(Math.max(max - min, 0.001), full.max);
  min = +Math.min(Math.max(min, 0), full.max - span).toFixed(9);
  range = {min, max: min + span};
  applying = true;
  for (const chart of charts) chart.setScale('x', range);
  applying = false;
  document.getElementById('range').textContent = `${digits(range.min)} to ${digits(range.max)} s`;
}

function move(part) {
  const step = (range.max - range.min) * part;
  show(range.min + step, range.max + step);
}

function zoom(factor) {
  const middle = (range.min + range.max) / 2;
  const half = (range.max - range.min) / 2 * factor;
  show(middle - half, middle + half);
}

document.getElementById('earlier').onclick = () => move(-0.5);
document.getElementById('later').onclick = () => move(0.5);
document.getElementById('nearer').onclick = () => zoom(0.5);
document.getElementById('farther').onclick = () => zoom(2);
document.getElementById('all').onclick = () => show(full.min, full.max);

// The overview: what each column shows of a stream, null where there is nothing.

function meanAndMax(key) {
  return ({series}) => series[key] && `${digits(series[key].mean)} / ${digits(series[key].max)}`;
}
const last = key => ({series}) => series[key] && digits(series[key].last);
const event = kind => ({events}) => events[kind] || null;

function rateOf({series}) {
  const rate = series.estimatedRate ?? series.arrivalRate;
  return `${digits(rate.mean)} ${rate.unit}`;
}

const COLUMNS = [
  ['SR', s => s.sender.reports || null],
  ['clock Hz', s => s.clockRate],
  ['blocks', s => s.reports.blocks || null],
  ['lost', s => s.reports.blocks ? s.reports.lost : null],
  ['loss % mean / max', meanAndMax('loss')],
  ['jitter mean / max', s => s.series.jitter && `${meanAndMax('jitter')(s)} ${s.series.jitter.unit}`],
  ['round trip ms mean / max', meanAndMax('roundTrip')],
  ['by XR ms', meanAndMax('roundTripXr')],
  ['NACK', s => s.nack.messages || null],
  ['numbers', s => s.nack.numbers || null],
  ['again', s => s.nack.repeated || null],
  ['PLI', event('PLI')],
  ['FIR', event('FIR')],
  ['BYE', event('BYE')],
  ['REMB kbit/s', last('remb')],
  ['TMMBR kbit/s', last('limit')],
  ['feedback', s => s.feedback.messages || null],
  ['received', s => s.feedback.messages ? s.feedback.received : null],
  ['lost in it', s => s.feedback.messages ? s.feedback.lost : null],
  ['spread ms', meanAndMax('arrivalSpread')],
  ['rate', s => (s.series.estimatedRate ?? s.series.arrivalRate) && rateOf(s)],
  ['trend', s => s.trend && `${s.trend.word} ${s.trend.perSecond > 0 ? '+' : ''}${digits(s.trend.perSecond)}/s`],
];

function pathOf(stream) {
  return `${endpoint(stream.from)} → ${endpoint(stream.to)}`;
}

function overviewRow(stream, index, columns) {
  const name = element('a', {href: `#stream${index}`, textContent: stream.name});
  name.onclick = () => { document.getElementById(`stream${index}`).open = true; };
  const row = element('tr', {}, element('td', {}, name));
  row.dataset.stream = stream.name;
  for (const [head, cell] of columns) {
    const value = cell(stream) ?? null;
    const made = element('td', {textContent: value ?? '–', className: value === null ? 'none' : ''});
    made.dataset.what = head;
    row.append(made);
  }
  return row;
}

function fillOverview() {
  const table = document.getElementById('overview');
  const columns = COLUMNS.filter(([, cell]) => data.streams.some(stream => (cell(stream) ?? null) !== null));
  table.append(element('tr', {}, ...['SSRC', ...columns.map(([head]) => head)].map(
      head => element('th', {textContent: head}))));
  let path = '';
  data.streams.forEach((stream, index) => {
    if (pathOf(stream) !== path) {
      path = pathOf(stream);
      const cell = element('td', {colSpan: columns.length + 1}, element('span', {textContent: path}));
      table.append(element('tr', {className: 'path'}, cell));
    }
    table.append(overviewRow(stream, index, columns));
  });
}

// Charts. Each of a stream's charts takes the series that name it, and the stream's events.

// Few events are lines through the chart; more are marks at its top, which leave the values to be seen.
const FEW_EVENTS = 12;
const MARK = 0.88;

function joined(lines, events) {
  const bottom = events.length <= FEW_EVENTS ? 0 : MARK;
  const tables = lines.map(({points}) => [points.map(([t]) => t), points.map(([, v]) => v)]);
  for (const kind of EVENTS) {
    const times = [...new Set(events.filter(e => e.kind === kind).map(e => e.time))];
    if (times.length > 0) tables.push([times, times.map(() => bottom)]);
  }
  // The ends of the capture, so that all charts can show the same range.
  return uPlot.join([...tables, [[full.min, full.max], [null, null]]]);
}

// Lines are points in time; where the cursor is, each tells its nearest value, an event only when the cursor is on it.
const ON_EVENT = 8;  // pixels

function nearestOf(values, times, index) {
  if (values[index] != null) return index;
  let before = index;
  while (before >= 0 && values[before] == null) --before;
  let after = index;
  while (after < values.length && values[after] == null) ++after;
  if (before < 0) return after < values.length ? after : index;
  if (after >= values.length) return before;
  return times[index] - times[before] <= times[after] - times[index] ? before : after;
}

function nearest(chart, series, index) {
  if (series === 0) return index;
  const times = chart.data[0];
  const found = nearestOf(chart.data[series], times, index);
  if (chart.series[series].scale !== 'event') return found;
  const distance = Math.abs(chart.valToPos(times[found], 'x') - chart.cursor.left);
  return distance <= ON_EVENT ? found : null;
}

// Numbers of packets belong to their moment, not to the time until the next.
const BARS = {paths: uPlot.paths.bars({size: [0.6, 6, 2]}), points: {show: false}};

function lineSeries({name, unit, points}, number) {
  return {
    label: name,
    stroke: () => color('c' + number),
    width: 2,
    spanGaps: true,
    ...(unit === 'packets' ? {...BARS, fill: () => color('c' + number)} :
                             {points: {show: points.length < 60, size: 5}}),
    value: (chart, value) => value == null ? '–' : unit === 'packets' ? digits(value) : `${digits(value)} ${unit}`,
  };
}

function eventSeries(kind) {
  return {
    label: kind,
    scale: 'event',
    stroke: () => color(kind.toLowerCase()),
    fill: () => color(kind.toLowerCase()),
    width: 0,
    fillTo: 1,
    paths: uPlot.paths.bars({size: [0, 2, 2]}),
    points: {show: false},
    value: (chart, value, series, index) => value == null ? '–' : `${chart.data[0][index].toFixed(3)} s`,
  };
}

const AXIS = {
  stroke: () => color('quiet'),
  grid: {stroke: () => color('line'), width: 1},
  ticks: {stroke: () => color('line'), width: 1},
};

function optionsFor(lines, events, width) {
  const kinds = EVENTS.filter(kind => events.some(e => e.kind === kind));
  return {
    width,
    height: CHART_HEIGHT,
    cursor: {sync: {key: 'time'}, drag: {x: true, y: false, setScale: false}, dataIdx: nearest},
    scales: {
      x: {time: false, range: () => [range.min, range.max]},
      y: {range: (chart, min, max) => [Math.min(0, min ?? 0), max > 0 ? max * (kinds.length > 0 ? 1.2 : 1.08) : 1]},
      event: {range: [0, 1]},
    },
    axes: [{...AXIS, size: 36, values: (chart, ticks) => ticks.map(t => `${+t.toFixed(3)} s`)}, {...AXIS, size: 55}],
    series: [
      {label: 'at', value: (chart, value) => value == null ? '–' : `${value.toFixed(3)} s`},
      ...lines.map(lineSeries),
      ...kinds.map(eventSeries),
    ],
    hooks: {
      setSelect: [chart => {
        const {left, width: selected} = chart.select;
        if (selected > 0) show(chart.posToVal(left, 'x'), chart.posToVal(left + selected, 'x'));
        chart.setSelect({left: 0, top: 0, width: 0, height: 0}, false);
      }],
      ready: [chart => chart.over.addEventListener('dblclick', () => show(full.min, full.max))],
    },
  };
}

function drawChart(title, lines, stream, parent) {
  const units = [...new Set(lines.map(({unit}) => unit))].join(', ');
  const box = element('div', {className: 'chart'},
      element('h3', {}, title + ' ', element('small', {textContent: units})));
  box.dataset.chart = title;
  parent.append(box);
  const events = stream.eventTimes;
  const chart = new uPlot(optionsFor(lines, events, box.clientWidth), joined(lines, events), box);
  charts.push(chart);
  new ResizeObserver(() => {
    if (box.clientWidth > 0) chart.setSize({width: box.clientWidth, height: CHART_HEIGHT});
  }).observe(box);
}

function drawCharts(stream, parent) {
  const titles = [...new Set(Object.values(stream.series).map(({chart}) => chart))];
  for (const title of titles) {
    drawChart(title, Object.values(stream.series).filter(({chart}) => chart === title), stream, parent);
  }
  if (titles.length === 0 && stream.eventTimes.length > 0) drawChart('Events', [], stream, parent);
}

function addStream(stream, index) {
  const words = [pathOf(stream)];
  if (stream.cname) words.push(stream.cname);
  if (stream.clockRate) words.push(`${stream.clockRate} Hz`);
  const box = element('div', {className: 'charts'});
  const details = element('details', {id: `stream${index}`, open: index < MOST_OPEN},
      element('summary', {}, element('b', {textContent: stream.name}), element('span', {textContent: words.join(' · ')})),
      box);
  details.dataset.stream = stream.name;
  document.getElementById('streams').append(details);
  const draw = () => {
    if (details.open && box.childElementCount === 0) drawCharts(stream, box);
  };
  details.addEventListener('toggle', draw);
  draw();
}

function about() {
  const words = [data.capture, `${data.begin} UTC`, `${digits(data.duration)} s`, `${data.datagrams} datagrams`,
                 `${data.streams.length} streams`];
  if (data.refused > 0) words.push(`${data.refused} refused in whole or in part`);
  if (data.srtcp > 0) words.push(`${data.srtcp} of SRTCP`);
  if (data.incomplete) words.push('there are more streams than are told of');
  return words.join(' · ');
}

document.title = `RTCP report: ${data.capture}`;
document.getElementById('about').textContent = about();
applyTheme();
fillOverview();
data.streams.forEach(addStream);
show(full.min, full.max);
document.body.dataset.ready = charts.length;
