#include "host/streams/row_cursor.h"

#include "components/project.h"
#include "host/streams/value_text.h"

namespace loom {
namespace {

constexpr std::int32_t kHighestNearId = 100'000;

}  // namespace

void RowCursor::GoToFirstRow() {
  seen_.clear();
  far_ids_.clear();
  next_ = rows_.begin();
  row_ = nullptr;
  if (next_ != rows_.end()) TakeNextRow();
}

void RowCursor::Move(std::int32_t rows) {
  for (; rows > 0 && !IsLastRow(); --rows) TakeNextRow();
}

RowCursor::LastSeen& RowCursor::SeenOf(std::int32_t ie_id) {
  if (ie_id < 0 || ie_id > kHighestNearId) return far_ids_[ie_id];
  const auto at = static_cast<std::size_t>(ie_id);
  if (at >= seen_.size()) seen_.resize(at + 1);
  return seen_[at];
}

// Makes the next row the current one. From the end: the first field of an id is the one that counts.
void RowCursor::TakeNextRow() {
  row_ = next_++->second;
  const std::span<const std::int32_t> ids = row_->GetParamID();
  for (std::size_t position = ids.size(); position-- > 0;) {
    const auto id = static_cast<std::uint32_t>(ids[position]);
    LastSeen& seen = id < seen_.size() ? seen_[id] : SeenOf(ids[position]);
    seen.row = row_;
    seen.position = static_cast<std::uint32_t>(position);
  }
}

void RowCursor::Append(std::int32_t ie_id, LastSeen& seen, std::string& out) const {
  if (seen.type == kFieldNone) seen.type = g_memDataType->GetType(ie_id);
  const std::span<const uniFieldValue> values = seen.row->GetParamValue();
  if (seen.position >= values.size()) return;
  const uniFieldValue value = values[seen.position];
  switch (seen.type) {
    case kFieldBool:
      out += value.bool_value != 0 ? '1' : '0';
      break;
    case kFieldText:
      out += seen.row->GetText(value.text);
      break;
    case kFieldShort:
      AppendNumber(std::int32_t{static_cast<std::int16_t>(value.short_value)}, out);
      break;
    case kFieldFloat:
      AppendNumber(value.float_value, out);
      break;
    default:
      AppendNumber(value.int_value, out);
      break;
  }
}

void RowCursor::AppendValue(std::int32_t ie_id, std::string& out) {
  if (row_ == nullptr) return;
  if (ie_id == kRecordTimeIe) return AppendNumber(row_->GetRecordTime(), out);
  LastSeen& seen = SeenOf(ie_id);
  if (seen.row == row_) Append(ie_id, seen, out);
}

void RowCursor::AppendFilledValue(std::int32_t ie_id, std::string& out) {
  if (row_ == nullptr) return;
  if (ie_id == kRecordTimeIe) return AppendNumber(row_->GetRecordTime(), out);
  LastSeen& seen = SeenOf(ie_id);
  if (seen.row != nullptr) Append(ie_id, seen, out);
}

}  // namespace loom
