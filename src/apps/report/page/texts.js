// The page's texts in both of its languages, and how it writes numbers and times.

const kTexts = {
  en: {
    other: "中文", print: "Print", route: "Route", charts: "Over time", figures: "Figures", cells: "Serving cells",
    sources: "Files and streams", notes: "Notes of the import", licences: "Licences",
    libraries: "map by Leaflet, charts by dygraphs",
    noPositions: "No stream has positions.", noValues: "No stream has values to show.",
    noCells: "No stream names a serving cell.", noNotes: "Nothing was skipped, defaulted or mended.",
    noEntries: "There is nothing of this kind.", nothingFound: "Nothing found.",
    events: "Events", messages: "Messages", search: "Search",
    whole: "Whole time", chartHint: "drag: zoom · Shift and drag: move · wheel: zoom · double click: whole time",
    showEvents: "Events", showCells: "Cells", noSample: "no sample",
    sample: "Sample", time: "Time", distance: "Distance", grid: "Grid",
    sampleNote: "Every sample counts once.",
    timeNote: "Every {n} s count once, with the mean of their samples.",
    distanceNote: "Every {n} m of the way count once, with the mean of their samples: a stop does not weigh more.",
    gridNote: "Every square of {n} m counts once, with the mean of its samples: a street driven twice does not weigh more.",
    element: "Element", count: "Count", invalid: "Invalid", min: "Min.", mean: "Mean", max: "Max.", p5: "5 %",
    p50: "Median", p95: "95 %", classes: "Classes", class: "Class", share: "Share", below: "below {v}",
    from: "{v} and above", between: "{a} to {b}", density: "count", cumulative: "share below",
    cell: "Cell", name: "Name", samples: "Samples", level: "Mean level", served: "Served", handovers: "Handovers",
    change: "From → to", times: "Times", cellNote: "{cells} cells, {handovers} handovers",
    all: "Show all {n}", stream: "Stream", device: "Device", protocol: "Network", rows: "Rows", start: "Start", end: "End",
    length: "Way", drawn: "Drawn", files: "Files", file: "File", place: "Place", what: "What",
    thinned: "{name}: {kept} of {rows} rows are drawn. The lowest and highest values stay; figures are of all rows.",
    cut: "{name}: the first {kept} of {total} events and messages are listed.",
    uplink: "uplink", downlink: "downlink", channel: "channel", direction: "direction", row: "row", bytes: "bytes", bytesLeftOut: "bytes left out",
    streamCount: "{n} streams", oneStream: "1 stream", rowCount: "{n} rows", oneRow: "1 row", lost: "lost", mended: "mended", told: "told", untimed: "rows without a time, by their order",
    served_by: "served by", and_more: "and {n} more",
  },
  zh: {
    other: "English", print: "打印", route: "路线", charts: "时间曲线", figures: "统计", cells: "服务小区",
    sources: "文件与数据流", notes: "导入说明", licences: "许可证",
    libraries: "地图：Leaflet，曲线：dygraphs",
    noPositions: "没有带位置的数据流。", noValues: "没有可显示的数值。",
    noCells: "没有数据流给出服务小区。", noNotes: "没有跳过、默认或修正任何内容。",
    noEntries: "没有此类内容。", nothingFound: "未找到。",
    events: "事件", messages: "信令", search: "搜索",
    whole: "全部时间", chartHint: "拖动：放大 · Shift+拖动：平移 · 滚轮：缩放 · 双击：全部时间",
    showEvents: "事件", showCells: "小区", noSample: "无采样",
    sample: "采样点", time: "时间", distance: "距离", grid: "栅格",
    sampleNote: "每个采样点计一次。",
    timeNote: "每 {n} 秒计一次，取其采样点的平均值。",
    distanceNote: "每 {n} 米路程计一次，取其采样点的平均值：停车不会增加权重。",
    gridNote: "每 {n} 米见方的栅格计一次，取其采样点的平均值：重复经过的街道不会增加权重。",
    element: "指标", count: "数量", invalid: "无效", min: "最小", mean: "平均", max: "最大", p5: "5 %",
    p50: "中位数", p95: "95 %", classes: "分段", class: "分段", share: "占比", below: "低于 {v}",
    from: "{v} 及以上", between: "{a} 至 {b}", density: "数量", cumulative: "累积占比",
    cell: "小区", name: "名称", samples: "采样点", level: "平均电平", served: "服务时长", handovers: "切换",
    change: "源 → 目标", times: "次数", cellNote: "{cells} 个小区，{handovers} 次切换",
    all: "显示全部 {n} 个", stream: "数据流", device: "设备", protocol: "网络", rows: "行数", start: "开始", end: "结束",
    length: "路程", drawn: "绘制", files: "文件", file: "文件", place: "位置", what: "内容",
    thinned: "{name}：绘制 {rows} 行中的 {kept} 行，保留最低与最高值；统计基于全部行。",
    cut: "{name}：列出 {total} 个事件和信令中的前 {kept} 个。",
    uplink: "上行", downlink: "下行", channel: "信道", direction: "方向", row: "行", bytes: "字节", bytesLeftOut: "未包含字节",
    streamCount: "{n} 个数据流", oneStream: "1 个数据流", rowCount: "{n} 行", oneRow: "1 行", lost: "丢失", mended: "修正", told: "提示", untimed: "行没有时间，按顺序显示",
    served_by: "服务小区", and_more: "以及另外 {n} 个",
  },
};

let languageNow = (navigator.language || "").toLowerCase().startsWith("zh") ? "zh" : "en";

export function language() {
  return languageNow;
}

export function setLanguage(name) {
  languageNow = name;
  document.documentElement.lang = name === "zh" ? "zh-CN" : "en";
}

export function say(key, values = {}) {
  const text = kTexts[languageNow][key];
  return text.replace(/\{(\w+)\}/g, (whole, name) => (name in values ? values[name] : whole));
}

const kNumberFormats = new Map();

export function number(value, decimals = 0) {
  if (value === null || value === undefined || Number.isNaN(value)) return "–";
  const key = languageNow + decimals;
  if (!kNumberFormats.has(key)) {
    const locale = languageNow === "zh" ? "zh-CN" : "en-GB";
    kNumberFormats.set(key, new Intl.NumberFormat(locale, {minimumFractionDigits: decimals, maximumFractionDigits: decimals}));
  }
  return kNumberFormats.get(key).format(value).replace("-", "−");
}

// A value with as many decimals as its size needs.
export function value(number_) {
  if (number_ === null || number_ === undefined || Number.isNaN(number_)) return "–";
  const size = Math.abs(number_);
  const decimals = Number.isInteger(number_) || size >= 1000 ? 0 : size >= 100 ? 1 : 2;
  return number(number_, decimals);
}

export function percent(share) {
  if (!Number.isFinite(share)) return "–";
  return share > 0 && share < 0.001 ? "< 0.1 %" : number(100 * share, 1) + " %";
}

const two = (number_) => String(number_).padStart(2, "0");

export function clock(ms, withSeconds = true, withMilliseconds = false) {
  const at = new Date(ms);
  let text = `${two(at.getUTCHours())}:${two(at.getUTCMinutes())}`;
  if (withSeconds) text += `:${two(at.getUTCSeconds())}`;
  if (withMilliseconds) text += `.${String(at.getUTCMilliseconds()).padStart(3, "0")}`;
  return text;
}

export function day(ms) {
  const at = new Date(ms);
  return `${at.getUTCFullYear()}-${two(at.getUTCMonth() + 1)}-${two(at.getUTCDate())}`;
}

export function duration(seconds) {
  const total = Math.round(seconds);
  const hours = Math.floor(total / 3600);
  const minutes = Math.floor(total / 60) % 60;
  return hours > 0 ? `${hours}:${two(minutes)}:${two(total % 60)} h` : minutes > 0 ? `${minutes}:${two(total % 60)} min`
    : `${number(seconds, seconds < 10 ? 1 : 0)} s`;
}

export function metres(length) {
  return length >= 1000 ? `${number(length / 1000, length >= 100000 ? 0 : 1)} km` : `${number(length)} m`;
}
