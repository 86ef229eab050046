#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/automation/variant.h"

namespace loom {

// An array of values (VT_VARIANT), zero-based in every dimension; dimensions count from 1. Copies have elements of
// their own. Bounds and indices that are out of range throw AutomationError.
class COleSafeArray {
 public:
  // Drops what the array held; every element is empty. Throws std::bad_alloc or std::length_error when there is no
  // room.
  void Create(VARTYPE element_type, std::span<const std::uint32_t> counts);
  void Destroy();

  std::uint32_t GetDim() const { return static_cast<std::uint32_t>(counts_.size()); }
  std::int32_t GetUBound(std::uint32_t dimension) const;  // -1 for a dimension without elements

  // The elements of one row of a two-dimensional array.
  std::span<VARIANT> Row(std::int32_t row);
  std::span<const VARIANT> Row(std::int32_t row) const;

 private:
  std::vector<std::uint32_t> counts_;
  std::vector<VARIANT> values_;  // the last dimension runs fastest
};

}  // namespace loom
