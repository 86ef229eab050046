// The rows that a chart draws: of each pixel's stretch of time the lowest and the highest value of every series.

import {placeAt} from "./data.js";

class Extremes {
  constructor(count) {
    this.low = new Int32Array(count);
    this.high = new Int32Array(count);
  }

  clear() {
    this.low.fill(-1);
    this.high.fill(-1);
  }

  take(series, values, at) {
    const value_ = values[at];
    if (Number.isNaN(value_)) return;
    if (this.low[series] < 0 || value_ < values[this.low[series]]) this.low[series] = at;
    if (this.high[series] < 0 || value_ > values[this.high[series]]) this.high[series] = at;
  }

  places() {
    return [...new Set([...this.low, ...this.high])].filter((at) => at >= 0).sort((a, b) => a - b);
  }
}

// Which places to draw between two times, cut into stretches.
function addPlaces(stream, series, from, to, stretches, places) {
  const first = placeAt(stream.time, from);
  const end = placeAt(stream.time, to);
  const extremes = new Extremes(series.length);
  let at = first;
  for (let stretch = 1; stretch <= stretches && at < end; stretch++) {
    const border = stretch === stretches ? Infinity : from + ((to - from) * stretch) / stretches;
    extremes.clear();
    for (; at < end && stream.time[at] < border; at++)
      for (let s = 0; s < series.length; s++) extremes.take(s, series[s].values, at);
    places.push(...extremes.places());
  }
}

// Of the whole time coarsely, of the window and what is next to it finely.
function placesFor(stream, series, whole, window_, pixels) {
  const places = [];
  const span = window_[1] - window_[0];
  const from = Math.max(whole[0], window_[0] - span / 2);
  const to = Math.min(whole[1], window_[1] + span / 2) + 1;
  addPlaces(stream, series, whole[0], from, 200, places);
  addPlaces(stream, series, from, to, 2 * pixels, places);
  addPlaces(stream, series, to, whole[1] + 1, 200, places);
  return places;
}

// [ms, value ...]: null where the row has none, NaN where the line is broken.
export function chartRows(stream, series, whole, window_, pixels) {
  const next = series.map(() => 0);  // start that comes next
  const rows = [];
  for (const at of placesFor(stream, series, whole, window_, pixels)) {
    const breaks = series.map((one, s) => {
      let isBroken = false;
      if (Number.isNaN(one.values[at])) return false;
      for (; next[s] < one.starts.length && one.starts[next[s]] <= at; next[s]++) isBroken = true;
      return isBroken;
    });
    if (breaks.includes(true) && rows.length > 0) rows.push([stream.time[at] - 0.01, ...breaks.map((is) => (is ? NaN : null))]);
    rows.push([stream.time[at], ...series.map((one) => (Number.isNaN(one.values[at]) ? null : one.values[at]))]);
  }
  return rows;
}
