#pragma once

#include <span>
#include <string>

#include "host/sinks/gdal/gdal_errors.h"
#include "host/sinks/gdal/gdal_rules.h"

namespace loom {

struct GdalFile {
  std::string native_path;
  const GdalRules& rules;
  std::span<const LayerColumn> columns;
};

// Rows, extent and samples, by the driver that wrote the file. Where the rows have another order, samples are looked up
// by what is expected.
LayerReadBack ReadGdalLayer(const GdalFile& file, std::span<const std::int64_t> rows,
                            std::span<const LayerRow> expected, GdalErrors& errors);

}  // namespace loom
