#include "host/sinks/layer.h"

namespace loom {

void RowBlock::Start(const LayerSchema& schema, std::int64_t first) {
  texts_.release();
  first_row = first;
  rows = 0;
  points.assign(kMostRows, {});
  rings.resize(kMostRows);
  for (auto& ring : rings) ring.clear();
  columns.resize(schema.columns.size());
  for (std::size_t at = 0; at < columns.size(); ++at) {
    columns[at].numbers.resize(schema.columns[at].IsText() ? 0 : kMostRows);
    columns[at].texts.resize(schema.columns[at].IsText() ? kMostRows : 0);
  }
}

std::string_view RowBlock::Keep(std::string_view text) {
  if (text.empty()) return {};
  auto* const bytes = static_cast<char*>(texts_.allocate(text.size(), 1));
  text.copy(bytes, text.size());
  return {bytes, text.size()};
}

}  // namespace loom
