#pragma once

#include <cstdint>
#include <vector>

#include "host/workbook/cell_address.h"
#include "host/workbook/deflate_writer.h"
#include "platform/automation/safe_array.h"
#include "platform/file.h"

namespace loom {

// The cells of a worksheet, compressed and set aside until the head of the sheet is known.
struct SheetBody {
  std::uint64_t scratch_position = 0;
  DeflateTotals totals;
  CellAddress first;
  CellAddress last;
  std::vector<std::uint32_t> column_widths;  // widest text by column from `first` on, in columns of Latin letters
};

// Added to the number of the cells' style: that of cells that show a date and time.
inline constexpr std::uint32_t kTimeStyle = 1;

// Writes the values of a two-dimensional array with its first element in cell `first`, and the end of the sheet behind
// them. A text that is a plain decimal number becomes a number, and one that is a date and time with milliseconds a
// date (cell_text_kind.h), but in the first row of a sheet, which holds headings. Empty values and empty texts become
// no cell; a row of none but empty values no row. `style` is the cells' style number; `sheet_name` (GBK) and `path`
// stand in notes. Values of a kind that a cell cannot hold throw AutomationError.
SheetBody WriteSheetBody(const COleSafeArray& values, CellAddress first, std::uint32_t style, ScratchFile& scratch,
                         const CString& path, const CString& sheet_name);
// The same without any cell.
SheetBody WriteEmptySheetBody(ScratchFile& scratch);

}  // namespace loom
