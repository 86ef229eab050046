#pragma once

#include <cstdint>
#include <string>

namespace loom {

// The information element "RecordTime": its value is the row's record time, in seconds since 1970.
inline constexpr std::int32_t kRecordTimeIe = 2;

// Walks the rows of a stream in row order and gives their values as text in the system code page: integers in decimal,
// booleans as 1 or 0, numbers with the fewest digits that read back to the same value and never a '+', texts as they
// are. A number that is not finite is the invalid value "-255". The stream outlives the cursor and stays as it is.
class IRowCursor {
 public:
  virtual ~IRowCursor() = default;

  virtual void GoToFirstRow() = 0;
  // True on the last row, from the start in a stream without rows; a move leaves it true.
  virtual bool IsLastRow() const = 0;
  // On by `rows`, at most to the last row.
  virtual void Move(std::int32_t rows) = 0;

  // Appends the value of an information element in the current row; nothing when the row lacks it.
  virtual void AppendValue(std::int32_t ie_id, std::string& out) = 0;
  // The same with gaps filled: a row that lacks the element has the last value that an earlier row gave it.
  virtual void AppendFilledValue(std::int32_t ie_id, std::string& out) = 0;
};

}  // namespace loom
