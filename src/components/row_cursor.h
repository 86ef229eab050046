#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "platform/text_buffer.h"

namespace loom {

// The information element "RecordTime": its value is the row's record time, in seconds since 1970.
inline constexpr std::int32_t kRecordTimeIe = 2;

// How values of a row are put one behind the other.
struct RowLayout {
  std::string_view separator = {};  // between two values
  std::string_view blank = {};      // in place of a value that the row lacks, or that is an empty text
  bool fill_gaps = false;           // a row that lacks an element has the last value that an earlier row gave it
};

// Walks the rows of a stream in row order and gives their values as text in the system code page: integers in decimal,
// booleans as 1 or 0, numbers with the fewest digits that read back to the same value and never a '+', texts as they
// are. A number that is not finite is the invalid value "-255". The stream outlives the cursor and stays as it is.
class IRowCursor {
 public:
  virtual ~IRowCursor() = default;

  // A number for the values of an information element, the same one whenever it is asked for. Gaps are filled with what
  // was passed since: elements are told before the walk.
  virtual std::uint32_t AddColumn(std::int32_t ie_id) = 0;

  virtual void GoToFirstRow() = 0;
  // True on the last row, from the start in a stream without rows; a move leaves it true.
  virtual bool IsLastRow() const = 0;
  // On by `rows`, at most to the last row.
  virtual void Move(std::int32_t rows) = 0;

  // Of the current row; none in a stream without rows.
  virtual std::optional<double> GetRecordTime() const = 0;
  // Appends the values of columns in the current row.
  virtual void AppendValues(std::span<const std::uint32_t> columns, const RowLayout& layout, TextBuffer& out) = 0;
  void AppendValue(std::uint32_t column, TextBuffer& out) { AppendValues({&column, 1}, {}, out); }
};

}  // namespace loom
