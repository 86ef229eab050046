#pragma once

#include "host/sinks/layer.h"

namespace loom {

// Walks the rows and fills in what each column holds.
void CollectFacts(ILayerSource& source, LayerSchema& schema);

}  // namespace loom
