#include "netinfo/net_checks.h"

#include <bitset>
#include <unordered_set>

namespace loom {
namespace {

constexpr std::int32_t kHighestCpi = 127;

bool IsEmpty(const NetValue& value) { return std::holds_alternative<std::monostate>(value); }

// The integers of some columns of one row; the first that is none is the fault.
class RowIntegers {
 public:
  explicit RowIntegers(const NetInfoRow& row) : row_(row) {}
  std::int32_t Take(std::size_t column) {
    const auto integer = IntegerOf(row_.values[column]);
    if (!integer && !fault_) fault_ = NetFault{row_.sheet_row, column};
    return integer.value_or(0);
  }
  const std::optional<NetFault>& fault() const { return fault_; }

 private:
  const NetInfoRow& row_;
  std::optional<NetFault> fault_;
};

}  // namespace

NetCheckResult CheckCells(const std::vector<NetInfoRow>& rows, std::size_t ci, std::optional<std::size_t> lac) {
  std::unordered_set<std::uint64_t> seen;
  for (const NetInfoRow& row : rows) {
    RowIntegers integers(row);
    const auto cell = static_cast<std::uint32_t>(integers.Take(ci));
    const auto area = lac ? static_cast<std::uint32_t>(integers.Take(*lac)) : 0;
    if (integers.fault()) return {NetCheck::kInvalid, *integers.fault()};
    if (!seen.insert(std::uint64_t{area} << 32 | cell).second)
      return {NetCheck::kInvalid, {row.sheet_row, std::nullopt}};
  }
  return {};
}

NetCheckResult CheckCpiGroups(const std::vector<NetInfoRow>& rows, std::size_t group, std::size_t cpi) {
  std::bitset<kHighestCpi + 1> seen;
  std::optional<NetFault> repeated;
  for (const NetInfoRow& row : rows) {
    const NetFault place{row.sheet_row, std::nullopt};
    if (IsEmpty(row.values[group]) != IsEmpty(row.values[cpi])) return {NetCheck::kIncomplete, place};
    RowIntegers integers(row);
    const std::int32_t group_number = integers.Take(group);
    const std::int32_t cpi_number = integers.Take(cpi);
    if (integers.fault()) return {NetCheck::kInvalid, *integers.fault()};
    if (group_number < 1 || cpi_number < 0 || cpi_number > kHighestCpi) return {NetCheck::kInvalid, place};
    const auto bit = static_cast<std::size_t>(cpi_number);
    if (seen[bit] && !repeated) repeated = place;
    seen.set(bit);
  }
  if (repeated) return {NetCheck::kSeveralGroups, *repeated};
  return {};
}

}  // namespace loom
