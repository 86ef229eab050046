#include "platform/calendar.h"

#include <chrono>
#include <cstdlib>

namespace loom {
namespace {

std::chrono::year_month_day DateOf(const CalendarDay& day) { return std::chrono::year(day.year) / day.month / day.day; }

}  // namespace

bool IsOnCalendar(const CalendarDay& day) {
  const bool fits = std::abs(day.year) <= static_cast<int>(std::chrono::year::max());
  const bool has_fields = day.month >= 1 && day.month <= 12 && day.day >= 1 && day.day <= 31;
  return fits && has_fields && DateOf(day).ok();
}

bool IsValidDay(const CalendarDay& day) { return day.year >= 1900 && day.year <= 9999 && IsOnCalendar(day); }

std::int64_t DaysSince1970(const CalendarDay& day) {
  return std::chrono::sys_days(DateOf(day)).time_since_epoch().count();
}

CalendarDay DayAt(std::int64_t days_since_1970) {
  const std::chrono::year_month_day date{std::chrono::sys_days(std::chrono::days(days_since_1970))};
  return {static_cast<int>(date.year()), static_cast<int>(unsigned{date.month()}),
          static_cast<int>(unsigned{date.day()})};
}

int WeekdayOf(const CalendarDay& day) {
  return static_cast<int>(std::chrono::weekday(std::chrono::sys_days(DateOf(day))).c_encoding());
}

}  // namespace loom
