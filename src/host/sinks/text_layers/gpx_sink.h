#pragma once

#include <memory>

#include "host/sinks/layer_sink.h"

namespace loom {

// GPX 1.1: of a stream a track with its times, of network elements waypoints. Values as extensions where elements were
// asked for by name.
std::unique_ptr<ILayerSink> MakeGpxSink(const SinkTarget& target);

}  // namespace loom
