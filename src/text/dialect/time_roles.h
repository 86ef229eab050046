#pragma once

#include "text/dialect/role_finder.h"

namespace loom::dialect {

// Fills `roles.time` and the layouts of every time column. Positions are known by then: where day and month cannot be
// told apart, they say which order is the likelier.
void FindTimes(const std::vector<std::string>& names, const std::vector<ColumnProfile>& profiles,
               const FirstCells& cells, char decimal, const Overrides& overrides, Roles& roles);

}  // namespace loom::dialect
