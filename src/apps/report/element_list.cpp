#include "apps/report/element_list.h"

#include "platform/encoding.h"

namespace loom::report {

std::size_t ElementList::NumberOf(const analysis::Series& series) {
  const auto [known, is_new] = numbers_.try_emplace(series.element, scales_.size());
  if (!is_new) return known->second;
  const CIEEntry* const entry = catalogue_.Find(series.element);
  const std::string name = entry != nullptr ? GbkToUtf8(entry->name) : std::to_string(series.element);
  const analysis::Scale* const scale = classes_.Find(name);
  scales_.push_back(scale != nullptr ? *scale : analysis::AutomaticScale(series.values));
  json_.push_back({{"name", name},
                   {"unit", entry != nullptr ? GbkToUtf8(entry->unit) : ""},
                   {"limits", scales_.back().limits},
                   {"colours", scales_.back().colours}});
  return known->second;
}

}  // namespace loom::report
