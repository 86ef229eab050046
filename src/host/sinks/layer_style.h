#pragma once

#include <string>

#include "host/sinks/layer.h"

// The colours of a layer as GIS programs read them. `field` is the column's name in the file.
namespace loom {

// "below -95", "-95 to -85", "-85 and above" of a class.
std::string ClassLabel(const LayerStyle& style, std::size_t at);

// Of a schema with a style.
std::string QmlOf(const LayerSchema& schema, const std::string& field);
std::string SldOf(const LayerSchema& schema, const std::string& field);

}  // namespace loom
