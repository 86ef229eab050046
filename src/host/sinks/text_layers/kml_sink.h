#pragma once

#include <memory>

#include "host/sinks/layer_sink.h"

namespace loom {

// KML 2.2: neighbouring samples of one class as a line in the class's colour, with its time span; every sample as a
// point where a layer has less than 20,000 rows. In a KMZ lines and points lie in tiles, which are loaded when they are
// in sight.
std::unique_ptr<ILayerSink> MakeKmlSink(const SinkTarget& target);
std::unique_ptr<ILayerSink> MakeKmzSink(const SinkTarget& target);

}  // namespace loom
