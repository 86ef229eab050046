// Draws graticule, cells, routes and events of the map on one canvas. Points are numbers in arrays: a redraw projects
// them by itself and leaves out what falls on the same place.

import {classOf} from "./colours.js";
import {worldX, worldY} from "./data.js";

const kTile = 256;
const kDotRadius = 3.4;
const kMarkSize = 4;
const kMarkRoom = 26;  // of events that are no failures: there are many
const kStreamShift = 4;  // pixels between streams of one way
const kDegreeSteps = [20, 10, 5, 2, 1, 0.5, 0.2, 0.1, 0.05, 0.02, 0.01, 0.005, 0.002, 0.001, 0.0005, 0.0002];

export const RouteLayer = L.Renderer.extend({
  initialize(state) {
    L.Renderer.prototype.initialize.call(this, {padding: 0.15});
    this.state = state;
    this.labels = [];
  },

  getEvents() {
    const events = L.Renderer.prototype.getEvents.call(this);
    events.resize = this._update;
    return events;
  },

  _initContainer() {
    this._container = document.createElement("canvas");
    this._container.className = "route-canvas";
    this._context = this._container.getContext("2d");
  },

  _destroyContainer() {
    L.DomUtil.remove(this._container);
  },

  _update() {
    if (this._map._animatingZoom && this._bounds) return;
    L.Renderer.prototype._update.call(this);
    const size = this._bounds.getSize();
    const ratio = Math.max(window.devicePixelRatio || 1, 1);
    const canvas = this._container;
    L.DomUtil.setPosition(canvas, this._bounds.min);
    canvas.width = size.x * ratio;
    canvas.height = size.y * ratio;
    canvas.style.width = `${size.x}px`;
    canvas.style.height = `${size.y}px`;
    this._context.setTransform(ratio, 0, 0, ratio, 0, 0);
    this.draw();
    this.fire("update");
  },

  // Pixels on the canvas.
  scale() {
    return kTile * 2 ** this._map.getZoom();
  },
  origin() {
    return this._map.getPixelOrigin().add(this._bounds.min);
  },

  redraw() {
    if (this._map && this._bounds) this._update();
  },

  draw() {
    const context = this._context;
    const size = this._bounds.getSize();
    this.view = {scale: this.scale(), origin: this.origin(), width: size.x, height: size.y};
    context.clearRect(0, 0, size.x, size.y);
    this.labels = [];
    if (!this.state.page.tiles) this.drawGraticule(context);
    if (this.state.showCells) this.drawCells(context);
    const streams = this.shownStreams();
    streams.forEach((stream, place) => this.drawWay(context, stream, place * kStreamShift));
    streams.forEach((stream, place) => this.drawDots(context, stream, place * kStreamShift));
    this.drawNames(context);
    if (this.state.showEvents) streams.forEach((stream, place) => this.drawEvents(context, stream, place * kStreamShift));
  },

  // The active one comes last, on top.
  shownStreams() {
    const {page, streams, active} = this.state;
    const shown = page.streams.filter((stream) => streams[stream.number].on);
    return [...shown.filter((stream) => stream.number !== active), ...shown.filter((stream) => stream.number === active)];
  },

  drawGraticule(context) {
    const {scale, origin, width, height} = this.view;
    const perPixel = 360 / scale;
    const step = [...kDegreeSteps].reverse().find((degrees) => degrees / perPixel >= 110) || 20;
    const decimals = Math.max(0, -Math.floor(Math.log10(step) + 1e-9));
    const bounds = this._map.getBounds();
    const inset = this._map.containerPointToLayerPoint([0, 0]).subtract(this._bounds.min);
    const mapSize = this._map.getSize();
    context.lineWidth = 1;
    context.strokeStyle = "#dfe4ea";
    context.fillStyle = "#7b8794";
    context.font = "11px system-ui, sans-serif";
    context.beginPath();
    const write = [];
    for (let at = Math.ceil((bounds.getWest() - step) / step); at * step <= bounds.getEast() + step; at++) {
      const x = Math.round(worldX(at * step) * scale - origin.x) + 0.5;
      context.moveTo(x, 0);
      context.lineTo(x, height);
      write.push([`${(at * step).toFixed(decimals)}°`, x + 4, inset.y + 14]);
    }
    for (let at = Math.ceil((bounds.getSouth() - step) / step); at * step <= bounds.getNorth() + step; at++) {
      const y = Math.round(worldY(at * step) * scale - origin.y) + 0.5;
      context.moveTo(0, y);
      context.lineTo(width, y);
      write.push([`${(at * step).toFixed(decimals)}°`, inset.x + mapSize.x - 58, y - 4]);
    }
    context.stroke();
    for (const [text, x, y] of write) context.fillText(text, x, y);
  },

  drawCells(context) {
    const {scale, origin, width, height} = this.view;
    const zoom = this._map.getZoom();
    const radius = Math.min(Math.max(16 * 2 ** ((zoom - 14) / 2), 5), 46);
    const serving = this.servingCells();
    const protocols = new Set(this.shownStreams().map((stream) => stream.protocol));
    const isAny = [...protocols].some((name) => !["TD-SCDMA", "GSM", "LTE"].includes(name));
    context.lineJoin = "round";
    this.state.page.network.forEach((cell, number_) => {
      if (cell === null || (!isAny && !protocols.has(cell.protocol))) return;
      const x = worldX(cell.longitude) * scale - origin.x;
      const y = worldY(cell.latitude) * scale - origin.y;
      if (x < -radius || y < -radius || x > width + radius || y > height + radius) return;
      const serves = serving.has(number_);
      context.fillStyle = serves ? "rgba(60, 76, 97, 0.34)" : "rgba(96, 110, 128, 0.13)";
      context.strokeStyle = serves ? "rgba(40, 54, 74, 0.9)" : "rgba(96, 110, 128, 0.45)";
      context.lineWidth = 1;
      context.beginPath();
      let nameX = x;
      let nameY = y - radius / 2;
      if (cell.azimuth === null) {
        context.arc(x, y, Math.max(radius / 4, 3), 0, 2 * Math.PI);
      } else {
        const half = (((cell.beam ?? 65) / 2) * Math.PI) / 180;
        const middle = ((cell.azimuth - 90) * Math.PI) / 180;
        context.moveTo(x, y);
        context.arc(x, y, radius, middle - half, middle + half);
        context.closePath();
        nameX = x + Math.cos(middle) * (radius + 4);
        nameY = y + Math.sin(middle) * (radius + 4);
      }
      context.fill();
      context.stroke();
      if (cell.name && (zoom >= 16 || (serves && zoom >= 14))) this.labels.push([cell.name, nameX, nameY, serves]);
    });
  },

  // Over the routes, those of serving cells first.
  drawNames(context) {
    const taken = new Set();
    this.labels.sort((a, b) => b[3] - a[3]);
    context.font = "11px system-ui, sans-serif";
    context.textAlign = "center";
    for (const [name, x, y, serves] of this.labels) {
      const place = `${Math.round(x / 64)} ${Math.round(y / 14)}`;
      if (taken.has(place)) continue;
      taken.add(place);
      context.lineWidth = 3;
      context.strokeStyle = "rgba(255, 255, 255, 0.85)";
      context.strokeText(name, x, y + 4);
      context.fillStyle = serves ? "#28364a" : "#7b8794";
      context.fillText(name, x, y + 4);
    }
    context.textAlign = "start";
  },

  servingCells() {
    const numbers = new Set();
    for (const stream of this.shownStreams()) {
      for (const cell of stream.cells.list) {
        if (cell.network !== null) numbers.add(cell.network);
      }
    }
    return numbers;
  },

  // The way itself, so that stretches without samples show.
  drawWay(context, stream, shift) {
    const {scale, origin} = this.view;
    const {x, y, time} = stream;
    context.lineJoin = "round";
    context.lineCap = "round";
    context.beginPath();
    let last = -1;
    let lastX = 0;
    let lastY = 0;
    for (let i = 0; i < x.length; i++) {
      if (Number.isNaN(x[i])) continue;
      const nextX = x[i] * scale - origin.x + shift;
      const nextY = y[i] * scale - origin.y + shift;
      const isFar = last < 0 || time[i] - time[last] > 60000;
      if (!isFar && Math.abs(nextX - lastX) < 1 && Math.abs(nextY - lastY) < 1) continue;
      if (isFar) context.moveTo(nextX, nextY); else context.lineTo(nextX, nextY);
      last = i;
      lastX = nextX;
      lastY = nextY;
    }
    context.strokeStyle = "rgba(255, 255, 255, 0.9)";
    context.lineWidth = 2 * kDotRadius + 4;
    context.stroke();
    context.strokeStyle = "#aab3bf";
    context.lineWidth = 1.6;
    context.stroke();
  },

  drawDots(context, stream, shift) {
    const series = this.state.seriesOf(stream.number);
    if (series === null) return;
    const {scale, origin, width, height} = this.view;
    const {x, y} = stream;
    const paths = series.colours.map(() => new Path2D());
    const columns = Math.ceil(width / 2) + 1;
    const taken = new Uint8Array(columns * (Math.ceil(height / 2) + 1));
    for (let i = 0; i < x.length; i++) {
      const value_ = series.values[i];
      if (Number.isNaN(value_) || Number.isNaN(x[i])) continue;
      const pointX = x[i] * scale - origin.x + shift;
      const pointY = y[i] * scale - origin.y + shift;
      if (pointX < 0 || pointY < 0 || pointX >= width || pointY >= height) continue;
      const class_ = classOf(series.limits, value_);
      const place = (pointX >> 1) + (pointY >> 1) * columns;
      if (taken[place] === class_ + 1) continue;
      taken[place] = class_ + 1;
      paths[class_].moveTo(pointX + kDotRadius, pointY);
      paths[class_].arc(pointX, pointY, kDotRadius, 0, 2 * Math.PI);
    }
    paths.forEach((path, class_) => {
      context.fillStyle = series.colours[class_];
      context.fill(path);
    });
  },

  drawEvents(context, stream, shift) {
    const {scale, origin, width, height} = this.view;
    const entries = stream.entries;
    const taken = new Set();
    for (let i = 0; i < entries.count; i++) {
      if (entries.kind[i] === 2 || Number.isNaN(entries.longitude[i])) continue;
      const x = worldX(entries.longitude[i]) * scale - origin.x + shift;
      const y = worldY(entries.latitude[i]) * scale - origin.y + shift;
      if (x < 0 || y < 0 || x > width || y > height) continue;
      const isFailure = entries.failure[i] === 1;
      const room = isFailure ? 8 : kMarkRoom;
      const place = `${Math.round(x / room)} ${Math.round(y / room)} ${isFailure}`;
      if (taken.has(place)) continue;
      taken.add(place);
      const size = isFailure ? kMarkSize + 2.5 : kMarkSize;
      context.beginPath();
      context.moveTo(x, y - size);
      context.lineTo(x + size, y);
      context.lineTo(x, y + size);
      context.lineTo(x - size, y);
      context.closePath();
      context.fillStyle = isFailure ? "#c2185b" : "#ffffff";
      context.strokeStyle = isFailure ? "#ffffff" : "#28364a";
      context.lineWidth = 1.5;
      context.fill();
      context.stroke();
    }
  },

  // The nearest sample, or any point of the way, within some pixels of a place on the map: {stream, place}, or null.
  find(containerPoint) {
    if (!this.view) return null;
    const {scale, origin} = this.view;
    const at = this._map.containerPointToLayerPoint(containerPoint).subtract(this._bounds.min);
    let best = null;
    let bestDistance = 12 * 12;
    this.shownStreams().forEach((stream, shown) => {
      const series = this.state.seriesOf(stream.number);
      const shift = shown * kStreamShift;
      for (let i = 0; i < stream.x.length; i++) {
        const across = stream.x[i] * scale - origin.x + shift - at.x;
        const down = stream.y[i] * scale - origin.y + shift - at.y;
        let distance = across * across + down * down;
        if (series !== null && Number.isNaN(series.values[i])) distance += 16;
        if (distance <= bestDistance) {
          best = {stream, place: i};
          bestDistance = distance;
        }
      }
    });
    return best;
  },
});
