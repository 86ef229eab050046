#include "host/workbook/xlsx_sheet_reader.h"

#include "host/workbook/cell_address.h"
#include "host/workbook/cell_date_reader.h"
#include "platform/characters.h"
#include "platform/number.h"

namespace loom {
namespace {

constexpr std::uint32_t kMostRows = 1'048'576;
constexpr std::uint32_t kXlsxColumns = 16'384;
// Where the elements of a worksheet part stand.
constexpr int kSheetDataDepth = 2;
constexpr int kRowDepth = 3;
constexpr int kCellDepth = 4;
constexpr int kValueDepth = 5;

// The column of a reference such as "BC12", from 0; nothing when it has none that a sheet can have.
std::optional<std::uint32_t> ColumnOf(std::string_view reference) {
  std::uint32_t column = 0;
  for (const char c : reference) {
    const char upper = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    if (upper < 'A' || upper > 'Z') break;
    column = column * 26 + static_cast<std::uint32_t>(upper - 'A') + 1;
    if (column > kXlsxColumns) return std::nullopt;
  }
  if (column == 0) return std::nullopt;
  return column - 1;
}

}  // namespace

void XlsxSheetReader::Read() {
  reader_.ReadAll();
  if (merged_ranges_ > 0) sink_.OnMergedRanges(merged_ranges_);
}

std::string XlsxSheetReader::Place() const { return "cell " + ColumnLetters(next_column_ - 1) + std::to_string(row_); }

void XlsxSheetReader::OnStart(std::string_view name, const XmlAttributes& attributes, int depth) {
  if (depth == kSheetDataDepth) in_rows_ = name == "sheetData";
  if (!in_rows_) {
    if (name == "mergeCell") ++merged_ranges_;
    return;
  }
  if (depth == kRowDepth && name == "row") {
    BeginRow(attributes);
  } else if (depth == kCellDepth && name == "c") {
    BeginCell(attributes);
  } else if (depth == kValueDepth) {
    in_value_ = name == "v";
    in_inline_ = name == "is";
    has_formula_ = has_formula_ || name == "f";
    if (in_inline_) inline_.Begin();
  } else if (in_inline_ && depth > kValueDepth) {
    inline_.OnStart(name);
  }
}

void XlsxSheetReader::OnEnd(std::string_view name, int depth) {
  if (!in_rows_) return;
  if (depth == kSheetDataDepth) {
    in_rows_ = false;
  } else if (depth == kRowDepth && name == "row") {
    EndRow();
  } else if (depth == kCellDepth && name == "c") {
    EndCell();
  } else if (depth == kValueDepth) {
    if (in_inline_) value_ = inline_.Finish();
    in_value_ = in_inline_ = false;
  } else if (in_inline_) {
    inline_.OnEnd(name);
  }
}

void XlsxSheetReader::OnText(std::string_view text) {
  if (in_value_) value_ += text;
  if (value_.size() > kLongestCellText_bytes || (in_inline_ && !inline_.OnText(text)))
    reader_.Fail(Place() + " holds more text than a cell can");
}

void XlsxSheetReader::BeginRow(const XmlAttributes& attributes) {
  const auto number = attributes.Find("r");
  const auto row = number ? ParseInt<std::uint32_t>(*number) : row_ + 1;
  if (!row || *row == 0 || *row > kMostRows) reader_.Fail("a row has no usable number");
  if (*row <= row_) reader_.Fail("row " + std::to_string(*row) + " is out of order");
  row_ = *row;
  next_column_ = 0;
}

void XlsxSheetReader::BeginCell(const XmlAttributes& attributes) {
  std::uint32_t column = next_column_;
  if (const auto reference = attributes.Find("r")) {
    const auto named = ColumnOf(*reference);
    if (!named) reader_.Fail("the cell '" + std::string(*reference) + "' is none that a sheet can have");
    column = *named;
  }
  if (column < next_column_ || column >= kXlsxColumns)
    reader_.Fail("the cells of row " + std::to_string(row_) + " are out of order");
  next_column_ = column + 1;
  type_ = attributes.Get("t");
  style_ = ParseInt<std::uint64_t>(attributes.Get("s")).value_or(0);
  value_.clear();
  has_formula_ = false;
}

void XlsxSheetReader::EndCell() {
  WorksheetCell cell;
  cell.column = next_column_ - 1;
  PendingCell& pending = pending_.emplace_back(PendingCell{cell, std::nullopt});
  if (!TakeValue(pending.cell)) pending_.pop_back();
}

// False for a cell that holds nothing.
bool XlsxSheetReader::TakeValue(WorksheetCell& cell) {
  if (type_ == "s" && !value_.empty()) {
    const auto index = ParseInt<std::uint64_t>(Trimmed(value_));
    const auto text = index && context_.strings != nullptr ? context_.strings->Find(*index) : std::nullopt;
    if (!text) reader_.Fail(Place() + ": there is no shared text " + value_);
    cell.text = *text;
    return !text->empty();
  }
  if (type_ == "str") DecodeEscapes(value_);
  if (value_.empty()) {
    cell.kind = WorksheetCell::Kind::kNoValue;
    return has_formula_ && type_ != "str";
  }
  if (type_ == "str" || type_ == "inlineStr") {
    TakeOwnText(WorksheetCell::Kind::kText, value_);
  } else if (type_ == "e") {
    TakeOwnText(WorksheetCell::Kind::kError, value_);
  } else if (type_ == "b") {
    cell.kind = WorksheetCell::Kind::kBool;
    const std::string_view text = Trimmed(value_);
    cell.number = text == "1" || text == "true" ? 1 : 0;
  } else if (type_ == "d") {
    const auto days = DaysOfIsoText(Trimmed(value_));
    if (!days) return TakeOwnText(WorksheetCell::Kind::kText, value_), true;
    SetWorksheetDate(cell, *days, context_.from_1904);
  } else {
    return TakeNumber(cell);
  }
  return true;
}

// What should be a number and is none comes as the text that it is.
bool XlsxSheetReader::TakeNumber(WorksheetCell& cell) {
  const std::string_view text = Trimmed(value_);
  if (text.empty()) return false;
  const auto number = ParseDouble(text);
  if (!number) return TakeOwnText(WorksheetCell::Kind::kText, value_), true;
  const bool shows_date = style_ < context_.date_styles.size() && context_.date_styles[style_];
  SetWorksheetNumber(cell, *number, shows_date, context_.from_1904);
  return true;
}

// Into the row's own storage, for the cell that is being taken.
void XlsxSheetReader::TakeOwnText(WorksheetCell::Kind kind, std::string_view text) {
  PendingCell& pending = pending_.back();
  pending.cell.kind = kind;
  pending.cell.text = text;
  pending.own_text_at = texts_.size();
  texts_ += text;
}

void XlsxSheetReader::EndRow() {
  if (pending_.empty()) return;
  cells_.clear();
  for (const PendingCell& pending : pending_) {
    WorksheetCell& cell = cells_.emplace_back(pending.cell);
    if (pending.own_text_at) cell.text = std::string_view(texts_).substr(*pending.own_text_at, cell.text.size());
  }
  if (!sink_.OnRow(row_, cells_)) reader_.Stop();
  pending_.clear();
  texts_.clear();
}

}  // namespace loom
