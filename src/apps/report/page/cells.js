// The cells that served the active stream, and the changes between them.

import {byId, fillTable, make, numeric} from "./dom.js";
import {duration, number, say, value} from "./texts.js";

const kMostShown = 12;

function pairs(stream) {
  const counts = new Map();
  for (let i = 0; i < stream.handovers.time.length; i++) {
    const key = `${stream.handovers.from[i]} ${stream.handovers.to[i]}`;
    const pair = counts.get(key) ?? {from: stream.handovers.from[i], to: stream.handovers.to[i], count: 0, first: stream.handovers.time[i]};
    pair.count++;
    counts.set(key, pair);
  }
  return [...counts.values()].sort((a, b) => b.count - a.count);
}

export class Cells {
  constructor(state) {
    this.state = state;
    this.isWhole = {cells: false, handovers: false};
    state.hear("streams language", () => this.show());
    this.show();
  }

  nameOf(cell) {
    const network = cell.network === null ? null : this.state.page.network[cell.network];
    return network === null ? "" : network.name;
  }

  show() {
    const stream = this.state.page.streams[this.state.active];
    const isEmpty = !stream || stream.cells.list.length === 0;
    byId("no-cells").hidden = !isEmpty;
    byId("cells").hidden = byId("handovers").hidden = isEmpty;
    byId("cell-note").textContent = isEmpty ? "" : `${stream.name} · ${say("cellNote",
      {cells: number(stream.cells.list.length), handovers: number(stream.handovers.time.length)})}`;
    if (isEmpty) return;
    this.fillCells(stream);
    this.fillHandovers(stream);
  }

  fillCells(stream) {
    const cells = [...stream.cells.list].sort((a, b) => b.time - a.time || b.samples - a.samples);
    const longest = Math.max(...cells.map((cell) => cell.time), 1e-9);
    const rows = cells.map((cell) => [
      cell.label, this.nameOf(cell), numeric(number(cell.samples)), numeric(value(cell.level)), numeric(duration(cell.time)),
      {element: make("div", {class: "bar plain"}, make("i", {style: {width: `${(100 * cell.time) / longest}%`}})), class: "bar-cell"}]);
    const headings = [say("cell"), say("name"), numeric(say("samples")),
                      {...numeric(say("level")), title: stream.cells.level}, numeric(say("served")), ""];
    this.fill("cells", headings, rows);
  }

  fillHandovers(stream) {
    const label = (number_) => {
      const cell = stream.cells.list[number_];
      return this.nameOf(cell) || cell.label;
    };
    const rows = pairs(stream).map((pair) => [
      {element: make("a", {href: "#", onclick: (event) => {
        event.preventDefault();
        this.state.setCursor(pair.first);
      }}, `${label(pair.from)} → ${label(pair.to)}`)}, numeric(number(pair.count))]);
    this.fill("handovers", [`${say("handovers")}: ${say("change")}`, numeric(say("times"))], rows);
  }

  fill(id, headings, rows) {
    const isShort = !this.isWhole[id] && rows.length > kMostShown;
    fillTable(byId(id), headings, isShort ? rows.slice(0, kMostShown) : rows);
    if (!isShort) return;
    const more = make("button", {type: "button", class: "more", onclick: () => {
      this.isWhole[id] = true;
      this.show();
    }}, say("all", {n: number(rows.length)}));
    byId(id).tBodies[0].append(make("tr", {}, make("td", {colSpan: headings.length}, more)));
  }
}
