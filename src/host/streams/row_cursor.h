#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "components/field_value.h"
#include "components/row_cursor.h"
#include "components/stream_manager.h"

namespace loom {

// Notes for every information element the row that gave it last, so that asking for a value searches no row.
class RowCursor final : public IRowCursor {
 public:
  explicit RowCursor(const RowMap& rows) : rows_(rows) { RowCursor::GoToFirstRow(); }

  void GoToFirstRow() override;
  bool IsLastRow() const override { return next_ == rows_.end(); }
  void Move(std::int32_t rows) override;
  void AppendValue(std::int32_t ie_id, std::string& out) override;
  void AppendFilledValue(std::int32_t ie_id, std::string& out) override;

 private:
  // Where an element was seen last, up to the current row.
  struct LastSeen {
    const CMemDataRow* row = nullptr;
    std::uint32_t position = 0;
    MemTableFieldTypeEnum type = kFieldNone;  // none: not looked up yet
  };

  LastSeen& SeenOf(std::int32_t ie_id);
  void TakeNextRow();
  void Append(std::int32_t ie_id, LastSeen& seen, std::string& out) const;

  const RowMap& rows_;
  RowMap::const_iterator next_;                         // behind the current row
  const CMemDataRow* row_ = nullptr;                    // null without rows
  std::vector<LastSeen> seen_;                          // by id
  std::unordered_map<std::int32_t, LastSeen> far_ids_;  // ids that no catalogue has
};

}  // namespace loom
