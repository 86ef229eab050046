#include "host/analysis/elements.h"

#include <algorithm>

namespace loom::analysis {

std::vector<std::int32_t> TellingElements(const ClassTable& classes, std::span<const CIEEntry> catalogue,
                                          std::span<const std::uint32_t> counts, std::size_t most) {
  std::vector<const CIEEntry*> held;
  for (const CIEEntry& element : catalogue) {
    const auto id = static_cast<std::size_t>(element.id);
    if (id < counts.size() && counts[id] > 0 && element.type != kFieldText) held.push_back(&element);
  }
  std::vector<std::int32_t> chosen;
  for (const ClassTable::Entry& entry : classes.Entries()) {
    std::size_t of_family = 0;
    for (const CIEEntry* const element : held) {
      if (chosen.size() == most) return chosen;
      if (!entry.Matches(element->name) || of_family == kMostOfFamily) continue;
      if (std::ranges::find(chosen, element->id) != chosen.end()) continue;
      chosen.push_back(element->id);
      ++of_family;
    }
  }
  return chosen;
}

}  // namespace loom::analysis
