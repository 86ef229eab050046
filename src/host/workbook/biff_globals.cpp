#include "host/workbook/biff_globals.h"

#include <map>

#include "host/workbook/biff_records.h"
#include "host/workbook/cell_date_reader.h"

namespace loom {
namespace {

constexpr unsigned kBiff8 = 0x0600;

unsigned CodePageOf(unsigned number) {
  if (number == 0x8000) return 10000;  // those of the first Macintosh and Windows versions
  return number == 0x8001 ? 1252 : number;
}

// The code of a number format with '?' for every character beyond ASCII: none of them shows a part of a date.
std::string FormatCode(const BiffRecord& record, bool is_biff8) {
  const std::size_t characters = is_biff8 ? record.U16(2) : record.U8(2);
  const bool is_wide = is_biff8 && (record.U8(4) & 1) != 0;
  const std::size_t first = is_biff8 ? 5 : 3;
  std::string code;
  for (std::size_t at = 0; at < characters; ++at) {
    const unsigned unit = is_wide ? record.U16(first + at * 2) : record.U8(first + at);
    if (unit == 0) break;  // behind the end of the record
    code += unit < 0x80 ? static_cast<char>(unit) : '?';
  }
  return code;
}

}  // namespace

BiffGlobals ReadBiffGlobals(std::string_view stream) {
  BiffGlobals globals;
  std::map<unsigned, bool> own_formats;  // whether it shows dates
  std::vector<unsigned> cell_formats;
  BiffRecords records(stream, 0);
  for (BiffRecord record; records.Next(record) && record.type != kBiffEndOfSubstream;) {
    switch (record.type) {
      case kBiffBeginOfSubstream:
        globals.is_biff8 = record.U16(0) == kBiff8;
        break;
      case kBiffDateMode:
        globals.from_1904 = record.U16(0) == 1;
        break;
      case kBiffCodePage:
        globals.code_page = CodePageOf(record.U16(0));
        break;
      case kBiffBoundSheet:
        globals.sheets.push_back(record.U32(0));
        break;
      case kBiffNumberFormat:
        own_formats[record.U16(0)] = IsDateFormatCode(FormatCode(record, globals.is_biff8));
        break;
      case kBiffCellFormat:
        cell_formats.push_back(record.U16(2));
        break;
      default:
        break;
    }
  }
  // A format that the file defines counts as defined there, also under a standard id.
  for (const unsigned id : cell_formats) {
    const auto own = own_formats.find(id);
    globals.date_styles.push_back(own != own_formats.end() ? own->second : IsDateFormatId(static_cast<int>(id)));
  }
  return globals;
}

}  // namespace loom
