#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "host/sinks/layer.h"

namespace loom {

// A row as it was read back, or shall be. Values by column; none where a format keeps no values.
struct LayerRow {
  GeoPoint point;
  std::vector<std::variant<std::monostate, double, std::string>> values;
};

// What a written layer holds, read from the file.
struct LayerReadBack {
  std::int64_t rows = 0;
  GeoBox extent;
  std::vector<LayerRow> samples;
};

// Writes layers: every layer is begun, takes blocks and is ended, one after the other; then the sink is closed. One
// that is dropped before leaves what it wrote to its owner, who removes it. Whatever fails throws Error.
class ILayerSink {
 public:
  virtual ~ILayerSink() = default;
  // Refuses, before anything is written, a layer that the format cannot hold.
  virtual void Begin(const LayerSchema& schema) = 0;
  virtual void Write(const RowBlock& block) = 0;
  virtual void End() = 0;
  virtual void Close() = 0;

  // Of a closed sink: what the file holds of the layer that was begun as number `layer`, with the rows of these numbers
  // (from 1, ascending). `expected` are the same rows as they were given.
  virtual LayerReadBack ReadBack(std::size_t layer, std::span<const std::int64_t> rows,
                                 std::span<const LayerRow> expected) = 0;
  // What the file calls a column of the layer begun last; empty: as the layer does.
  virtual std::string FieldName(std::size_t) const { return {}; }
  // A row as the file shall hold it, where the format rounds or cuts.
  virtual LayerRow AsHeld(std::size_t, LayerRow row) const { return row; }
};

// With the times of columns of times as texts of UTC, to milliseconds.
LayerRow WithUtcTexts(std::span<const LayerColumn> columns, LayerRow row);

// Where a sink writes.
struct SinkTarget {
  std::string native_path;   // the file that is written, in a folder of its own
  CString path;              // the file that it will be, for errors and notes
  bool with_values = false;  // elements were asked for by name
};

struct LayerFormat {
  const char* extension;
  const char* name;
  bool holds_many_layers;
  std::size_t most_columns;
  bool holds_values;                    // of every row
  bool needs_positions;                 // a row without one has no place
  bool needs_facts;                     // about columns, before it is begun
  bool styles_lie_beside;               // as NAME.qml
  double coordinate_step;               // degrees to which positions are rounded; 0: exact
  std::vector<const char*> companions;  // extensions of the files that go with the main one
  std::unique_ptr<ILayerSink> (*make)(const SinkTarget& target);
};

// Null for an extension (any case) that no format has.
const LayerFormat* FindLayerFormat(const CString& extension);
// "gpkg, fgb, ...".
std::string LayerFormatNames();

}  // namespace loom
