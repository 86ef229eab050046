#pragma once

#include <cstdint>

#include "platform/time_units.h"

// Days of the Gregorian calendar, as if it had always been in force.
namespace loom {

// Days from 1899-12-30, where workbooks and COleDateTime begin to count.
inline constexpr std::int64_t kSerialOf1970 = 25'569;

struct CalendarDay {
  int year = 1970;
  int month = 1;  // 1-12
  int day = 1;    // 1-31
  friend bool operator==(const CalendarDay&, const CalendarDay&) = default;
};

// Whether the calendar has that day; IsValidDay: in the years 1900-9999.
bool IsOnCalendar(const CalendarDay& day);
bool IsValidDay(const CalendarDay& day);

std::int64_t DaysSince1970(const CalendarDay& day);  // a day behind the end of its month carries over
CalendarDay DayAt(std::int64_t days_since_1970);
int WeekdayOf(const CalendarDay& day);  // 0: Sunday

// Rounded down, as days before 1970 need it.
constexpr std::int64_t WholeDays(std::int64_t seconds) { return seconds / kDay_s - (seconds % kDay_s < 0 ? 1 : 0); }

}  // namespace loom
