#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/calendar.h"

namespace loom::dialect {

enum class DateForm : std::uint8_t { kNone, kNumbers, kCompact8, kCompact6, kDayMonthName, kMonthNameDay };
enum class DateOrder : std::uint8_t { kYmd, kDmy, kMdy };
enum class ZoneForm : std::uint8_t { kNone, kOffset, kWord };
enum class ClockForm : std::uint8_t { kNone, kMarks, kCompact };  // 13:03:22, 130322

// In place of a mark: 年 月 日, 时 分 秒 behind each number.
inline constexpr char kChineseDateMark = '\xE5';
inline constexpr char kChineseClockMark = '\xE6';

// How one time text is written; equal for every text of a layout.
struct TimeShape {
  DateForm date = DateForm::kNone;
  bool is_year_first = false;
  bool has_short_year = false;
  bool has_weekday = false;
  bool has_year_last = false;  // behind the clock: Thu May 13 12:58:50 2021
  bool has_brackets = false;   // around the whole
  bool is_padded = true;       // two digits for day and month
  char date_mark = 0;
  ClockForm clock = ClockForm::kNone;
  char clock_mark = 0;
  char fraction_mark = 0;  // 0: no fraction
  std::uint8_t fraction_digits = 0;
  bool has_seconds = false;
  bool has_half = false;  // AM or PM
  bool clock_first = false;
  std::string joint;  // between date and clock
  ZoneForm zone = ZoneForm::kNone;
  bool zone_has_blank = false;

  // Texts of both can stand in one column: fractions and seconds may be left away.
  bool IsAkin(const TimeShape& other) const;
};

struct TimeText {
  TimeShape shape;
  std::int32_t parts[3] = {};  // of the date, in the order of the text; a month by name is a number
  double second_of_day = 0;
  std::int32_t offset_s = 0;  // of the zone, where one stands
  std::string_view zone = {};
  int OrderMask() const;  // bit of each DateOrder that makes it a date
};

// A date, a time of the day, or both, the whole cell.
std::optional<TimeText> ParseTimeText(std::string_view cell);

// "+08:00", "-0500", "Z", "UTC", "EST" ... as seconds east of Greenwich.
std::optional<std::int32_t> ParseZone(std::string_view text);
std::string OffsetText(std::int32_t offset_s);  // "+08:00", 0: "UTC"

// In the letters of Unicode: "yyyy-MM-dd HH:mm:ss.SSS z".
std::string LayoutText(const TimeShape& shape, DateOrder order);

// Nothing for a day that the calendar does not have.
std::optional<CalendarDay> DayOf(const TimeText& text, DateOrder order);

}  // namespace loom::dialect
