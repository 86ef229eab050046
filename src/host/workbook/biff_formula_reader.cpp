#include "host/workbook/biff_formula_reader.h"

#include <bit>
#include <cstring>

#include "host/workbook/compound_stream_reader.h"
#include "platform/encoding.h"
#include "platform/file.h"

namespace loom {
namespace {

// Record types (MS-XLS 2.3).
constexpr unsigned kFormula = 0x0006;
constexpr unsigned kEndOfSubstream = 0x000A;
constexpr unsigned kBoundSheet = 0x0085;
constexpr unsigned kBoolErr = 0x0205;
constexpr unsigned kString = 0x0207;
constexpr unsigned kBeginOfSubstream = 0x0809;
constexpr unsigned kBiff8 = 0x0600;

struct Record {
  unsigned type = 0;
  std::string_view data;

  unsigned U8(std::size_t at) const { return at < data.size() ? static_cast<unsigned char>(data[at]) : 0U; }
  unsigned U16(std::size_t at) const { return U8(at) | U8(at + 1) << 8; }
};

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

// The records of a stream from a position on.
class Records {
 public:
  Records(std::string_view stream, std::size_t at) : stream_(stream), at_(at) {}
  bool Next(Record& record) {
    if (at_ + 4 > stream_.size()) return false;
    const Record head{0, stream_.substr(at_, 4)};
    const std::size_t length = head.U16(2);
    if (at_ + 4 + length > stream_.size()) return false;
    record = {head.U16(0), stream_.substr(at_ + 4, length)};
    at_ += 4 + length;
    return true;
  }

 private:
  std::string_view stream_;
  std::size_t at_;
};

// The result that a formula record holds; one that is a text stands in the record behind it.
BiffResult FormulaResult(const Record& record) {
  BiffResult result;
  if (record.data.size() < 14) return result;
  if (record.U16(12) != 0xFFFF) {
    std::memcpy(&result.number, record.data.data() + 6, sizeof(result.number));
    result.kind = WorksheetCell::Kind::kNumber;
  } else if (record.U8(6) == 1) {
    result.kind = WorksheetCell::Kind::kBool;
    result.number = record.U8(8) != 0 ? 1 : 0;
  } else if (record.U8(6) == 2) {
    result.kind = WorksheetCell::Kind::kError;
    result.text = ErrorText(record.U8(8));
  } else if (record.U8(6) == 3) {
    result.kind = WorksheetCell::Kind::kText;  // an empty one
  }
  return result;
}
static_assert(std::endian::native == std::endian::little);

// A text in one record (MS-XLS 2.5.296); nothing for one that goes on in the next.
void TakeString(const Record& record, BiffResult& result) {
  const std::size_t characters = record.U16(0);
  const bool is_wide = (record.U8(2) & 1) != 0;
  if (record.data.size() < 3 + characters * (is_wide ? 2 : 1)) return;
  std::string units;
  for (std::size_t at = 0; at < characters; ++at) {
    const unsigned unit = is_wide ? record.U16(3 + at * 2) : record.U8(3 + at);
    units += static_cast<char>(unit & 0xFF);
    units += static_cast<char>(unit >> 8);
  }
  try {
    result.text = Utf16ToUtf8(units);
    result.kind = WorksheetCell::Kind::kText;
  } catch (const EncodingError&) {
    result.kind = WorksheetCell::Kind::kNoValue;  // reported where the cell is used
  }
}

BiffResults ReadSheetResults(std::string_view stream, std::size_t at) {
  BiffResults results;
  Records records(stream, at);
  BiffResult* last_formula = nullptr;
  bool is_biff8 = false;
  int depth = 0;
  for (Record record; records.Next(record);) {
    if (record.type == kBeginOfSubstream && ++depth == 1) is_biff8 = record.U16(0) == kBiff8;
    if (record.type == kEndOfSubstream && --depth <= 0) break;
    if (depth != 1) continue;
    const std::pair<std::uint32_t, std::uint32_t> place{record.U16(0), record.U16(2)};
    if (record.type == kFormula) {
      last_formula = &(results[place] = FormulaResult(record));
    } else if (record.type == kString && last_formula != nullptr && is_biff8) {
      TakeString(record, *last_formula);
    } else if (record.type == kBoolErr && record.U8(7) != 0) {
      results[place] = {WorksheetCell::Kind::kError, 0, ErrorText(record.U8(6))};
    } else if (record.type == kBoolErr) {
      results[place] = {WorksheetCell::Kind::kBool, record.U8(6) != 0 ? 1.0 : 0.0, {}};
    }
  }
  return results;
}

}  // namespace

BiffResults ReadBiffResults(const CString& path, std::size_t sheet) {
  const auto stream = ReadCompoundStream(ReadWholeFile(path), {"Workbook", "Book"});
  if (!stream) return {};
  Records records(*stream, 0);
  std::size_t number = 0;
  for (Record record; records.Next(record) && record.type != kEndOfSubstream;) {
    if (record.type == kBoundSheet && number++ == sheet)
      return ReadSheetResults(*stream, record.U16(0) | std::size_t{record.U16(2)} << 16);
  }
  return {};
}

}  // namespace loom
