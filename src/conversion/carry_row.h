#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "components/field_value.h"
#include "components/mem_row.h"

namespace loom {

// The last known serving-cell values of one device, in the order in which they first appeared.
class CarryRow {
 public:
  // Records mostly bring the same fields in the same order: the search goes on behind the field set last.
  void Set(std::int32_t id, uniFieldValue value) {
    for (std::size_t step = 0; step < ids_.size(); ++step) {
      if (next_ >= ids_.size()) next_ = 0;
      const std::size_t at = next_++;
      if (ids_[at] == id) {
        values_[at] = value;
        return;
      }
    }
    ids_.push_back(id);
    values_.push_back(value);
    next_ = ids_.size();
  }
  void AppendTo(CMemDataRow& row) const { row.QuickAddIEs(ids_, values_); }
  void Clear() {
    ids_.clear();
    values_.clear();
    next_ = 0;
  }

 private:
  std::vector<std::int32_t> ids_;
  std::vector<uniFieldValue> values_;
  std::size_t next_ = 0;
};

}  // namespace loom
