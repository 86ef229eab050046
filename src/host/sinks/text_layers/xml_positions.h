#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/sinks/layer_sink.h"

namespace loom {

// Collects the positions of one layer of a GPX or KML document and looks for some of them. In GPX a layer is a <trk>,
// or all the <wpt> before the first one; in KML a <Document> in the outermost one, or all of a document without others.
class XmlPositions {
 public:
  XmlPositions(const CString& path, std::size_t layer, std::span<const LayerRow> expected);
  XmlPositions(const XmlPositions&) = delete;
  XmlPositions& operator=(const XmlPositions&) = delete;
  ~XmlPositions();

  // The next piece of a document; an empty one ends it. Throws FileError for what is no XML.
  void Add(std::string_view piece);
  // Rows are positions; samples are those that were found.
  LayerReadBack Found() const;

 private:
  struct Reader;
  std::unique_ptr<Reader> reader_;
};

LayerReadBack ReadXmlPositions(const CString& path, std::size_t layer, std::span<const LayerRow> expected);

}  // namespace loom
