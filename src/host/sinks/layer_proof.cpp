#include "host/sinks/layer_proof.h"

#include <algorithm>
#include <cmath>

#include "platform/error.h"
#include "platform/number.h"

namespace loom {
namespace {

constexpr std::int64_t kSamples = 5;

std::vector<std::int64_t> SampledRows(std::int64_t rows) {
  std::vector<std::int64_t> numbers;
  for (std::int64_t at = 0; at < std::min(rows, kSamples); ++at)
    numbers.push_back(1 + at * (rows - 1) / std::max<std::int64_t>(1, std::min(rows, kSamples) - 1));
  return numbers;
}

std::string PointText(const GeoPoint& point) {
  return point.IsThere() ? NumberText(point.longitude) + " " + NumberText(point.latitude) : "no position";
}

bool IsNear(const GeoPoint& a, const GeoPoint& b, double step) {
  if (!a.IsThere() || !b.IsThere()) return a.IsThere() == b.IsThere();
  return std::abs(a.longitude - b.longitude) <= step && std::abs(a.latitude - b.latitude) <= step;
}

}  // namespace

LayerProof::LayerProof(const LayerSchema& schema, const LayerFormat& format)
    : format_(format), sampled_(SampledRows(schema.rows)) {}

LayerRow LayerProof::RowOf(const RowBlock& block, std::size_t at) {
  LayerRow row{.point = block.points[at], .values = {}};
  if (!block.rings[at].empty()) row.point = block.rings[at].front();
  for (const RowBlock::Column& column : block.columns) {
    if (!column.texts.empty() && !column.texts[at].empty())
      row.values.emplace_back(std::string(column.texts[at]));
    else if (!column.numbers.empty() && !std::isnan(column.numbers[at]))
      row.values.emplace_back(column.numbers[at]);
    else
      row.values.emplace_back();
  }
  return row;
}

void LayerProof::Add(const RowBlock& block) {
  for (std::size_t row = 0; row < block.rows; ++row) {
    bool has_place = false;
    ForEachPoint(block, row, [&](const GeoPoint& point) {
      extent_.Add(point);
      has_place = true;
    });
    if (has_place || !format_.needs_positions) ++rows_;
  }
  for (std::size_t next = samples_.size(); next < sampled_.size(); ++next) {
    const std::int64_t at = sampled_[next] - block.first_row;
    if (at >= static_cast<std::int64_t>(block.rows)) break;
    samples_.push_back(RowOf(block, static_cast<std::size_t>(at)));
  }
}

bool LayerProof::IsSameExtent(const GeoBox& found) const {
  if (extent_.IsEmpty() || found.IsEmpty()) return extent_.IsEmpty() == found.IsEmpty();
  const double step = format_.coordinate_step;
  return IsNear({extent_.west, extent_.south}, {found.west, found.south}, step) &&
         IsNear({extent_.east, extent_.north}, {found.east, found.north}, step);
}

std::string LayerProof::Difference(const LayerReadBack& found, std::span<const std::int64_t> numbers,
                                   std::span<const LayerRow> expected) const {
  if (found.rows != rows_) return std::to_string(found.rows) + " rows of " + std::to_string(rows_);
  if (!IsSameExtent(found.extent)) return "another extent";
  if (found.samples.size() != expected.size()) return "a row is not there";
  for (std::size_t at = 0; at < expected.size(); ++at) {
    const std::string row = "row " + std::to_string(numbers[at]) + ": ";
    const LayerRow& is = found.samples[at];
    if (!IsNear(expected[at].point, is.point, format_.coordinate_step))
      return row + PointText(is.point) + " in place of " + PointText(expected[at].point);
    if (format_.holds_values && is.values != expected[at].values) return row + "other values";
  }
  return {};
}

void LayerProof::Compare(ILayerSink& sink, std::size_t layer, const CString& path) const {
  std::vector<std::int64_t> numbers;
  std::vector<LayerRow> expected;
  for (std::size_t at = 0; at < samples_.size(); ++at) {
    if (format_.needs_positions && !samples_[at].point.IsThere()) continue;
    numbers.push_back(sampled_[at]);
    expected.push_back(sink.AsHeld(layer, samples_[at]));
  }
  const std::string difference = Difference(sink.ReadBack(layer, numbers, expected), numbers, expected);
  if (!difference.empty()) throw FileError(path, 0, "what was written reads back otherwise: " + difference);
}

}  // namespace loom
