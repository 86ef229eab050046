#pragma once

#include <deque>
#include <string>
#include <vector>

#include "components/workbook_reader.h"

namespace loom {

// A cell of a BIFF sheet by its row, from 0.
struct BiffCell {
  std::uint32_t row = 0;
  WorksheetCell cell;
};

// What a BIFF sheet says of its cells in records of their own: numbers, dates, truths, error values, results of
// formulas, and texts that do not stand in the table of shared ones.
struct BiffSheet {
  std::vector<BiffCell> cells;  // by row and column, one for each place
  std::deque<std::string> texts;
};

// One sheet, by its place in the workbook (MS-XLS 2.4.127, 2.5.133). A text that cannot be read comes as a formula
// without a value. Throws FileError when the file is no workbook that can be read.
BiffSheet ReadBiffSheet(const CString& path, std::size_t sheet);

}  // namespace loom
