#include "components/dt_time.h"

#include <cmath>
#include <cstdio>

#include "platform/clock.h"

namespace loom {
namespace {

constexpr int kTimeOnly = 126;
constexpr double kLatest_s = 253402300799.0;  // end of the year 9999

}  // namespace

CDTTime::CDTTime(int year, int month, int day, double second_of_day)
    : seconds_(static_cast<double>(LocalMidnight({year, month, day})) + second_of_day) {}

// Hours count from the day's midnight, as the time of day of a record does, so that a day on which the clock changes
// reads back right as well.
CString CDTTime::ToString(int flags) const {
  if (!(std::abs(seconds_) <= kLatest_s)) return {};
  const std::int64_t total_ms = std::llround(seconds_ * 1000.0);
  const std::int64_t total_s = (total_ms >= 0 ? total_ms : total_ms - 999) / 1000;
  const CalendarDay day = LocalTimeOf(total_s).day;
  const std::int64_t second_of_day = total_s - LocalMidnight(day);
  char time[64];
  std::snprintf(time, sizeof time, "%02d:%02d:%02d.%03d", static_cast<int>(second_of_day / 3600),
                static_cast<int>(second_of_day / 60 % 60), static_cast<int>(second_of_day % 60),
                static_cast<int>(total_ms - total_s * 1000));
  if (flags == kTimeOnly) return time;
  char date[64];
  std::snprintf(date, sizeof date, "%04d-%02d-%02d ", day.year, day.month, day.day);
  return CString(date) + time;
}

}  // namespace loom
