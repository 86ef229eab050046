#include "host/workbook/biff_sheet_reader.h"

#include <algorithm>
#include <optional>
#include <tuple>

#include "host/workbook/biff_globals.h"
#include "host/workbook/biff_records.h"
#include "host/workbook/cell_date_reader.h"
#include "host/workbook/compound_stream_reader.h"
#include "platform/code_page.h"
#include "platform/encoding.h"
#include "platform/file.h"

namespace loom {
namespace {

using Kind = WorksheetCell::Kind;

// Where the records of cells hold row, column and format; a value follows.
constexpr std::size_t kRowAt = 0;
constexpr std::size_t kColumnAt = 2;
constexpr std::size_t kFormatAt = 4;
constexpr std::size_t kValueAt = 6;

const char* ErrorText(unsigned code) {
  switch (code) {
    case 0x00:
      return "#NULL!";
    case 0x07:
      return "#DIV/0!";
    case 0x0F:
      return "#VALUE!";
    case 0x17:
      return "#REF!";
    case 0x1D:
      return "#NAME?";
    case 0x24:
      return "#NUM!";
    default:
      return "#N/A";
  }
}

// MS-XLS 2.5.217: an integer of 30 bits or the upper 30 bits of a number, perhaps in hundredths.
double RkNumber(std::uint32_t rk) {
  double number;
  if ((rk & 2) != 0) {
    number = static_cast<std::int32_t>(rk) >> 2;
  } else {
    const std::uint64_t bits = std::uint64_t{rk & ~3U} << 32;
    std::memcpy(&number, &bits, sizeof number);
  }
  return (rk & 1) != 0 ? number / 100 : number;
}

class SheetReader {
 public:
  SheetReader(std::string_view stream, std::size_t at, const BiffGlobals& globals)
      : records_(stream, at), globals_(globals) {}

  BiffSheet Read() {
    int depth = 0;  // charts of a sheet are substreams of it
    for (BiffRecord record; records_.Next(record);) {
      if (record.type == kBiffBeginOfSubstream) ++depth;
      if (record.type == kBiffEndOfSubstream && --depth <= 0) break;
      if (depth == 1) Take(record);
    }
    KeepTheLastOfEachPlace();
    return std::move(sheet_);
  }

 private:
  void Take(const BiffRecord& record) {
    switch (record.type) {
      case kBiffNumber:
        return SetNumber(Add(record), record.U16(kFormatAt), record.Real(kValueAt));
      case kBiffRk:
        return SetNumber(Add(record), record.U16(kFormatAt), RkNumber(record.U32(kValueAt)));
      case kBiffMulRk:
        return TakeNumbers(record);
      case kBiffBoolErr:
        return record.U8(7) != 0 ? SetError(Add(record), record.U8(6)) : SetBool(Add(record), record.U8(6));
      case kBiffFormula:
        return TakeFormula(record);
      case kBiffLabel:
      case kBiffRichText:
        SetText(Add(record), record, kValueAt);
        if (sheet_.cells.back().cell.kind == Kind::kNoValue) sheet_.cells.pop_back();  // the library may read it
        return;
      case kBiffString:
        // The result of the formula in front of it; between them stand shared formulas at most.
        if (awaits_text_) SetText(sheet_.cells.back().cell, record, 0);
        awaits_text_ = false;
        return;
      default:
        return;
    }
  }

  WorksheetCell& Add(const BiffRecord& record) { return Add(record, record.U16(kColumnAt)); }
  WorksheetCell& Add(const BiffRecord& record, unsigned column) {
    awaits_text_ = false;
    WorksheetCell& cell = sheet_.cells.emplace_back(BiffCell{record.U16(kRowAt), {}}).cell;
    cell.column = column;
    return cell;
  }

  void SetNumber(WorksheetCell& cell, unsigned format, double number) const {
    SetWorksheetNumber(cell, number, format < globals_.date_styles.size() && globals_.date_styles[format],
                       globals_.from_1904);
  }
  static void SetBool(WorksheetCell& cell, unsigned value) {
    cell.kind = Kind::kBool;
    cell.number = value != 0 ? 1 : 0;
  }
  static void SetError(WorksheetCell& cell, unsigned code) {
    cell.kind = Kind::kError;
    cell.text = ErrorText(code);
  }

  // A row of numbers, each with its format; the last two bytes are the last column.
  void TakeNumbers(const BiffRecord& record) {
    constexpr std::size_t kEntry_bytes = 6;
    for (std::size_t at = 4; at + kEntry_bytes + 2 <= record.data.size(); at += kEntry_bytes) {
      const auto number = static_cast<unsigned>((at - 4) / kEntry_bytes);
      SetNumber(Add(record, record.U16(kColumnAt) + number), record.U16(at), RkNumber(record.U32(at + 2)));
    }
  }

  // The result that a formula record holds; one that is a text stands in a record behind it.
  void TakeFormula(const BiffRecord& record) {
    WorksheetCell& cell = Add(record);
    cell.kind = Kind::kNoValue;
    if (record.data.size() < 14) return;
    if (record.U16(12) != 0xFFFF) return SetNumber(cell, record.U16(kFormatAt), record.Real(kValueAt));
    switch (record.U8(kValueAt)) {
      case 0:
        awaits_text_ = true;
        return;
      case 1:
        return SetBool(cell, record.U8(8));
      case 2:
        return SetError(cell, record.U8(8));
      case 3:
        cell.kind = Kind::kText;  // an empty one
        return;
      default:
        return;
    }
  }

  // A text whose length stands at `at`, with the records that it goes on in; one that cannot be read is no value.
  void SetText(WorksheetCell& cell, const BiffRecord& record, std::size_t at) {
    cell.kind = Kind::kNoValue;
    try {
      const auto text = globals_.is_biff8 ? WideText(record, at) : ByteText(record, at);
      if (!text) return;
      cell.text = sheet_.texts.emplace_back(*text);
      cell.kind = Kind::kText;
    } catch (const Error&) {
      return;  // reported where the cell is used
    }
  }

  std::optional<std::string> ByteText(const BiffRecord& record, std::size_t at) {
    const std::size_t length = record.U16(at);
    std::string bytes(record.From(at + 2));
    for (BiffRecord more; bytes.size() < length && records_.NextIf(kBiffContinue, more);) bytes += more.data;
    if (bytes.size() < length) return std::nullopt;
    return CodePageToUtf8(globals_.code_page, std::string_view(bytes).substr(0, length));
  }

  // MS-XLS 2.5.294: a flag in front of the characters, and of those in each further record, says how wide they are.
  std::optional<std::string> WideText(const BiffRecord& record, std::size_t at) {
    std::size_t left = record.U16(at);
    std::string units;
    const auto take = [&](std::string_view part) {
      const bool is_wide = !part.empty() && (part.front() & 1) != 0;
      part.remove_prefix(std::min<std::size_t>(1, part.size()));
      const std::size_t count = std::min(left, part.size() / (is_wide ? 2 : 1));
      for (std::size_t unit = 0; unit < count; ++unit) {
        units += part[is_wide ? unit * 2 : unit];
        units += is_wide ? part[unit * 2 + 1] : '\0';
      }
      left -= count;
    };
    take(record.From(at + 2));
    for (BiffRecord more; left > 0 && records_.NextIf(kBiffContinue, more);) take(more.data);
    if (left > 0) return std::nullopt;
    return Utf16ToUtf8(units);
  }

  void KeepTheLastOfEachPlace() {
    auto& cells = sheet_.cells;
    const auto place = [](const BiffCell& cell) { return std::tuple(cell.row, cell.cell.column); };
    std::stable_sort(cells.begin(), cells.end(),
                     [&](const BiffCell& a, const BiffCell& b) { return place(a) < place(b); });
    const auto first = std::unique(cells.rbegin(), cells.rend(),
                                   [&](const BiffCell& a, const BiffCell& b) { return place(a) == place(b); });
    cells.erase(cells.begin(), first.base());
  }

  BiffRecords records_;
  const BiffGlobals& globals_;
  BiffSheet sheet_;
  bool awaits_text_ = false;
};

}  // namespace

BiffSheet ReadBiffSheet(const CString& path, std::size_t sheet) {
  const auto stream = ReadCompoundStream(ReadWholeFile(path), {"Workbook", "Book"});
  if (!stream) throw FileError(path, 0, "is a damaged workbook: its records cannot be reached");
  const BiffGlobals globals = ReadBiffGlobals(*stream);
  BiffRecord first;
  if (sheet >= globals.sheets.size() ||
      !BiffRecords(*stream, globals.sheets[sheet]).NextIf(kBiffBeginOfSubstream, first))
    throw FileError(path, 0, "is a damaged workbook: a sheet has no place");
  return SheetReader(*stream, globals.sheets[sheet], globals).Read();
}

}  // namespace loom
