#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "host/sinks/layer.h"
#include "platform/cstring.h"

namespace loom {

// A file that was written and read back.
struct ExportedFile {
  CString path;
  std::vector<std::string> layers;
  std::int64_t rows = 0;
};

struct LayerExportOptions {
  CString out;               // its extension names the format
  bool with_values = false;  // elements were asked for by name
};

// The files that an export to `out` writes: itself, or for formats of one layer TITLE_LAYER.EXTENSION of each layer.
// Throws Error for an extension that no format has.
std::vector<CString> FilesOfLayers(const CString& out, const std::vector<std::string>& layers);

// Writes the layers, reads every file back and compares count, extent and five rows with what went in, and only then
// puts the files into their places. What a format cannot hold is refused before anything is written, or noted with its
// place. Throws Error, or Interrupted; nothing is replaced then.
std::vector<ExportedFile> ExportLayers(std::span<const std::unique_ptr<ILayerSource>> layers,
                                       const LayerExportOptions& options);

}  // namespace loom
