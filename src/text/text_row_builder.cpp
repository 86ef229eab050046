#include "text/text_row_builder.h"

#include <algorithm>
#include <set>

#include "platform/encoding.h"
#include "text/cell_number.h"

namespace loom {
namespace {

std::string CellText(const TextColumn& column, std::string_view cell) {
  return GbkToUtf8(column.name) + " is " + QuotedCell(cell);
}

bool HasRepeatedFields(const std::vector<TextColumn>& columns) {
  std::set<std::int32_t> seen;
  return !std::ranges::all_of(columns, [&](const TextColumn& column) {
    return column.is_time || (column.lists_field && seen.insert(column.ie_id).second);
  });
}

bool EqualsNoCase(std::string_view cell, std::string_view lower) {
  return std::ranges::equal(cell, lower,
                            [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a + ('a' - 'A') : a) == b; });
}

}  // namespace

TextRowBuilder::TextRowBuilder(std::vector<TextColumn> columns, const CString& separator, const CString& data_format,
                               RowNotes& notes)
    : columns_(std::move(columns)),
      is_regular_(!HasRepeatedFields(columns_)),
      splitter_(separator),
      time_(data_format),
      data_format_(data_format),
      notes_(notes) {
  line_end_ = TrimmedCell(splitter_.Separator());
  if (!columns_.empty()) most_cells_ = columns_.back().number + 1;
}

void TextRowBuilder::Fill(CMemDataRow& row, std::string_view line, std::int32_t number, TextRange& time_s) {
  row.SetSynFieldValue(number);
  splitter_.Split(line, cells_, most_cells_);
  FillFields(row, PrepareCells(), time_s);
  if (!is_regular_) ListFieldsOneByOne(row);
  row.InitFilterByIENumber(row.GetParamID().size());
}

// Trimmed, and without the separator that ends the line where it changes no number.
std::string_view TextRowBuilder::Prepared(const TextColumn& column) const {
  const std::string_view cell = TrimmedCell(cells_[column.number]);
  const bool is_number = column.type == kFieldShort || column.type == kFieldInt || column.type == kFieldFloat;
  if (column.number + 1 != cells_.size() || !is_number || column.is_time) return cell;
  const bool ends_line = !line_end_.empty() && cell.size() > line_end_.size() && cell.ends_with(line_end_);
  return ends_line ? cell.substr(0, cell.size() - line_end_.size()) : cell;
}

// Trims the cells of the columns; how many fields they become and how much room their texts take.
TextRowBuilder::Sizes TextRowBuilder::PrepareCells() {
  Sizes sizes;
  std::size_t missing = 0;
  for (const TextColumn& column : columns_) {
    if (column.number >= cells_.size()) {
      ++missing;
      sizes.fields += column.is_time ? 0 : 1;
      continue;
    }
    std::string_view& cell = cells_[column.number];
    cell = Prepared(column);
    if (column.is_time || cell.empty()) continue;
    ++sizes.fields;
    if (column.type == kFieldText) sizes.text_bytes += cell.size() + 1;
  }
  if (missing > 0) {
    notes_.Add(RowFlaw::kColumns, [&] {
      return std::to_string(missing) + " of the " + std::to_string(columns_.size()) + " mapped columns; the line has " +
             std::to_string(cells_.size()) + " cells, its row defaults";
    });
  }
  return sizes;
}

void TextRowBuilder::FillFields(CMemDataRow& row, const Sizes& sizes, TextRange& time_s) {
  row.ReserveTexts(sizes.text_bytes);
  row.GetParamID().resize(sizes.fields);
  row.GetParamValue().resize(sizes.fields);
  std::int32_t* id = row.GetParamID().data();
  uniFieldValue* value = row.GetParamValue().data();
  for (const TextColumn& column : columns_) {
    const bool is_missing = column.number >= cells_.size();
    const std::string_view cell = is_missing ? std::string_view() : cells_[column.number];
    if (column.is_time) {
      if (!is_missing) SetTime(row, cell, time_s);
    } else if (is_missing || !cell.empty()) {
      *id++ = column.ie_id;
      *value++ = is_missing ? InvalidValue(column.type) : Convert(row, column, cell);
    }
  }
}

// An empty cell takes away the first field of its information element, whichever column that belongs to.
void TextRowBuilder::ListFieldsOneByOne(CMemDataRow& row) const {
  auto& ids = row.GetParamID();
  ids.clear();
  for (const TextColumn& column : columns_) {
    if (!column.is_time && column.lists_field) ids.push_back(column.ie_id);
  }
  for (const TextColumn& column : columns_) {
    if (column.is_time || column.number >= cells_.size() || !cells_[column.number].empty()) continue;
    const auto first = std::ranges::find(ids, column.ie_id);
    if (first != ids.end()) ids.erase(first);
  }
}

void TextRowBuilder::SetTime(CMemDataRow& row, std::string_view cell, TextRange& time_s) {
  const double seconds = time_.Seconds(cell);
  row.SetRecordTime(seconds);
  time_s.Add(seconds);
  if (seconds == kInvalidDouble) {
    notes_.Add(RowFlaw::kTime, [&] { return QuotedCell(cell) + " does not fit " + GbkToUtf8(data_format_); });
  }
}

uniFieldValue TextRowBuilder::Convert(CMemDataRow& row, const TextColumn& column, std::string_view cell) {
  switch (column.type) {
    case kFieldFloat:
      return uniFieldValue(FloatOf(column, cell));
    case kFieldInt:
      return uniFieldValue(IntOf(column, cell));
    case kFieldShort:
      return uniFieldValue::Short(static_cast<std::uint16_t>(IntOf(column, cell)));
    case kFieldText:
      return uniFieldValue::Text(AddText(row, column, cell));
    case kFieldBool:
      return uniFieldValue(static_cast<std::int32_t>(TruthOf(column, cell)));
    default:
      return InvalidValue(column.type);
  }
}

std::int32_t TextRowBuilder::IntOf(const TextColumn& column, std::string_view cell) {
  const CellNumber<std::int32_t> number = CellInt(cell);
  const std::int32_t value = number.value;
  const bool fits = column.type != kFieldShort || value == static_cast<std::int16_t>(value);
  if (!number.is_whole || !fits) {
    const RowFlaw flaw = cell::StartsNumber(cell) ? RowFlaw::kNumberCut : RowFlaw::kNoNumber;
    const std::int32_t kept = fits ? value : static_cast<std::int16_t>(value);
    notes_.Add(flaw, [&] { return CellText(column, cell) + ", stored as " + std::to_string(kept); });
  }
  return value;
}

float TextRowBuilder::FloatOf(const TextColumn& column, std::string_view cell) {
  const CellNumber<double> number = CellDouble(cell);
  const auto value = static_cast<float>(number.value);
  if (!number.is_whole) {
    const RowFlaw flaw = cell::StartsNumber(cell) ? RowFlaw::kNumberCut : RowFlaw::kNoNumber;
    notes_.Add(flaw, [&] { return CellText(column, cell) + ", stored as " + NumberText(value); });
  }
  return value;
}

bool TextRowBuilder::TruthOf(const TextColumn& column, std::string_view cell) {
  if (cell == "1" || EqualsNoCase(cell, "true")) return true;
  if (cell != "0" && !EqualsNoCase(cell, "false"))
    notes_.Add(RowFlaw::kNoTruth, [&] { return CellText(column, cell) + ", stored as false"; });
  return false;
}

std::uint32_t TextRowBuilder::AddText(CMemDataRow& row, const TextColumn& column, std::string_view cell) {
  if (cell.find('\0') != std::string_view::npos)
    notes_.Add(RowFlaw::kTextCut, [&] { return CellText(column, cell) + ", stored up to its zero byte"; });
  return row.AddText(cell);
}

}  // namespace loom
