// Title, summary, what was left out, files, streams and notes.

import {byId, fillTable, make, numeric} from "./dom.js";
import {clock, day, duration, language, metres, number, say, setLanguage} from "./texts.js";

function span(stream) {
  const times = stream.time;
  return times.length === 0 || !stream.timed ? null : [times[0], times[times.length - 1]];
}

export class Head {
  constructor(state) {
    this.state = state;
    byId("title").textContent = state.page.title;
    byId("program").textContent = state.page.program;
    byId("language").addEventListener("click", () => {
      setLanguage(language() === "zh" ? "en" : "zh");
      state.tell("language");
    });
    byId("print").addEventListener("click", () => window.print());
    state.hear("language", () => this.show());
    this.show();
  }

  show() {
    byId("language").textContent = say("other");
    for (const element of document.querySelectorAll("[data-text]")) element.textContent = say(element.dataset.text);
    for (const element of document.querySelectorAll("[data-placeholder]")) element.placeholder = say(element.dataset.placeholder);
    const {page} = this.state;
    byId("summary").textContent = this.summary().join("  ·  ");
    byId("alerts").replaceChildren(...this.alerts().map((text) => make("p", {class: "alert"}, text)));
    byId("files").textContent = `${say("files")}: ${page.files.join(", ")}`;
    this.fillStreams();
    this.fillNotes();
  }

  summary() {
    const {streams} = this.state.page;
    const spans = streams.map(span).filter((one) => one !== null);
    const parts = [];
    if (spans.length > 0) {
      const from = Math.min(...spans.map((one) => one[0]));
      const to = Math.max(...spans.map((one) => one[1]));
      const end = day(from) === day(to) ? clock(to) : `${day(to)} ${clock(to)}`;
      parts.push(`${day(from)} ${clock(from)} – ${end}`, duration((to - from) / 1000));
    }
    const way = Math.max(0, ...streams.map((stream) => stream.length));
    if (way > 0) parts.push(metres(way));
    const rows = streams.reduce((sum, stream) => sum + stream.rows, 0);
    parts.push(say(streams.length === 1 ? "oneStream" : "streamCount", {n: streams.length}), say(rows === 1 ? "oneRow" : "rowCount", {n: number(rows)}));
    return parts;
  }

  alerts() {
    const texts = [];
    for (const stream of this.state.page.streams) {
      const {name, rows, kept, entries} = stream;
      if (kept < rows) texts.push(say("thinned", {name, kept: number(kept), rows: number(rows)}));
      if (entries.count < entries.total) texts.push(say("cut", {name, kept: number(entries.count), total: number(entries.total)}));
      if (!stream.timed) texts.push(`${name}: ${say("untimed")}`);
    }
    return texts;
  }

  fillStreams() {
    const rows = this.state.page.streams.map((stream) => {
      const times = span(stream);
      return [stream.name, stream.device, stream.protocol, numeric(number(stream.rows)), numeric(number(stream.kept)),
              times === null ? "–" : `${day(times[0])} ${clock(times[0])}`,
              times === null ? "–" : `${day(times[1])} ${clock(times[1])}`, numeric(metres(stream.length))];
    });
    fillTable(byId("stream-table"), [say("stream"), say("device"), say("protocol"), numeric(say("rows")), numeric(say("drawn")),
                                     say("start"), say("end"), numeric(say("length"))], rows);
  }

  fillNotes() {
    const notes = this.state.page.notes.map((note) => {
      const name = language() === "zh" ? note.chinese : note.name;
      const places = make("table", {});
      fillTable(places, [say("file"), say("place"), say("what")], note.places.map((place) => [place.file, place.at, place.what]));
      return make("details", {class: `note ${note.severity}`},
        make("summary", {}, make("span", {class: "badge"}, say(note.severity)), ` ${name} `, make("b", {}, number(note.count))), places);
    });
    byId("notes").replaceChildren(...(notes.length > 0 ? notes : [make("p", {class: "muted"}, say("noNotes"))]));
  }
}
