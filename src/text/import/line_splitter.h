#pragma once

#include <string_view>
#include <vector>

#include "platform/cstring.h"

namespace loom {

// Cuts the lines of a text file into cells.
class LineSplitter {
 public:
  // A separator that starts with a blank, '-', ':' or '.' is widened by one blank.
  explicit LineSplitter(const CString& separator);
  const CString& separator() const { return separator_; }

  // Replaces `cells` by at least one view into the line. A separator at the very end starts no cell: it belongs to the
  // last one, as does everything when there is no separator. Splitting ends behind `most` cells (at least 1), when that
  // many were cut off.
  void Split(std::string_view line, std::vector<std::string_view>& cells,
             std::size_t most = static_cast<std::size_t>(-1)) const;
  // How many cells Split cuts a line into.
  std::size_t CountCells(std::string_view line) const;
  std::string_view Separator() const { return separator_.view(); }  // the one in force

 private:
  void SplitAtByte(std::string_view line, std::vector<std::string_view>& cells, std::size_t most) const;

  CString separator_;
  bool is_plain_byte_;  // one byte that is never part of a Chinese character
};

}  // namespace loom
