#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "components/field_value.h"
#include "components/row_cursor.h"
#include "components/stream_manager.h"

namespace loom {

// Notes the values of its columns while it passes the rows, so that asking for a value searches no row.
class RowCursor final : public IRowCursor {
 public:
  explicit RowCursor(const RowMap& rows);

  std::uint32_t AddColumn(std::int32_t ie_id) override;
  void GoToFirstRow() override;
  bool IsLastRow() const override { return next_ == rows_.end(); }
  void Move(std::int32_t rows) override;
  std::optional<double> GetRecordTime() const override;
  void AppendValues(std::span<const std::uint32_t> columns, const RowLayout& layout, TextBuffer& out) override;

  // The same values for machines, of the current row. A number is the decimal one that its text shows; NaN: the row
  // lacks it, or it is the invalid value or not finite. A text is in the system code page, empty where there is none.
  double Number(std::uint32_t column) const;
  std::string_view Text(std::uint32_t column) const;
  // Null in a stream without rows.
  const CMemDataRow* Row() const { return row_; }

 private:
  enum class Kind : std::int32_t { kAbsent, kInt, kShort, kFloat, kBool, kText, kRecordTime };

  // The value of a column that was passed last.
  struct Cell {
    const CMemDataRow* row = nullptr;
    uniFieldValue value = {};
    Kind kind = Kind::kInt;
  };

  static Kind KindOf(std::int32_t ie_id);
  std::uint32_t& ColumnToAdd(std::int32_t ie_id);
  std::uint32_t ColumnOf(std::int32_t ie_id) const;
  void TakeNextRow();
  void NoteValues();

  static constexpr std::uint64_t kRowsBetweenLooks = 256;

  const RowMap& rows_;
  std::uint64_t passed_ = 0;                                     // since the first row
  RowMap::const_iterator next_;                                  // behind the current row
  const CMemDataRow* row_ = nullptr;                             // null without rows
  std::vector<Cell> cells_;                                      // by column; the first takes what nobody asked for
  std::vector<std::uint32_t> columns_;                           // by id; 0: nobody asked
  std::unordered_map<std::int32_t, std::uint32_t> far_columns_;  // of ids that no catalogue has
};

}  // namespace loom
