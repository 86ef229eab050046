#pragma once

#include <span>
#include <string>
#include <vector>

#include "host/sinks/geopackage/sqlite_file.h"
#include "host/sinks/layer_sink.h"

namespace loom {

struct GeopackageTable {
  std::string name;
  std::vector<std::string> fields;
  std::vector<LayerColumn> columns;  // of the same number
};

// Rows, extent and samples of a layer of an open file. Throws FileError when the index is not in order.
LayerReadBack ReadGeopackageLayer(SqliteFile& file, const GeopackageTable& table, std::span<const std::int64_t> rows);

}  // namespace loom
