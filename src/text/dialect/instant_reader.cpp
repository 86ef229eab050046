#include "text/dialect/instant_reader.h"

#include "components/dt_time.h"
#include "platform/calendar.h"
#include "platform/error.h"
#include "text/dialect/cell_value.h"
#include "text/dialect/time_cell.h"

namespace loom::dialect {

InstantReader::InstantReader(std::vector<std::size_t> columns, const std::string& layout, const std::string& zone,
                             char decimal)
    : columns_(std::move(columns)), layout_(layout, decimal) {
  if (zone.empty() || zone == "local") return;
  zone_s_ = ParseZone(zone);
  if (!zone_s_) throw Error("\"" + zone + "\" is no zone: UTC, an offset like +08:00, or a word like CET");
}

std::optional<double> InstantReader::Read(const std::vector<std::string_view>& cells) {
  std::string_view text;
  for (const std::size_t column : columns_) {
    if (column >= cells.size()) return std::nullopt;
    const std::string_view cell = Trimmed(cells[column]);
    if (cell.empty()) return std::nullopt;
    if (columns_.size() == 1) {
      text = cell;
    } else {
      if (column == columns_.front())
        joined_.clear();
      else
        joined_ += ' ';
      joined_ += cell;
      text = joined_;
    }
  }
  const std::optional<ReadTime> time = layout_.Read(text);
  if (!time) return std::nullopt;
  if (!time->day) return time->second_of_day;
  if (time->offset_s) ++offsets_[*time->offset_s];
  const std::optional<std::int32_t> offset = time->offset_s ? time->offset_s : zone_s_;
  if (offset) return static_cast<double>(*time->day * kDay_s) + time->second_of_day - *offset;
  return LocalMidnight(*time->day) + time->second_of_day;
}

double InstantReader::LocalMidnight(std::int64_t day) {
  if (day == newest_day_) return newest_midnight_s_;
  const auto [midnight, is_new] = midnights_s_.try_emplace(day);
  if (is_new) {
    const CalendarDay date = DayAt(day);
    midnight->second = CDTTime(date.year, date.month, date.day, 0.0).GetDblSecond();
  }
  newest_day_ = day;
  return newest_midnight_s_ = midnight->second;
}

}  // namespace loom::dialect
