#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "components/project.h"
#include "host/analysis/classes.h"

namespace loom::analysis {

// Members of a family of elements (neighbours 0, 1, 2 ...) that are shown unless somebody chooses.
inline constexpr std::size_t kMostOfFamily = 3;

// The elements to look at first in rows that hold `counts` of each (CountByElement): those that the table has classes
// for, in its order, up to `most`.
std::vector<std::int32_t> TellingElements(const ClassTable& classes, std::span<const CIEEntry> catalogue,
                                          std::span<const std::uint32_t> counts, std::size_t most);

}  // namespace loom::analysis
