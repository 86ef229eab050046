#pragma once

#include <span>
#include <vector>

#include "host/sinks/layer_sink.h"

namespace loom {

// What goes into a layer, as much of it as tells whether a file holds it: how many rows, their extent, five of them.
class LayerProof {
 public:
  LayerProof(const LayerSchema& schema, const LayerFormat& format);

  void Add(const RowBlock& block);
  std::int64_t Rows() const { return rows_; }  // that the file shall hold
  // Reads the layer back and throws FileError for the first difference.
  void Compare(ILayerSink& sink, std::size_t layer, const CString& path) const;

 private:
  static LayerRow RowOf(const RowBlock& block, std::size_t at);
  std::string Difference(const LayerReadBack& found, std::span<const std::int64_t> numbers,
                         std::span<const LayerRow> expected) const;
  bool IsSameExtent(const GeoBox& found) const;

  const LayerFormat& format_;
  std::vector<std::int64_t> sampled_;  // numbers of rows, ascending
  std::vector<LayerRow> samples_;
  std::int64_t rows_ = 0;
  GeoBox extent_;
};

}  // namespace loom
