#include "platform/clock.h"

#include <chrono>
#include <ctime>
#include <string>

#include "platform/error.h"

namespace loom {

bool IsValidDay(const CalendarDay& day) {
  constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (day.year < 1900 || day.year > 9999 || day.month < 1 || day.month > 12) return false;
  const bool leap = day.year % 4 == 0 && (day.year % 100 != 0 || day.year % 400 == 0);
  return day.day >= 1 && day.day <= kDays[day.month - 1] + (leap && day.month == 2 ? 1 : 0);
}

std::int64_t ClockSecondsOf(const LocalTime& time) {
  const auto day = std::chrono::year(time.day.year) / time.day.month / time.day.day;
  const std::int64_t midnight = std::chrono::sys_seconds(std::chrono::sys_days(day)).time_since_epoch().count();
  return midnight + time.hour * 3600 + time.minute * 60 + time.second;
}

LocalTime ClockTimeOf(std::int64_t clock_s) {
  const std::chrono::sys_seconds time{std::chrono::seconds(clock_s)};
  const auto midnight = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day day{midnight};
  const std::chrono::hh_mm_ss of_day{time - midnight};
  return {.day = {static_cast<int>(day.year()), static_cast<int>(static_cast<unsigned>(day.month())),
                  static_cast<int>(static_cast<unsigned>(day.day()))},
          .hour = static_cast<int>(of_day.hours().count()),
          .minute = static_cast<int>(of_day.minutes().count()),
          .second = static_cast<int>(of_day.seconds().count())};
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
