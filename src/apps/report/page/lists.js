// Events and messages: a list of which only the rows in sight are made, a search, and the bytes of a message.

import {byId, eachFrame, fillTable, make} from "./dom.js";
import {clock, day, number, say} from "./texts.js";

const kRowHeight = 26;
const kMostPrinted = 60;

function collect(page, isWanted) {
  const rows = [];
  for (const stream of page.streams) {
    for (let at = 0; at < stream.entries.count; at++) {
      if (isWanted(stream.entries.kind[at])) rows.push({stream, at, time: stream.entries.time[at]});
    }
  }
  return rows.sort((a, b) => a.time - b.time);
}

export function hexDump(bytes) {
  const lines = [];
  for (let from = 0; from < bytes.length; from += 16) {
    const some = [...bytes.slice(from, from + 16)];
    const digits = some.map((byte) => byte.toString(16).toUpperCase().padStart(2, "0"));
    const signs = some.map((byte) => (byte >= 32 && byte < 127 ? String.fromCharCode(byte) : "."));
    lines.push(`${from.toString(16).toUpperCase().padStart(4, "0")}  ${digits.join(" ").padEnd(47)}  ${signs.join("")}`);
  }
  return lines.join("\n");
}

export class Lists {
  constructor(state, map) {
    this.state = state;
    this.map = map;
    this.all = {events: collect(state.page, (kind) => kind !== 2), messages: collect(state.page, (kind) => kind === 2)};
    this.tab = this.all.events.length > 0 || this.all.messages.length === 0 ? "events" : "messages";
    this.box = byId("list");
    this.space = byId("list-space");
    this.box.addEventListener("scroll", eachFrame(() => this.paint()));
    this.box.addEventListener("keydown", (event) => this.key(event));
    byId("search").addEventListener("input", () => this.filter());
    state.hear("language", () => this.filter());
    state.hear("cursor", eachFrame(() => this.showCursor()));
    this.filter();
  }

  nameOf(row) {
    return this.state.page.names[row.stream.entries.name[row.at]];
  }

  filter() {
    const wanted = byId("search").value.trim().toLowerCase();
    const fits = this.state.page.names.map((name) => name.toLowerCase().includes(wanted));
    this.rows = this.all[this.tab].filter((row) => fits[row.stream.entries.name[row.at]]
      || row.stream.name.toLowerCase().includes(wanted));
    this.chosen = -1;
    byId("detail").hidden = true;
    byId("list-tabs").replaceChildren(...["events", "messages"].map((tab) => make("button",
      {type: "button", class: tab === this.tab ? "on" : "", onclick: () => {
        this.tab = tab;
        this.filter();
      }}, `${say(tab)} `, make("small", {}, number(this.all[tab].length)))));
    const isEmpty = this.rows.length === 0;
    byId("list-count").textContent = isEmpty ? say(wanted === "" ? "noEntries" : "nothingFound")
      : wanted === "" ? "" : `${number(this.rows.length)} / ${number(this.all[this.tab].length)}`;
    this.box.hidden = isEmpty;
    this.space.style.height = `${this.rows.length * kRowHeight}px`;
    this.box.scrollTop = 0;
    this.paint();
    this.fillPrinted();
  }

  paint() {
    const first = Math.max(Math.floor(this.box.scrollTop / kRowHeight) - 5, 0);
    const end = Math.min(first + Math.ceil((this.box.clientHeight || 400) / kRowHeight) + 10, this.rows.length);
    const rows = [];
    for (let place = first; place < end; place++) rows.push(this.makeRow(place));
    this.space.replaceChildren(...rows);
  }

  makeRow(place) {
    const row = this.rows[place];
    const isFailure = row.stream.entries.failure[row.at] === 1;
    const line = make("div", {class: `entry${place === this.chosen ? " chosen" : ""}${isFailure ? " failure" : ""}`,
                              onclick: () => this.choose(place)},
      make("time", {}, row.stream.timed ? clock(row.time, true, true) : number(row.stream.entries.row[row.at])),
      make("span", {class: "entry-name", title: this.nameOf(row)}, this.nameOf(row)),
      make("span", {class: "muted entry-stream", title: row.stream.name}, row.stream.device || row.stream.name));
    line.style.top = `${place * kRowHeight}px`;
    return line;
  }

  key(event) {
    const step = {ArrowDown: 1, ArrowUp: -1, PageDown: 10, PageUp: -10}[event.key];
    if (!step || this.rows.length === 0) return;
    event.preventDefault();
    this.choose(Math.min(Math.max(this.chosen + step, 0), this.rows.length - 1));
  }

  choose(place) {
    this.chosen = place;
    const row = this.rows[place];
    this.moving = true;
    this.state.activate(row.stream.number);
    this.state.setCursor(row.time);
    this.showWindowAround(row.time);
    this.moving = false;
    if (this.map) {
      this.map.showCursor();
      this.map.follow();
    }
    this.reveal(place);
    this.paint();
    this.fillDetail(row);
  }

  // A window that does not hold the time moves there.
  showWindowAround(ms) {
    const window_ = this.state.window;
    if (window_ === null || (ms >= window_[0] && ms <= window_[1])) return;
    const half = (window_[1] - window_[0]) / 2;
    this.state.setWindow([ms - half, ms + half]);
  }

  reveal(place) {
    const top = place * kRowHeight;
    if (top < this.box.scrollTop || top + kRowHeight > this.box.scrollTop + this.box.clientHeight)
      this.box.scrollTop = top - this.box.clientHeight / 2;
  }

  // Follows the cursor of map and charts.
  showCursor() {
    if (this.moving || this.state.cursor === null || this.rows.length === 0) return;
    let low = 0;
    let high = this.rows.length - 1;
    while (low < high) {
      const middle = (low + high + 1) >> 1;
      if (this.rows[middle].time <= this.state.cursor) low = middle; else high = middle - 1;
    }
    if (this.chosen >= 0 && this.rows[this.chosen].time === this.state.cursor) return;
    this.chosen = low;
    byId("detail").hidden = true;
    this.reveal(low);
    this.paint();
  }

  fillDetail(row) {
    const entries = row.stream.entries;
    const length = entries.length[row.at];
    const isMessage = entries.kind[row.at] === 2;
    const facts = [`${row.stream.timed ? `${day(row.time)} ${clock(row.time, true, true)}` : ""}`, row.stream.name,
                   `${say("row")} ${entries.row[row.at]}`];
    if (!Number.isNaN(entries.direction[row.at])) facts.push(`${say("direction")} ${entries.direction[row.at]}`);
    if (!Number.isNaN(entries.channel[row.at])) facts.push(`${say("channel")} ${entries.channel[row.at]}`);
    if (isMessage) facts.push(Number.isNaN(length) ? say("bytesLeftOut") : `${length} ${say("bytes")}`);
    const from = entries.from[row.at];
    const bytes = isMessage && length > 0 ? entries.bytes.subarray(from, from + length) : [];
    byId("detail").replaceChildren(make("strong", {}, this.nameOf(row)),
      make("div", {class: "muted"}, facts.filter((fact) => fact !== "").join(" · ")), make("pre", {}, hexDump(bytes)));
    byId("detail").hidden = false;
  }

  // What paper shows instead of the part in sight.
  fillPrinted() {
    const rows = this.rows.slice(0, kMostPrinted).map((row) => [clock(row.time, true, true), this.nameOf(row), row.stream.name]);
    if (this.rows.length > kMostPrinted) rows.push(["", say("and_more", {n: number(this.rows.length - kMostPrinted)}), ""]);
    fillTable(byId("list-print"), [say("time"), say(this.tab), say("stream")], rows);
  }
}
