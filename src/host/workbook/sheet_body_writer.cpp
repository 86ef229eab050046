#include "host/workbook/sheet_body_writer.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

#include "components/note_kinds.h"
#include "host/workbook/cell_text_kind.h"
#include "host/workbook/xml_text.h"
#include "platform/encoding.h"
#include "platform/interrupt.h"
#include "platform/number.h"

namespace loom {
namespace {

constexpr std::size_t kBlockBytes = 256 * 1024;
constexpr std::uint32_t kRowsBetweenLooks = 64;
constexpr std::string_view kEndOfSheet = "</sheetData></worksheet>";
constexpr std::string_view kEndOfText = "</t></is></c>";

std::uint32_t TextWidth(std::string_view gbk) {
  std::size_t width = 0;
  for (std::size_t line = 0; line <= gbk.size();) {
    const std::size_t end = std::min(gbk.find('\n', line), gbk.size());
    width = std::max(width, end - line);  // a Chinese character has two bytes and the width of two letters
    line = end + 1;
  }
  return static_cast<std::uint32_t>(width);
}

// Renders rows into a block of text that goes to the compressor when it is full.
class RowRenderer {
 public:
  RowRenderer(CellAddress first, std::uint32_t columns, std::uint32_t style, const CString& path,
              const CString& sheet_name, DeflateWriter& deflate)
      : first_(first), path_(path), sheet_name_(sheet_name), deflate_(deflate), widths_(columns) {
    style_ = "\" s=\"" + std::to_string(style) + "\"";
    time_style_ = "\" s=\"" + std::to_string(style + kTimeStyle) + "\"";
    for (std::uint32_t column = 0; column < columns; ++column)
      cell_heads_.push_back("<c r=\"" + ColumnLetters(first.column + column));
    block_.reserve(kBlockBytes + 4096);
  }

  void Row(std::uint32_t row, std::span<const VARIANT> values) {
    if (std::all_of(values.begin(), values.end(), [](const VARIANT& value) { return value.IsEmpty(); })) return;
    row_ = row;
    row_number_ = std::to_string(row + 1);
    text_head_ = row_number_ + style_ + " t=\"inlineStr\"><is><t>";
    block_ += "<row r=\"";
    block_ += row_number_;
    block_ += "\">";
    for (std::size_t column = 0; column < values.size(); ++column) {
      if (!values[column].IsEmpty()) Cell(column, values[column]);
    }
    block_ += "</row>";
    if (block_.size() >= kBlockBytes) Flush();
  }
  void End() {
    block_ += kEndOfSheet;
    Flush();
  }
  std::vector<std::uint32_t> TakeWidths() { return std::move(widths_); }

 private:
  void Flush() {
    deflate_.Write(block_);
    block_.clear();
  }

  void Cell(std::size_t column, const VARIANT& value) {
    switch (value.type()) {
      case VT_BSTR:
        return row_ == 0 ? TextCell(column, value.Text()) : AssignedText(column, value.Text());
      case VT_I2:
      case VT_I4:
      case VT_R8:
        return NumberCell(column, value.Real());
      case VT_BOOL:
        return ValueCell(column, style_, " t=\"b\"", value.Boolean() ? "1" : "0");
      default:
        throw AutomationError("a cell cannot hold a value of type " + std::to_string(value.type()));
    }
  }

  void AssignedText(std::size_t column, std::string_view text) {
    if (IsPlainNumber(text)) return ValueCell(column, style_, "", text);
    char serial[kSerialRoom];
    const char* const end = PutSerial(text, serial);
    if (end == nullptr) return TextCell(column, text);
    ValueCell(column, time_style_, "", {serial, static_cast<std::size_t>(end - serial)});
    widths_[column] = std::max(widths_[column], static_cast<std::uint32_t>(text.size()));
  }

  void TextCell(std::size_t column, std::string_view text) {
    if (text.empty()) return;
    if (text.size() > kMaxCellCharacters) text = Shortened(column, text);
    if (text.size() > widths_[column]) widths_[column] = std::max(widths_[column], TextWidth(text));
    block_ += cell_heads_[column];
    const bool plain = IsPlainXmlText(text);
    if (NeedsSpacePreserved(text)) {
      block_ += row_number_;
      block_ += style_;
      block_ += " t=\"inlineStr\"><is><t xml:space=\"preserve\">";
    } else {
      block_ += text_head_;
    }
    if (plain) {
      block_ += text;
    } else {
      AppendXmlText(block_, text);
    }
    block_ += kEndOfText;
  }

  std::string_view Shortened(std::size_t column, std::string_view text) {
    const std::string_view head = HeadOfCharacters(text, kMaxCellCharacters);
    if (head.size() < text.size()) {
      CurrentNotes().Add("text cut to the length of a cell"_note, path_,
                         GbkToUtf8(sheet_name_) + " " + CellText(PlaceOf(column)),
                         std::to_string(CharacterCount(text)) + " characters, a cell has at most " +
                             std::to_string(kMaxCellCharacters));
    }
    return head;
  }

  void NumberCell(std::size_t column, double number) {
    const std::string text = NumberText(number);
    if (!std::isfinite(number)) return TextCell(column, text);
    ValueCell(column, style_, "", text);
  }

  void ValueCell(std::size_t column, std::string_view style, std::string_view type, std::string_view value) {
    widths_[column] = std::max(widths_[column], static_cast<std::uint32_t>(value.size()));
    block_ += cell_heads_[column];
    block_ += row_number_;
    block_ += style;
    block_ += type;
    block_ += "><v>";
    block_ += value;
    block_ += "</v></c>";
  }

  CellAddress PlaceOf(std::size_t column) const { return {row_, first_.column + static_cast<std::uint32_t>(column)}; }

  CellAddress first_;
  const CString& path_;
  const CString& sheet_name_;
  DeflateWriter& deflate_;
  std::vector<std::uint32_t> widths_;
  std::string style_;
  std::string time_style_;
  std::vector<std::string> cell_heads_;
  std::uint32_t row_ = 0;
  std::string row_number_;
  std::string text_head_;
  std::string block_;
};

}  // namespace

SheetBody WriteSheetBody(const COleSafeArray& values, CellAddress first, std::uint32_t style, ScratchFile& scratch,
                         const CString& path, const CString& sheet_name) {
  const auto rows = static_cast<std::uint32_t>(values.GetUBound(1) + 1);
  const auto columns = static_cast<std::uint32_t>(values.GetUBound(2) + 1);
  SheetBody body{.scratch_position = scratch.Size(),
                 .totals = {},
                 .first = first,
                 .last = {first.row + std::max(rows, 1u) - 1, first.column + std::max(columns, 1u) - 1},
                 .column_widths = {}};
  DeflateWriter deflate([&](std::span<const std::byte> packed) { scratch.Append(packed); });
  RowRenderer renderer(first, columns, style, path, sheet_name, deflate);
  for (std::uint32_t row = 0; row < rows; ++row) {
    renderer.Row(first.row + row, values.Row(static_cast<std::int32_t>(row)));
    if (row % kRowsBetweenLooks == 0) TellProgress(row, rows);
  }
  renderer.End();
  body.totals = deflate.Finish();
  body.column_widths = renderer.TakeWidths();
  return body;
}

SheetBody WriteEmptySheetBody(ScratchFile& scratch) {
  SheetBody body;
  body.scratch_position = scratch.Size();
  DeflateWriter deflate([&](std::span<const std::byte> packed) { scratch.Append(packed); });
  deflate.Write(kEndOfSheet);
  body.totals = deflate.Finish();
  return body;
}

}  // namespace loom
