#include "text/import/text_row_builder.h"

#include <algorithm>
#include <set>

#include "components/dt_time.h"
#include "platform/characters.h"
#include "platform/encoding.h"
#include "text/import/cell_encoding.h"
#include "text/import/cell_number.h"

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

bool IsQuoted(std::string_view cell) { return !cell.empty() && cell.front() == '"'; }

RowFlaw FlawOf(TimeFlaw flaw) {
  switch (flaw) {
    case TimeFlaw::kColons:
      return RowFlaw::kTimeColons;
    case TimeFlaw::kRange:
      return RowFlaw::kTimeRange;
    case TimeFlaw::kDate:
      return RowFlaw::kNoSuchDate;
    case TimeFlaw::kTooLate:
      return RowFlaw::kTimeTooLate;
    default:
      return RowFlaw::kTimeRest;
  }
}

std::string TimeText(double seconds) {
  const CString text = CDTTime(seconds).ToString(127);
  return text.IsEmpty() ? NumberText(seconds) + " seconds" : text.str();
}

}  // namespace

TextRowBuilder::TextRowBuilder(std::vector<TextColumn> columns, const CString& separator, const CString& time_layout,
                               RowNotes& notes)
    : columns_(std::move(columns)),
      is_regular_(!HasRepeatedFields(columns_)),
      splitter_(separator),
      time_(time_layout),
      time_layout_(time_layout),
      notes_(notes) {
  line_end_ = Trimmed(splitter_.Separator());
  if (!columns_.empty()) most_cells_ = columns_.back().number + 1;
}

void TextRowBuilder::ReadTitles(std::string_view line) {
  splitter_.Split(line, cells_);
  titles_ = cells_.size();
  if (std::ranges::any_of(cells_, [](std::string_view cell) { return IsQuoted(Trimmed(cell)); }))
    notes_.Add(RowFlaw::kQuoted, [] { return std::string("titles; the quotes belong to the cells"); });
}

// Of a line that was cut as far as the columns reach.
bool TextRowBuilder::HasMoreCellsThanTitles(std::string_view line) const {
  if (titles_ == 0) return false;
  if (cells_.size() > titles_) return true;
  const char* const cut_end = cells_.back().data() + cells_.back().size();
  const char* const line_end = line.data() + line.size();
  if (cut_end == line_end) return false;
  if (cells_.size() == titles_) return true;
  const auto left = static_cast<std::size_t>(line_end - cut_end) - splitter_.Separator().size();
  return cells_.size() + splitter_.CountCells({line_end - left, left}) > titles_;
}

void TextRowBuilder::NoteMoreCells(std::string_view line) {
  notes_.Add(RowFlaw::kMoreCells, [&] {
    return "the line has " + std::to_string(splitter_.CountCells(line)) + " cells, the line of titles " +
           std::to_string(titles_);
  });
}

void TextRowBuilder::Fill(CMemDataRow& row, std::string_view line, std::int32_t number, ValueRange& time_s,
                          std::size_t readable_behind) {
  row.SetRecordTime(kInvalidDouble);
  row.SetSynFieldValue(number);
  splitter_.Split(line, cells_, most_cells_);
  const bool ends_short = cells_.size() < most_cells_;
  if (HasMoreCellsThanTitles(line)) [[unlikely]]
    NoteMoreCells(line);
  readable_end_ = line.data() + line.size() + readable_behind;
  FillFields(row, time_s);
  if (ends_short) NoteMissingCells();
  if (!is_regular_) ListFieldsOneByOne(row);
  row.InitFilterByIENumber(row.GetParamID().size());
}

template <class Number>
void TextRowBuilder::NoteNumber(const TextColumn& column, std::string_view cell, Number stored) {
  const RowFlaw flaw = cell::StartsNumber(cell) ? RowFlaw::kNumberCut : RowFlaw::kNoNumber;
  notes_.Add(IsQuoted(cell) ? RowFlaw::kQuoted : flaw, [&] {
    std::string text;
    if constexpr (std::is_integral_v<Number>)
      text = std::to_string(stored);
    else
      text = NumberText(stored);
    return CellText(column, cell) + ", stored as " + text;
  });
}

uniFieldValue TextRowBuilder::Convert(CMemDataRow& row, const TextColumn& column, std::string_view cell) {
  switch (column.type) {
    case kFieldFloat: {
      const CellNumber<double> number = CellDouble(cell, readable_end_);
      const auto value = static_cast<float>(number.value);
      if (!number.is_whole) [[unlikely]]
        NoteNumber(column, cell, value);
      return uniFieldValue(value);
    }
    case kFieldInt:
    case kFieldShort: {
      const CellNumber<std::int32_t> number = CellInt(cell, readable_end_);
      if (column.type == kFieldInt) {
        if (!number.is_whole) [[unlikely]]
          NoteNumber(column, cell, number.value);
        return uniFieldValue(number.value);
      }
      const auto value = static_cast<std::int16_t>(number.value);
      if (!number.is_whole || value != number.value) [[unlikely]]
        NoteNumber(column, cell, value);
      return uniFieldValue::Short(static_cast<std::uint16_t>(value));
    }
    case kFieldText:
      return uniFieldValue::Text(AddText(row, column, cell));
    case kFieldBool:
      return uniFieldValue(static_cast<std::int32_t>(TruthOf(column, cell)));
    default:
      return InvalidValue(column.type);
  }
}

void TextRowBuilder::FillFields(CMemDataRow& row, ValueRange& time_s) {
  row.Release();
  row.ResizeFields(columns_.size());
  std::int32_t* id = row.GetParamID().data();
  uniFieldValue* value = row.GetParamValue().data();
  for (const TextColumn& column : columns_) {
    if (column.number >= cells_.size()) {
      if (column.is_time) continue;
      *id++ = column.ie_id;
      *value++ = InvalidValue(column.type);
      continue;
    }
    std::string_view& cell = cells_[column.number];
    cell = Trimmed(cell);
    if (column.number + 1 == cells_.size()) cell = WithoutLineEnd(column, cell);
    if (column.is_time) {
      SetTime(row, cell, time_s);
    } else if (!cell.empty()) {
      *id++ = column.ie_id;
      *value++ = Convert(row, column, cell);
    }
  }
  row.ResizeFields(static_cast<std::size_t>(value - row.GetParamValue().data()));
}

// The separator that ends the line belongs to its last cell, where it changes no number.
std::string_view TextRowBuilder::WithoutLineEnd(const TextColumn& column, std::string_view cell) const {
  const bool is_number = column.type == kFieldShort || column.type == kFieldInt || column.type == kFieldFloat;
  if (!is_number || column.is_time) return cell;
  const bool ends_line = !line_end_.empty() && cell.size() > line_end_.size() && cell.ends_with(line_end_);
  return ends_line ? cell.substr(0, cell.size() - line_end_.size()) : cell;
}

void TextRowBuilder::NoteMissingCells() {
  notes_.Add(RowFlaw::kColumns, [&] {
    const auto missing =
        std::ranges::count_if(columns_, [&](const auto& column) { return column.number >= cells_.size(); });
    return std::to_string(missing) + " of the " + std::to_string(columns_.size()) + " mapped columns; the line has " +
           std::to_string(cells_.size()) + " cells, its row defaults";
  });
}

// An empty cell takes away the first field of its information element, whichever column that belongs to.
void TextRowBuilder::ListFieldsOneByOne(CMemDataRow& row) const {
  std::vector<std::int32_t> ids;
  for (const TextColumn& column : columns_) {
    if (!column.is_time && column.lists_field) ids.push_back(column.ie_id);
  }
  for (const TextColumn& column : columns_) {
    if (column.is_time || column.number >= cells_.size() || !cells_[column.number].empty()) continue;
    const auto first = std::ranges::find(ids, column.ie_id);
    if (first != ids.end()) ids.erase(first);
  }
  row.SetParamID(ids);
}

void TextRowBuilder::SetTime(CMemDataRow& row, std::string_view cell, ValueRange& time_s) {
  const double seconds = time_.Seconds(cell, readable_end_);
  row.SetRecordTime(seconds);
  time_s.Add({seconds, seconds});
  if (seconds == kInvalidDouble || time_.Flaw() != TimeFlaw::kNone) [[unlikely]]
    NoteTime(cell, seconds);
}

void TextRowBuilder::NoteTime(std::string_view cell, double seconds) {
  if (seconds == kInvalidDouble) {
    notes_.Add(RowFlaw::kTime, [&] { return QuotedCell(cell) + " does not fit " + GbkToUtf8(time_layout_); });
    return;
  }
  const RowFlaw flaw = IsQuoted(cell) ? RowFlaw::kQuoted : FlawOf(time_.Flaw());
  notes_.Add(flaw,
             [&] { return QuotedCell(cell) + " in " + GbkToUtf8(time_layout_) + ", read as " + TimeText(seconds); });
}

bool TextRowBuilder::TruthOf(const TextColumn& column, std::string_view cell) {
  if (cell == "1" || EqualsNoCase(cell, "true")) return true;
  if (cell != "0" && !EqualsNoCase(cell, "false"))
    notes_.Add(IsQuoted(cell) ? RowFlaw::kQuoted : RowFlaw::kNoTruth,
               [&] { return CellText(column, cell) + ", stored as false"; });
  return false;
}

std::uint32_t TextRowBuilder::AddText(CMemDataRow& row, const TextColumn& column, std::string_view cell) {
  if (cell.find('\0') != std::string_view::npos)
    notes_.Add(RowFlaw::kTextCut, [&] { return CellText(column, cell) + ", stored up to its zero byte"; });
  if (IsQuoted(cell)) notes_.Add(RowFlaw::kQuoted, [&] { return CellText(column, cell) + ", stored with its quotes"; });
  if (!IsAscii(cell) && IsWideUtf8(cell)) {
    notes_.Add(RowFlaw::kUtf8, [&] {
      const std::string text(Utf8Prefix(cell, kQuotedBytes));
      return CellText(column, cell) + " when it is read in GBK, '" + text + "' in UTF-8";
    });
  }
  return row.AddText(cell);
}

}  // namespace loom
