// Statistics of every stream and element, and the distribution of the chosen one.

import {classBar, classText, kLineColours} from "./colours.js";
import {byId, fillTable, make, numeric} from "./dom.js";
import {number, percent, say, value} from "./texts.js";

const kWeightingNames = ["sample", "time", "distance", "grid"];

function drawBars(event) {
  const context = event.drawingContext;
  const points = event.points;
  if (points.length === 0) return;
  const bottom = event.dygraph.toDomYCoord(0);
  const width = points.length > 1 ? points[1].canvasx - points[0].canvasx : 40;
  context.fillStyle = "#9db7d8";
  for (const point of points)
    context.fillRect(point.canvasx - width / 2 + 0.5, point.canvasy, Math.max(width - 1, 1), bottom - point.canvasy);
}

export class Figures {
  constructor(state) {
    this.state = state;
    this.weighting = "sample";
    this.rows = state.page.streams.flatMap((stream) => stream.series.map((series) => ({stream, series})));
    this.chosen = this.rows.find((row) => row.stream.number === state.active) ?? this.rows[0] ?? null;
    byId("no-figures").hidden = this.rows.length > 0;
    byId("weightings").hidden = this.rows.length === 0;
    state.hear("language", () => this.show());
    this.show();
  }

  show() {
    if (this.chosen === null) return;
    this.fillTabs();
    this.fillFigures();
    this.showDistribution();
  }

  fillTabs() {
    byId("weightings").replaceChildren(...kWeightingNames.map((name) => make("button",
      {type: "button", class: name === this.weighting ? "on" : "", value: name, onclick: () => {
        this.weighting = name;
        this.show();
      }}, say(name))));
    const size = this.state.page.bins[this.weighting];
    byId("weighting-note").textContent = say(`${this.weighting}Note`, {n: value(size)});
  }

  fillFigures() {
    const names = ["element", "count", "invalid", "min", "p5", "p50", "mean", "p95", "max", "classes"];
    const headings = names.map((name, at) => (at === 0 || name === "classes" ? say(name) : numeric(say(name))));
    const cells = [];
    const kinds = [];
    let last = null;
    for (const row of this.rows) {
      if (row.stream !== last) {
        cells.push([row.stream.name, ...names.slice(1).map(() => "")]);
        kinds.push({class: "group"});
        last = row.stream;
      }
      cells.push(this.cellsOf(row));
      kinds.push({class: row === this.chosen ? "choice chosen" : "choice", tabIndex: 0, onclick: () => this.choose(row),
                  onkeydown: (event) => event.key === "Enter" && this.choose(row)});
    }
    fillTable(byId("figures"), headings, cells, (at) => kinds[at]);
  }

  cellsOf({series}) {
    const figures = series.statistics[this.weighting];
    const plain = series.statistics.sample;
    const invalid = plain.invalid / (plain.count + plain.invalid);
    return [
      {element: make("span", {}, series.name, make("small", {class: "muted"}, series.unit ? ` ${series.unit}` : ""))},
      numeric(number(figures.count)), numeric(percent(invalid)),
      ...["min", "p5", "p50", "mean", "p95", "max"].map((name) => numeric(value(figures[name]))),
      {element: classBar(series, figures), class: "bar-cell"},
    ];
  }

  choose(row) {
    this.chosen = row;
    this.show();
  }

  showDistribution() {
    const {stream, series} = this.chosen;
    const figures = series.statistics[this.weighting];
    byId("distribution").hidden = figures.count === 0;
    if (this.graph) this.graph.destroy();
    this.graph = null;
    if (figures.count === 0) return;
    byId("distribution-title").textContent = `${series.name}${series.unit ? ` (${series.unit})` : ""} · ${stream.name}`;
    fillTable(byId("class-table"), [say("class"), numeric(say("count")), numeric(say("share"))],
      series.colours.map((colour, class_) => [
        {element: make("span", {}, make("i", {class: "dot", style: {background: colour}}), classText(series.limits, class_) || "–")},
        numeric(number(figures.classes[class_])), numeric(percent(figures.classes[class_] / figures.count))]).reverse());
    this.drawHistogram(series, figures);
  }

  // Bars of counts, and the share of what lies below the end of each.
  drawHistogram(series, figures) {
    let below = 0;
    const isWhole = figures.step === 1 && Number.isInteger(figures.min) && Number.isInteger(figures.max);
    const rows = figures.bars.map((count, at) => {
      below += count;
      const middle = figures.first + (at + (isWhole ? 0 : 0.5)) * figures.step;
      return [middle, count, (100 * below) / figures.count];
    });
    const last = rows[rows.length - 1][0];
    this.graph = new Dygraph(byId("histogram"), rows, {
      labels: ["x", say("density"), say("cumulative")],
      colors: ["#9db7d8", kLineColours[1]],
      dateWindow: [rows[0][0] - figures.step, last + figures.step],
      series: {[say("density")]: {plotter: drawBars}, [say("cumulative")]: {axis: "y2", strokeWidth: 2}},
      axes: {
        x: {axisLabelFormatter: (number_) => value(number_)},
        y: {axisLabelFormatter: (number_) => number(number_), valueRange: [0, null], axisLabelWidth: 56},
        y2: {axisLabelFormatter: (number_) => `${number(number_)} %`, valueRange: [0, 100.5], drawGrid: false,
             independentTicks: true},
      },
      xlabel: series.unit, xLabelHeight: 16,
      interactionModel: {},
      highlightCircleSize: 0,
      legend: "never",
      axisLineColor: "#c3cad3", gridLineColor: "#e6eaef", axisLabelFontSize: 11,
    });
  }

  resize() {
    if (this.graph) this.graph.resize();
  }
}
