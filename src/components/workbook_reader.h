#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "platform/cstring.h"

namespace loom {

// One cell of a worksheet that holds something.
struct WorksheetCell {
  enum class Kind : std::uint8_t {
    kNumber,
    kText,
    kBool,
    kDate,
    kError,    // such as "#N/A"
    kNoValue,  // a formula without a result that can be given
  };

  std::uint32_t column = 0;  // from 0
  Kind kind = Kind::kText;
  double number = 0;      // of kNumber; of kBool 0 or 1; of kDate the cell's own, as the sheet's date system counts
  double days = 0;        // of kDate: since 1899-12-30, times of day below 1
  std::string_view text;  // UTF-8, of kText and kError; valid until the sink returns
};

// Takes the rows of a worksheet from the top. Rows and cells that hold nothing do not come.
class IWorksheetSink {
 public:
  virtual ~IWorksheetSink() = default;
  // `row` counts from 1; cells go from left to right. False: no more rows are wanted.
  virtual bool OnRow(std::uint32_t row, std::span<const WorksheetCell> cells) = 0;
  // Ranges of merged cells, of which only the first holds a value. Comes behind the rows, if it comes.
  virtual void OnMergedRanges(std::uint32_t) {}
};

// A workbook open for reading. What fails throws Error with file, place and reason.
class IWorkbookReader {
 public:
  virtual ~IWorkbookReader() = default;
  virtual const std::vector<CString>& SheetNames() const = 0;  // of its worksheets, hidden ones too, in sheet order
  // The sheet by its position in SheetNames(). Reads as far as the sink wants, never more than a block of the file
  // ahead.
  virtual void ReadSheet(std::size_t sheet, IWorksheetSink& sink) = 0;
};

// By content, whatever the file is called: a zipped workbook (*.xlsx) or a BIFF workbook (*.xls). Throws Error.
std::unique_ptr<IWorkbookReader> OpenWorkbookReader(const CString& path);

}  // namespace loom
