// The map with its legends, what the pointer is over, the cursor, and the serving cell's line.

import {byId, eachFrame, make} from "./dom.js";
import {classBar, classText} from "./colours.js";
import {nearestPlace, placeAt} from "./data.js";
import {RouteLayer} from "./route_layer.js";
import {clock, day, percent, say, value} from "./texts.js";

const kNearEvent = 1000;  // ms

export function routeBounds(streams) {
  let west = Infinity, east = -Infinity, south = Infinity, north = -Infinity;
  for (const stream of streams) {
    for (let i = 0; i < stream.longitude.length; i++) {
      if (Number.isNaN(stream.longitude[i])) continue;
      west = Math.min(west, stream.longitude[i]);
      east = Math.max(east, stream.longitude[i]);
      south = Math.min(south, stream.latitude[i]);
      north = Math.max(north, stream.latitude[i]);
    }
  }
  return west <= east ? [[south, west], [north, east]] : null;
}

export class RouteMap {
  constructor(state) {
    this.state = state;
    const bounds = routeBounds(state.page.streams);
    this.makeStreamChips();
    if (bounds === null) {
      byId("map-box").hidden = true;
      byId("no-map").hidden = false;
      return;
    }
    const page = state.page;
    this.map = L.map("map", {zoomSnap: 0.25, zoomControl: false, wheelPxPerZoomLevel: 90, maxZoom: 20, minZoom: 2,
                             attributionControl: page.tiles !== ""});
    L.control.zoom({position: "topleft"}).addTo(this.map);
    L.control.scale({imperial: false, maxWidth: 120}).addTo(this.map);
    this.map.fitBounds(bounds, {padding: [28, 28], maxZoom: 17, animate: false});
    if (page.tiles) L.tileLayer(page.tiles, {maxZoom: 20, className: "tiles"}).addTo(this.map);
    this.layer = new RouteLayer(state).addTo(this.map);
    this.line = L.polyline([], {color: "#28364a", weight: 1.5, dashArray: "5 4", interactive: false}).addTo(this.map);
    this.marker = L.circleMarker([0, 0], {radius: 7, color: "#111827", weight: 2.5, fillColor: "#ffffff", fillOpacity: 0.35,
                                          interactive: false});
    this.fitted = bounds;
    this.listen();
    this.makeLegends();
  }

  listen() {
    let pointer = null;
    const look = eachFrame(() => this.hoverAt(pointer));
    this.map.on("mousemove", (event) => {
      pointer = event.containerPoint;
      look();
    });
    this.map.on("mouseout", () => {
      pointer = null;
      look();
    });
    this.map.on("click", (event) => {
      const found = this.layer.find(event.containerPoint);
      if (found === null) return;
      this.state.activate(found.stream.number);
      this.state.setCursor(found.stream.time[found.place]);
    });
    this.state.hear("streams", () => {
      this.layer.redraw();
      this.makeLegends();
      this.updateChips();
      this.showCursor();
    });
    this.state.hear("cursor", eachFrame(() => this.showCursor()));
    this.state.hear("language", () => this.makeLegends());
  }

  makeStreamChips() {
    const box = byId("streams");
    this.chips = this.state.page.streams.map((stream) => {
      const input = make("input", {type: "checkbox", onchange: () => this.switchStream(stream.number, input.checked)});
      const chip = make("label", {class: "chip", title: `${stream.name} (${stream.protocol})`}, input,
                        make("span", {}, stream.device || stream.name), make("small", {}, stream.protocol));
      chip.hidden = stream.positions === 0;
      box.append(chip);
      return {chip, input};
    });
    this.updateChips();
  }

  updateChips() {
    this.chips.forEach(({chip, input}, number_) => {
      input.checked = this.state.streams[number_].on;
      chip.classList.toggle("active", number_ === this.state.active);
    });
  }

  switchStream(number_, on) {
    this.state.streams[number_].on = on;
    if (on) this.state.active = number_;
    this.state.tell("streams");
  }

  // One for each stream that is shown; its heading chooses the element.
  makeLegends() {
    if (!this.map) return;
    const shown = this.state.page.streams.filter((stream) => this.state.streams[stream.number].on);
    byId("legends").replaceChildren(...shown.map((stream) => this.makeLegend(stream, shown.length)), this.makeSwitches());
  }

  makeLegend(stream, count) {
    const choice = this.state.streams[stream.number];
    const select = make("select", {onchange: () => {
      choice.series = Number(select.value);
      this.state.active = stream.number;
      this.state.tell("streams");
    }}, ...stream.series.map((series, at) => new Option(series.unit ? `${series.name} (${series.unit})` : series.name, at)));
    select.value = choice.series;
    const legend = make("div", {class: "legend"}, count > 1 ? make("div", {class: "legend-name"}, stream.device || stream.name) : null);
    const series = this.state.seriesOf(stream.number);
    if (series === null) return legend;
    if (count > 2) {
      legend.append(select, classBar(series, series.statistics.sample));
      return legend;
    }
    const shares = series.statistics.sample;
    const rows = series.colours.map((colour, class_) => make("div", {class: "legend-row"},
      make("i", {style: {background: colour}}), make("span", {}, classText(series.limits, class_) || "–"),
      make("b", {}, percent(shares.classes[class_] / shares.count))));
    legend.append(select, ...rows.reverse());
    return legend;
  }

  makeSwitches() {
    const box = make("div", {class: "legend switches"});
    const add = (member, text, isNeeded) => {
      if (!isNeeded) return;
      const input = make("input", {type: "checkbox", checked: this.state[member], onchange: () => {
        this.state[member] = input.checked;
        this.layer.redraw();
      }});
      box.append(make("label", {}, input, text));
    };
    const hasEvents = this.state.page.streams.some((stream) => stream.entries.kind.some((kind) => kind !== 2));
    add("showEvents", `◆ ${say("showEvents")}`, hasEvents);
    add("showCells", say("showCells"), this.state.page.network.some((cell) => cell !== null));
    box.hidden = box.children.length === 0;
    return box;
  }

  hoverAt(pointer) {
    const box = byId("hover");
    const found = pointer === null ? null : this.layer.find(pointer);
    box.hidden = found === null;
    if (found === null) {
      if (pointer !== null || this.hovered) this.showCursor();
      this.hovered = false;
      return;
    }
    this.hovered = true;
    const {stream, place} = found;
    box.replaceChildren(...this.describe(stream, place));
    const width = byId("map").clientWidth;
    const isRight = pointer.x > width * 0.6;
    box.style.left = isRight ? "" : `${pointer.x + 16}px`;
    box.style.right = isRight ? `${width - pointer.x + 16}px` : "";
    box.style.top = `${Math.max(pointer.y - 20, 6)}px`;
    this.connect(stream, place);
  }

  describe(stream, place) {
    const ms = stream.time[place];
    const lines = [make("div", {class: "muted"}, `${stream.timed ? `${day(ms)} ${clock(ms, true, true)}` : ""} · ${say("row")} ${stream.row[place]}`)];
    const chosen = this.state.seriesOf(stream.number);
    for (const series of stream.series) {
      if (series !== chosen && (Number.isNaN(series.values[place]) || lines.length > 4)) continue;
      const text = Number.isNaN(series.values[place]) ? say("noSample") : `${value(series.values[place])} ${series.unit}`;
      lines.push(make("div", {}, `${series.name} `, make(series === chosen ? "strong" : "span", {}, text)));
    }
    for (const name of this.eventsNear(stream, ms)) lines.push(make("div", {}, `◆ ${name}`));
    const cell = this.cellOf(stream, place);
    if (cell !== null) lines.push(make("div", {}, `${say("served_by")} `, make("strong", {}, this.cellName(cell))));
    return lines;
  }

  // Those of the stream's events that are marked next to a time.
  eventsNear(stream, ms) {
    const names = [];
    const {entries} = stream;
    for (let at = placeAt(entries.time, ms - kNearEvent); at < entries.count && entries.time[at] <= ms + kNearEvent; at++) {
      if (entries.kind[at] !== 2 && names.length < 4) names.push(this.state.page.names[entries.name[at]]);
    }
    return names;
  }

  cellOf(stream, place) {
    const number_ = stream.cell[place];
    return Number.isNaN(number_) ? null : stream.cells.list[number_];
  }

  cellName(cell) {
    const network = cell.network === null ? null : this.state.page.network[cell.network];
    return network !== null && network.name ? `${network.name} (${cell.label})` : cell.label;
  }

  // The line from a point to its serving cell.
  connect(stream, place) {
    const cell = this.cellOf(stream, place);
    const network = cell === null || cell.network === null ? null : this.state.page.network[cell.network];
    if (network === null || Number.isNaN(stream.latitude[place])) {
      this.line.setLatLngs([]);
      return;
    }
    this.line.setLatLngs([[stream.latitude[place], stream.longitude[place]], [network.latitude, network.longitude]]);
  }

  showCursor() {
    if (!this.map) return;
    const stream = this.state.page.streams[this.state.active];
    const place = this.state.cursor === null || !stream ? -1
      : nearestPlace(stream.time, this.state.cursor, (at) => !Number.isNaN(stream.latitude[at]));
    if (place < 0) {
      this.marker.remove();
      this.line.setLatLngs([]);
      return;
    }
    this.marker.setLatLng([stream.latitude[place], stream.longitude[place]]).addTo(this.map);
    this.connect(stream, place);
  }

  // Moves to where the cursor is when it is out of sight.
  follow() {
    if (this.map && this.map.hasLayer(this.marker) && !this.map.getBounds().pad(-0.05).contains(this.marker.getLatLng()))
      this.map.panTo(this.marker.getLatLng(), {animate: false});
  }
}
