#include "platform/clock.h"

#include <ctime>
#include <string>

#include "platform/error.h"

namespace loom {

std::int64_t ClockSecondsOf(const LocalTime& time) {
  return DaysSince1970(time.day) * kDay_s + time.hour * 3600 + time.minute * 60 + time.second;
}

LocalTime ClockTimeOf(std::int64_t clock_s) {
  const std::int64_t days = WholeDays(clock_s);
  const auto of_day = static_cast<int>(clock_s - days * kDay_s);
  return {.day = DayAt(days), .hour = of_day / 3600, .minute = of_day / 60 % 60, .second = of_day % 60};
}

std::int64_t SecondsOf(const LocalTime& time) {
  std::tm fields{};
  fields.tm_year = time.day.year - 1900;
  fields.tm_mon = time.day.month - 1;
  fields.tm_mday = time.day.day;
  fields.tm_hour = time.hour;
  fields.tm_min = time.minute;
  fields.tm_sec = time.second;
  fields.tm_isdst = -1;
  fields.tm_wday = -1;  // stays -1 only when mktime fails: -1 is also a valid time
  const std::time_t seconds = std::mktime(&fields);
  if (fields.tm_wday < 0)
    throw Error("the system cannot represent a time in the year " + std::to_string(time.day.year));
  return seconds;
}

LocalTime LocalTimeOf(std::int64_t time_s) {
  const std::time_t seconds = time_s;
  std::tm fields{};
  tzset();  // localtime_r need not look at TZ
  if (!localtime_r(&seconds, &fields)) throw Error("no calendar day for the time " + std::to_string(time_s));
  return {{fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday}, fields.tm_hour, fields.tm_min, fields.tm_sec};
}

}  // namespace loom
