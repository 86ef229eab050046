// Classes of values, and colours of lines.

import {make} from "./dom.js";
import {percent, say, value} from "./texts.js";

// Blue, orange, green, pink, sky, brown, which eyes of every kind tell apart.
export const kLineColours = ["#0b5cad", "#d55e00", "#009e73", "#b0438a", "#3aa5dd", "#8a5a00", "#5b6776"];

export function classOf(limits, value_) {
  let number_ = 0;
  while (number_ < limits.length && value_ >= limits[number_]) number_++;
  return number_;
}

export function classText(limits, number_) {
  if (limits.length === 0) return "";
  if (number_ === 0) return say("below", {v: value(limits[0])});
  if (number_ === limits.length) return say("from", {v: value(limits[number_ - 1])});
  return say("between", {a: value(limits[number_ - 1]), b: value(limits[number_])});
}

// The share of each class, side by side.
export function classBar(series, statistics) {
  const bar = make("div", {class: "bar"});
  series.colours.forEach((colour, class_) => {
    const share = statistics.classes[class_] / statistics.count;
    if (!(share > 0)) return;
    const text = `${classText(series.limits, class_)}: ${percent(share)}`;
    bar.append(make("i", {title: text, style: {background: colour, width: `${100 * share}%`}}));
  });
  return bar;
}
