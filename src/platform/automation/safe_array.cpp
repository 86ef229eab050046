#include "platform/automation/safe_array.h"

#include <limits>
#include <stdexcept>

namespace loom {

void COleSafeArray::Create(VARTYPE element_type, std::span<const std::uint32_t> counts) {
  if (element_type != VT_VARIANT) throw AutomationError("arrays hold values of type VT_VARIANT only");
  if (counts.empty()) throw AutomationError("an array needs a dimension");
  Destroy();
  std::size_t total = 1;
  for (const std::uint32_t count : counts) {
    if (count != 0 && total > std::numeric_limits<std::size_t>::max() / count)
      throw std::length_error("array too large");
    total *= count;
  }
  if (counts.size() == 2 && total > kMostInMemory)
    spooled_.emplace(counts[0], counts[1]);
  else
    values_.resize(total);
  counts_.assign(counts.begin(), counts.end());
}

void COleSafeArray::Destroy() {
  counts_.clear();
  std::vector<VARIANT>().swap(values_);
  spooled_.reset();
}

std::int32_t COleSafeArray::GetUBound(std::uint32_t dimension) const {
  if (dimension == 0 || dimension > GetDim()) throw AutomationError("the array has no such dimension");
  return static_cast<std::int32_t>(counts_[dimension - 1]) - 1;
}

void COleSafeArray::RequireRow(std::int32_t row) const {
  if (GetDim() != 2) throw AutomationError("rows need an array of two dimensions");
  if (row < 0 || row > GetUBound(1)) throw AutomationError("array row " + std::to_string(row) + " is out of range");
}

std::span<const VARIANT> COleSafeArray::Row(std::int32_t row) const {
  RequireRow(row);
  if (spooled_) return spooled_->ToRead(static_cast<std::uint32_t>(row));
  return std::span(values_).subspan(static_cast<std::size_t>(row) * counts_[1], counts_[1]);
}

std::span<VARIANT> COleSafeArray::Row(std::int32_t row) {
  RequireRow(row);
  if (spooled_) return spooled_->ToChange(static_cast<std::uint32_t>(row));
  return std::span(values_).subspan(static_cast<std::size_t>(row) * counts_[1], counts_[1]);
}

}  // namespace loom
