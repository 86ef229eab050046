#pragma once

#include <optional>

#include "host/analysis/classes.h"
#include "host/sinks/layer.h"

namespace loom {

// Colours for a layer by the classes of elements: by the first of its columns that has any when its columns were
// chosen, else by the element that the table has first. Nothing when no column of numbers has classes.
std::optional<LayerStyle> StyleFor(const LayerSchema& schema, const analysis::ClassTable& classes, bool is_chosen);

}  // namespace loom
