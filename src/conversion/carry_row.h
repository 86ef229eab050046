#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "components/field_value.h"
#include "components/mem_row.h"

namespace loom {

// The last known serving-cell values of one device, in the order in which they first appeared.
class CarryRow {
 public:
  // Records mostly bring the same fields in the same order: the search goes on behind the field set last.
  void Set(std::int32_t id, uniFieldValue value) {
    for (std::size_t step = 0; step < fields_.size(); ++step) {
      if (next_ >= fields_.size()) next_ = 0;
      auto& [held, kept] = fields_[next_++];
      if (held == id) {
        kept = value;
        return;
      }
    }
    fields_.emplace_back(id, value);
    next_ = fields_.size();
  }
  void AppendTo(CMemDataRow& row) const {
    for (const auto& [id, value] : fields_) row.QuickAddIE(id, value);
  }
  void Clear() {
    fields_.clear();
    next_ = 0;
  }

 private:
  std::vector<std::pair<std::int32_t, uniFieldValue>> fields_;
  std::size_t next_ = 0;
};

}  // namespace loom
