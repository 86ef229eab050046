// The document and its columns.

const kArrays = {i8: Int8Array, i16: Int16Array, i32: Int32Array, f32: Float32Array, f64: Float64Array, u8: Uint8Array};
const kAbsent = {i8: -128, i16: -32768, i32: -2147483648};

async function inflatedColumns() {
  const element = document.getElementById("columns");
  const text = atob(element.textContent);
  element.remove();
  const packed = new Uint8Array(text.length);
  for (let i = 0; i < text.length; i++) packed[i] = text.charCodeAt(i);
  const stream = new Blob([packed]).stream().pipeThrough(new DecompressionStream("deflate-raw"));
  return new Response(stream).arrayBuffer();
}

// Differences in steps are summed up; NaN stands for what is absent.
function column(buffer, description, Into = Float64Array) {
  const raw = new kArrays[description.type](buffer, description.at, description.count);
  if (!("step" in description)) return raw;
  const absent = kAbsent[description.type];
  const perUnit = Math.round(1 / description.step);
  const numbers = new Into(raw.length);
  let steps = description.base;
  for (let i = 0; i < raw.length; i++) {
    if (raw[i] === absent) {
      numbers[i] = NaN;
    } else {
      steps += raw[i];
      numbers[i] = steps / perUnit;
    }
  }
  return numbers;
}

// Mercator, the world from 0 to 1 east and south.
export function worldX(longitude) {
  return longitude / 360 + 0.5;
}

export function worldY(latitude) {
  const sine = Math.sin((latitude * Math.PI) / 180);
  return 0.5 - Math.log((1 + sine) / (1 - sine)) / (4 * Math.PI);
}

function milliseconds(seconds, offset) {
  const times = new Float64Array(seconds.length);
  for (let i = 0; i < times.length; i++) times[i] = (seconds[i] + offset) * 1000;
  return times;
}

function readEntries(buffer, part, offset) {
  const entries = {total: part.total, count: part.kind.count};
  for (const name of ["kind", "longitude", "latitude", "row", "name", "failure", "direction", "channel", "length", "bytes"])
    entries[name] = column(buffer, part[name]);
  entries.time = milliseconds(column(buffer, part.time), offset);
  entries.from = new Float64Array(entries.count);  // of the bytes
  for (let i = 0, at = 0; i < entries.count; at += entries.length[i] || 0, i++) entries.from[i] = at;
  return entries;
}

function readStream(buffer, part, page, number) {
  const stream = {...part, number};
  const columns = part.columns;
  stream.time = milliseconds(column(buffer, columns.time), page.clock_offset);
  stream.longitude = column(buffer, columns.longitude);
  stream.latitude = column(buffer, columns.latitude);
  stream.x = stream.longitude.map(worldX);
  stream.y = stream.latitude.map(worldY);
  stream.row = column(buffer, columns.row);
  stream.cell = column(buffer, columns.cell);
  stream.series = part.series.map((series) => ({
    ...series, ...page.elements[series.element],
    values: column(buffer, series.values, Float32Array),
    starts: column(buffer, series.starts),
  }));
  stream.entries = readEntries(buffer, part.entries, page.clock_offset);
  const handovers = part.handovers;
  stream.handovers = {
    time: milliseconds(column(buffer, handovers.time), page.clock_offset),
    from: column(buffer, handovers.from), to: column(buffer, handovers.to),
  };
  return stream;
}

export async function readPage() {
  const page = JSON.parse(document.getElementById("document").textContent);
  const buffer = await inflatedColumns();
  page.streams = page.streams.map((part, number) => readStream(buffer, part, page, number));
  return page;
}

// The first place at or behind a time.
export function placeAt(times, ms) {
  let low = 0;
  let high = times.length;
  while (low < high) {
    const middle = (low + high) >> 1;
    if (times[middle] < ms) low = middle + 1; else high = middle;
  }
  return low;
}

// The place next to a time of those that `fits`; -1 without one.
export function nearestPlace(times, ms, fits) {
  const middle = placeAt(times, ms);
  let before = middle - 1;
  let behind = middle;
  while (before >= 0 && !fits(before)) before--;
  while (behind < times.length && !fits(behind)) behind++;
  if (before < 0) return behind < times.length ? behind : -1;
  return behind < times.length && times[behind] - ms < ms - times[before] ? behind : before;
}
