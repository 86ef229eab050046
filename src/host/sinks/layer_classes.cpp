#include "host/sinks/layer_classes.h"

namespace loom {
namespace {

bool HasClasses(const LayerColumn& column, const analysis::ClassTable::Entry& entry) {
  const bool is_number = !column.IsText() && column.type != ColumnType::kTime;
  return is_number && entry.Matches(column.name);
}

LayerStyle StyleBy(std::size_t column, const analysis::Scale& scale) {
  return {.column = column, .limits = scale.limits, .colours = scale.colours};
}

}  // namespace

std::optional<LayerStyle> StyleFor(const LayerSchema& schema, const analysis::ClassTable& classes, bool is_chosen) {
  const auto& columns = schema.columns;
  for (std::size_t at = 0; is_chosen && at < columns.size(); ++at) {
    for (const auto& entry : classes.Entries())
      if (HasClasses(columns[at], entry)) return StyleBy(at, classes.ScaleOf(entry));
  }
  for (const auto& entry : classes.Entries()) {
    for (std::size_t at = 0; !is_chosen && at < columns.size(); ++at)
      if (HasClasses(columns[at], entry)) return StyleBy(at, classes.ScaleOf(entry));
  }
  return std::nullopt;
}

}  // namespace loom
