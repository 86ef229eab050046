#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "components/workbook_reader.h"

namespace loom {

// A cell of a BIFF sheet that the library under the reader does not give, or only as a number: the result of a formula,
// a truth or an error value.
struct BiffResult {
  WorksheetCell::Kind kind = WorksheetCell::Kind::kNoValue;
  double number = 0;
  std::string text;  // UTF-8
};
using BiffResults = std::map<std::pair<std::uint32_t, std::uint32_t>, BiffResult>;  // by row and column, from 0

// Of one sheet, by its place in the workbook (MS-XLS 2.4.127, 2.5.133). Numbers that are formatted as dates come as
// numbers; what cannot be found out comes as a formula without a value. A file that is not what it should be gives
// what was found up to there.
BiffResults ReadBiffResults(const CString& path, std::size_t sheet);

}  // namespace loom
