#include "host/streams/row_cursor.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "components/project.h"
#include "host/streams/value_text.h"
#include "platform/interrupt.h"

namespace loom {
namespace {

constexpr std::int32_t kHighestNearId = 100'000;

// Rows are read once and are more than any cache holds. A stream keeps the fields of a row behind the row itself.
inline void Prefetch(const CMemDataRow& row) {
  constexpr std::size_t kUsualBytes = 384;
  constexpr std::size_t kCacheLineBytes = 64;
  const auto* const bytes = reinterpret_cast<const char*>(&row);
  for (std::size_t at = 0; at < kUsualBytes; at += kCacheLineBytes) __builtin_prefetch(bytes + at);
}

inline char* PutText(std::string_view text, char* out) {
  if (text.size() != 1) return out + text.copy(out, text.size());
  *out = text.front();
  return out + 1;
}

}  // namespace

RowCursor::RowCursor(const RowMap& rows) : rows_(rows), cells_(1), columns_(kRecordTimeIe + 1) {
  RowCursor::GoToFirstRow();
}

RowCursor::Kind RowCursor::KindOf(std::int32_t ie_id) {
  if (ie_id == kRecordTimeIe) return Kind::kRecordTime;
  switch (g_memDataType->GetType(ie_id)) {
    case kFieldBool:
      return Kind::kBool;
    case kFieldText:
      return Kind::kText;
    case kFieldShort:
      return Kind::kShort;
    case kFieldFloat:
      return Kind::kFloat;
    default:
      return Kind::kInt;
  }
}

std::uint32_t& RowCursor::ColumnToAdd(std::int32_t ie_id) {
  if (ie_id < 0 || ie_id > kHighestNearId) return far_columns_[ie_id];
  const auto at = static_cast<std::size_t>(ie_id);
  if (at >= columns_.size()) columns_.resize(at + 1);
  return columns_[at];
}

std::uint32_t RowCursor::AddColumn(std::int32_t ie_id) {
  std::uint32_t& column = ColumnToAdd(ie_id);
  if (column != 0) return column;
  column = static_cast<std::uint32_t>(cells_.size());
  cells_.push_back({.kind = KindOf(ie_id)});
  if (row_ != nullptr) NoteValues();
  return column;
}

void RowCursor::GoToFirstRow() {
  for (Cell& cell : cells_) cell.row = nullptr;
  next_ = rows_.begin();
  row_ = nullptr;
  passed_ = 0;
  if (next_ != rows_.end()) TakeNextRow();
}

void RowCursor::Move(std::int32_t rows) {
  for (; rows > 0 && !IsLastRow(); --rows) TakeNextRow();
}

std::optional<double> RowCursor::GetRecordTime() const {
  return row_ != nullptr ? std::optional(row_->GetRecordTime()) : std::nullopt;
}

void RowCursor::TakeNextRow() {
  row_ = next_++->second;
  if (!IsLastRow()) Prefetch(*next_->second);
  if (++passed_ % kRowsBetweenLooks == 0) TellProgress(passed_, rows_.size());
  NoteValues();
}

inline std::uint32_t RowCursor::ColumnOf(std::int32_t ie_id) const {
  const auto at = static_cast<std::uint32_t>(ie_id);
  if (at < columns_.size()) return columns_[at];
  if (at <= kHighestNearId || far_columns_.empty()) return 0;
  const auto found = far_columns_.find(ie_id);
  return found != far_columns_.end() ? found->second : 0;
}

// Those of the current row. From the end: the first field of an id is the one that counts.
void RowCursor::NoteValues() {
  const auto& ids = row_->GetParamID();
  const auto& values = row_->GetParamValue();
  for (std::size_t at = std::min(ids.size(), values.size()); at-- > 0;) {
    Cell& cell = cells_[ColumnOf(ids[at])];
    cell.row = row_;
    cell.value = values[at];
  }
  cells_[columns_[kRecordTimeIe]].row = row_;
}

void RowCursor::AppendValues(std::span<const std::uint32_t> columns, const RowLayout& layout, TextBuffer& out) {
  const std::size_t cell_room = kNumberRoom + layout.separator.size() + layout.blank.size();
  std::size_t room = columns.size() * cell_room;
  char* end = out.Room(room);
  for (const std::uint32_t& column : columns) {
    if (&column != columns.data()) end = PutText(layout.separator, end);
    const Cell& cell = cells_[column];
    const bool is_held = cell.row == row_ || layout.fill_gaps;
    switch (cell.row != nullptr && is_held ? cell.kind : Kind::kAbsent) {
      case Kind::kAbsent:
        end = PutText(layout.blank, end);
        break;
      case Kind::kInt:
        end = PutNumber(cell.value.int_value, end);
        break;
      case Kind::kShort:
        end = PutNumber(std::int32_t{static_cast<std::int16_t>(cell.value.short_value)}, end);
        break;
      case Kind::kFloat:
        end = PutNumber(cell.value.float_value, end);
        break;
      case Kind::kBool:
        *end++ = cell.value.bool_value != 0 ? '1' : '0';
        break;
      case Kind::kText: {
        const std::string_view text = cell.row->GetText(cell.value.text);
        out.SetEnd(end);
        end = PutText(text.empty() ? layout.blank : text, out.Room(text.size() + room));
        break;
      }
      case Kind::kRecordTime:
        end = PutNumber(row_->GetRecordTime(), end);
        break;
    }
    room -= cell_room;
  }
  out.SetEnd(end);
}

double RowCursor::Number(std::uint32_t column) const {
  constexpr double kMissing = std::numeric_limits<double>::quiet_NaN();
  const Cell& cell = cells_[column];
  if (cell.row == nullptr || cell.row != row_) return kMissing;
  switch (cell.kind) {
    case Kind::kInt:
      return cell.value.int_value != kInvalidInt ? cell.value.int_value : kMissing;
    case Kind::kShort:
      return cell.value.short_value != kInvalidShort ? static_cast<std::int16_t>(cell.value.short_value) : kMissing;
    case Kind::kFloat:
      return cell.value.float_value != kInvalidFloat ? DecimalOf(cell.value.float_value) : kMissing;
    case Kind::kBool:
      return cell.value.bool_value != 0 ? 1 : 0;
    case Kind::kRecordTime:
      return row_->GetRecordTime() != kInvalidDouble && std::isfinite(row_->GetRecordTime()) ? row_->GetRecordTime()
                                                                                             : kMissing;
    default:
      return kMissing;
  }
}

std::string_view RowCursor::Text(std::uint32_t column) const {
  const Cell& cell = cells_[column];
  if (cell.kind != Kind::kText || cell.row == nullptr || cell.row != row_) return {};
  return cell.row->GetText(cell.value.text);
}

}  // namespace loom
