// Charts over time of the active stream, one for each unit.

import {chartRows} from "./chart_rows.js";
import {kLineColours} from "./colours.js";
import {nearestPlace} from "./data.js";
import {byId, eachFrame, make} from "./dom.js";
import {clock, day, say, value} from "./texts.js";

const kMostVisible = 4;
const kShortestWindow = 1000;  // ms

function timeLabel(ms, granularity, options, graph) {
  const [from, to] = graph.xAxisRange();
  const span = to - from;
  if (span > 2 * 86400e3) return `${day(ms).slice(5)} ${clock(ms, false)}`;
  return clock(ms, span <= 15 * 60e3, span <= 5e3);
}

class Chart {
  constructor(state, stream, unit, series) {
    this.state = state;
    this.stream = stream;
    this.series = series;
    this.visible = series.map((one, at) => at < kMostVisible);
    this.legend = make("div", {class: "chart-legend"});
    this.plot = make("div", {class: "plot"});
    this.cursor = make("div", {class: "cursor-line", hidden: true});
    this.element = make("div", {class: "chart"}, this.legend, make("div", {class: "plot-box"}, this.plot, this.cursor));
    this.unit = unit;
  }

  // In the page by now, so that it has a size.
  draw(whole) {
    this.whole = whole;
    const window_ = this.state.window ?? whole;
    this.graph = new Dygraph(this.plot, this.rows(window_), {
      labels: ["t", ...this.series.map((one) => one.name)],
      colors: this.series.map((one, at) => kLineColours[at % kLineColours.length]),
      visibility: this.visible,
      dateWindow: window_,
      connectSeparatedPoints: true,
      drawPoints: this.stream.time.length < 400,
      drawGapEdgePoints: true,
      pointSize: 1.6,
      strokeWidth: 1.5,
      legend: "never",
      labelsUTC: true,
      highlightCircleSize: 3,
      axisLineColor: "#c3cad3",
      gridLineColor: "#e6eaef",
      axisLabelFontSize: 11,
      ylabel: this.unit,
      yLabelWidth: 16,
      yRangePad: 8,
      axes: {
        x: {ticker: Dygraph.dateTicker, axisLabelFormatter: timeLabel, axisLabelWidth: 70},
        y: {axisLabelFormatter: (number_) => value(number_), axisLabelWidth: 48},
      },
      highlightCallback: (event, x) => this.state.setCursor(x),
      zoomCallback: (from, to) => this.state.setWindow(this.clamped(from, to)),
      drawCallback: (graph, isFirst) => {
        if (!isFirst) this.placeCursor();
      },
    });
    this.listen();
    this.fillLegend();
    this.placeCursor();
  }

  rows(window_) {
    const rows = chartRows(this.stream, this.series, this.whole, window_, Math.max(this.plot.clientWidth, 200));
    return rows.length > 0 ? rows : [[this.whole[0], ...this.series.map(() => null)]];
  }

  clamped(from, to) {
    const [first, last] = this.whole;
    const span = Math.min(Math.max(to - from, kShortestWindow), last - first);
    const start = Math.min(Math.max(from, first), last - span);
    return span >= last - first ? null : [start, start + span];
  }

  listen() {
    this.plot.addEventListener("wheel", (event) => {
      event.preventDefault();
      const [from, to] = this.graph.xAxisRange();
      const at = this.graph.toDataXCoord(event.clientX - this.plot.getBoundingClientRect().left);
      const factor = 1.0015 ** event.deltaY;
      this.state.setWindow(this.clamped(at - (at - from) * factor, at + (to - at) * factor));
    }, {passive: false});
    // A pan tells of nothing but its end.
    this.plot.addEventListener("mousedown", (event) => {
      if (!event.shiftKey) return;
      window.addEventListener("mouseup", () => this.state.setWindow(this.clamped(...this.graph.xAxisRange())), {once: true});
    }, true);
  }

  showWindow() {
    const window_ = this.state.window ?? this.whole;
    this.graph.updateOptions({file: this.rows(window_), dateWindow: window_});
  }

  fillLegend() {
    this.labels = [];
    const toggles = this.series.map((one, at) => {
      const number_ = make("b", {}, "");
      this.labels.push(number_);
      const button = make("button", {type: "button", class: "series", title: one.unit, onclick: () => {
        this.visible[at] = !this.visible[at];
        this.graph.setVisibility(at, this.visible[at]);
        button.classList.toggle("off", !this.visible[at]);
      }}, make("i", {style: {background: kLineColours[at % kLineColours.length]}}), one.name, number_);
      button.classList.toggle("off", !this.visible[at]);
      return button;
    });
    this.legend.replaceChildren(...toggles);
  }

  placeCursor() {
    if (!this.graph) return;
    const ms = this.state.cursor;
    const [from, to] = this.graph.xAxisRange();
    this.cursor.hidden = ms === null || ms < from || ms > to;
    if (!this.cursor.hidden) this.cursor.style.transform = `translateX(${this.graph.toDomXCoord(ms)}px)`;
    this.series.forEach((one, at) => {
      const place = ms === null ? -1 : nearestPlace(this.stream.time, ms, (i) => !Number.isNaN(one.values[i]));
      const isNear = place >= 0 && Math.abs(this.stream.time[place] - ms) < 5000;
      this.labels[at].textContent = isNear ? ` ${value(one.values[place])}` : "";
    });
  }

  remove() {
    if (this.graph) this.graph.destroy();
  }
}

export class Charts {
  constructor(state) {
    this.state = state;
    this.charts = [];
    this.select = byId("active-stream");
    const streams = state.page.streams.filter((stream) => stream.series.length > 0);
    this.select.append(...streams.map((stream) => new Option(`${stream.name} · ${stream.protocol}`, stream.number)));
    this.select.addEventListener("change", () => state.activate(Number(this.select.value)));
    byId("whole").addEventListener("click", () => state.setWindow(null));
    byId("no-charts").hidden = streams.length > 0;
    byId("charts").hidden = streams.length === 0;
    state.hear("streams", () => this.show());
    state.hear("window", eachFrame(() => this.showWindow()));
    byId("whole").disabled = true;
    state.hear("cursor", eachFrame(() => this.placeCursors()));
    this.show();
  }

  show() {
    const stream = this.state.page.streams[this.state.active];
    if (!stream || stream === this.shown) return;
    this.shown = stream;
    this.select.value = stream.number;
    this.charts.forEach((chart) => chart.remove());
    const units = new Map();
    for (const series of stream.series) units.set(series.unit, [...(units.get(series.unit) ?? []), series]);
    this.charts = [...units].map(([unit, series]) => new Chart(this.state, stream, unit, series));
    byId("charts").replaceChildren(...this.charts.map((chart) => chart.element));
    const whole = this.state.wholeWindow();
    this.charts.forEach((chart) => chart.draw(whole));
    this.placeCursors();
  }

  showWindow() {
    byId("whole").disabled = this.state.window === null;
    this.charts.forEach((chart) => chart.showWindow());
  }

  placeCursors() {
    const ms = this.state.cursor;
    byId("cursor-time").textContent = ms === null ? "" : `${day(ms)} ${clock(ms, true, true)}`;
    this.charts.forEach((chart) => chart.placeCursor());
  }

  resize() {
    this.charts.forEach((chart) => chart.graph && chart.graph.resize());
  }
}
