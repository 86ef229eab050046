#pragma once

#include <vector>

#include "components/mem_row.h"

namespace loom::testing {

inline std::vector<std::int32_t> IdsOf(const CMemDataRow& row) {
  return {row.GetParamID().begin(), row.GetParamID().end()};
}

}  // namespace loom::testing
