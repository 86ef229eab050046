// What is shown, and who wants to hear of changes. Topics: "streams" (which are on, their elements, the active one),
// "cursor", "window", "language".

export class State {
  constructor(page) {
    this.page = page;
    this.streams = page.streams.map((stream) => ({on: false, series: stream.series.length > 0 ? 0 : -1}));
    this.active = Math.max(bestStream(page.streams), 0);
    if (this.streams.length > 0) this.streams[this.active].on = true;
    this.showEvents = true;
    this.showCells = true;
    this.cursor = null;  // ms
    this.window = null;  // [ms, ms]; null: all
    this.listeners = [];
  }

  hear(topics, listener) {
    this.listeners.push({topics: topics.split(" "), listener});
  }

  tell(topic) {
    for (const {topics, listener} of this.listeners) {
      if (topics.includes(topic)) listener(topic);
    }
  }

  setCursor(ms) {
    if (this.cursor === ms) return;
    this.cursor = ms;
    this.tell("cursor");
  }

  setWindow(window_) {
    this.window = window_;
    this.tell("window");
  }

  activate(number) {
    if (this.active === number) return;
    this.active = number;
    this.tell("streams");
  }

  seriesOf(number) {
    const place = this.streams[number].series;
    return place < 0 ? null : this.page.streams[number].series[place];
  }

  wholeWindow() {
    let from = Infinity;
    let to = -Infinity;
    for (const stream of this.page.streams) {
      if (stream.time.length === 0) continue;
      from = Math.min(from, stream.time[0]);
      to = Math.max(to, stream.time[stream.time.length - 1]);
    }
    return from <= to ? [from, Math.max(to, from + 1000)] : [0, 1000];
  }
}

// The handset with most to show on a map.
function bestStream(streams) {
  let best = -1;
  let bestWorth = -1;
  streams.forEach((stream, number) => {
    const worth = (stream.series.length > 0 ? 1e12 : 0) + (stream.scanner ? 0 : 1e9) + Math.min(stream.positions, stream.rows);
    if (worth > bestWorth) {
      best = number;
      bestWorth = worth;
    }
  });
  return best;
}
