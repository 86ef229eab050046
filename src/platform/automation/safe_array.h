#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/automation/spooled_rows.h"
#include "platform/automation/variant.h"

namespace loom {

// An array of values (VT_VARIANT), zero-based in every dimension; dimensions count from 1. Copies have elements of
// their own. Bounds and indices that are out of range throw AutomationError. The elements of a large table lie in a
// temporary file.
class COleSafeArray {
 public:
  // Drops what the array held; every element is empty. Throws std::bad_alloc or std::length_error when there is no
  // room.
  void Create(VARTYPE element_type, std::span<const std::uint32_t> counts);
  void Destroy();

  std::uint32_t GetDim() const { return static_cast<std::uint32_t>(counts_.size()); }
  std::int32_t GetUBound(std::uint32_t dimension) const;  // -1 for a dimension without elements

  // The elements of one row of a two-dimensional array; of a large one valid until another row is asked for.
  std::span<VARIANT> Row(std::int32_t row);
  std::span<const VARIANT> Row(std::int32_t row) const;

 private:
  static constexpr std::size_t kMostInMemory = 1U << 19;  // elements of a table

  void RequireRow(std::int32_t row) const;

  std::vector<std::uint32_t> counts_;
  std::vector<VARIANT> values_;                 // the last dimension runs fastest
  mutable std::optional<SpooledRows> spooled_;  // of a large table, which has no values_
};

}  // namespace loom
