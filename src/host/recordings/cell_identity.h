#pragma once

#include <cstdint>

namespace loom::recordings {

// Network and place of a cell as the network tells it. -1: not told.
struct CellIdentity {
  std::int32_t mcc = -1;
  std::int32_t mnc = -1;
  std::int32_t mnc_digits = 2;
  std::int32_t area = -1;  // TAC of LTE, LAC of GSM
  std::int32_t cell = -1;  // 28 bits of LTE, 16 of GSM

  friend bool operator==(const CellIdentity&, const CellIdentity&) = default;
};

}  // namespace loom::recordings
