#pragma once

#include <memory>

#include "host/sinks/layer_sink.h"

namespace loom {

// GeoJSON (RFC 7946), a feature a line. The first feature has every column, the others those of which they have a
// value.
std::unique_ptr<ILayerSink> MakeGeojsonSink(const SinkTarget& target);

}  // namespace loom
