#pragma once

#include <memory>

#include "host/sinks/layer_sink.h"

// Formats that the module around libgdal writes, a library of its own that is loaded with the first use. Throws Error
// where it is not installed.
namespace loom {

std::unique_ptr<ILayerSink> MakeFlatGeobufSink(const SinkTarget& target);
std::unique_ptr<ILayerSink> MakeTabSink(const SinkTarget& target);
std::unique_ptr<ILayerSink> MakeMifSink(const SinkTarget& target);
std::unique_ptr<ILayerSink> MakeShapefileSink(const SinkTarget& target);

// The formats, as the module knows them.
enum class GdalFormat { kFlatGeobuf, kTab, kMif, kShapefile };
// What the module has by the name kGdalModuleMaker.
using GdalModuleMaker = ILayerSink*(GdalFormat, const SinkTarget&);
inline constexpr const char* kGdalModuleMaker = "QloomMakeGdalSink";

}  // namespace loom
