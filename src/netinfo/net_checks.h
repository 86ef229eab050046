#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "components/net_info.h"

namespace loom {

// A value of a check that is no integer, or the row that made the check fail.
struct NetFault {
  std::uint32_t sheet_row = 0;
  std::optional<std::size_t> column;  // of the row's values: the one that is no integer
};

enum class NetCheck : int {
  kValid = 1,
  kInvalid = 0,         // cells: one comes twice; groups: a value that is not allowed
  kSeveralGroups = -1,  // a CPI comes twice
  kIncomplete = -2,     // a group or a CPI without the other
};

struct NetCheckResult {
  NetCheck check = NetCheck::kValid;
  NetFault fault;
};

// Every cell identity comes once and, with `lac` given, every pair of LAC and cell identity. Columns are positions in
// the rows' values.
NetCheckResult CheckCells(const std::vector<NetInfoRow>& rows, std::size_t ci, std::optional<std::size_t> lac);

// Groups count from 1, CPIs are 0 to 127, each in one row.
NetCheckResult CheckCpiGroups(const std::vector<NetInfoRow>& rows, std::size_t group, std::size_t cpi);

}  // namespace loom
