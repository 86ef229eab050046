#pragma once

#include <span>
#include <string>
#include <vector>

#include "host/sinks/layer_sink.h"

namespace loom {

// Rows, extent and samples of a file with a feature a line.
LayerReadBack ReadGeojson(const CString& path, const std::vector<std::string>& fields,
                          std::span<const std::int64_t> rows);

}  // namespace loom
