#pragma once

#include <cstdint>

#include "platform/calendar.h"

namespace loom {

// Local time (TZ is honoured) split into its fields.
struct LocalTime {
  CalendarDay day;
  int hour = 0;
  int minute = 0;
  int second = 0;
  friend bool operator==(const LocalTime&, const LocalTime&) = default;
};

// Seconds since 1970 with the local clock read as UTC, and its inverse: what a log tells, wherever it is read, hours
// that summer time skips included. A time of day out of its range carries over.
std::int64_t ClockSecondsOf(const LocalTime& time);
LocalTime ClockTimeOf(std::int64_t clock_s);

// Seconds since 1970 of a local time; whether summer time applies is the system library's decision. Fields out of
// their range carry over. Throws Error when the system cannot represent the time.
std::int64_t SecondsOf(const LocalTime& time);
inline std::int64_t LocalMidnight(const CalendarDay& day) { return SecondsOf({.day = day}); }

// Throws Error for a time whose year does not fit.
LocalTime LocalTimeOf(std::int64_t time_s);

}  // namespace loom
