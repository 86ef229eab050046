#pragma once

#include <memory>

#include "host/sinks/layer_sink.h"

namespace loom {

// A GeoPackage: every layer a table of features with an index, styles inside the file.
std::unique_ptr<ILayerSink> MakeGeopackageSink(const SinkTarget& target);

}  // namespace loom
