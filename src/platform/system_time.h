#pragma once

#include <cstdint>

#include "platform/clock.h"

namespace loom {

// A calendar time of the local clock. Zeros: none.
struct SYSTEMTIME {
  std::uint16_t wYear = 0;
  std::uint16_t wMonth = 0;      // 1 to 12
  std::uint16_t wDayOfWeek = 0;  // 0: Sunday
  std::uint16_t wDay = 0;        // 1 to 31
  std::uint16_t wHour = 0;
  std::uint16_t wMinute = 0;
  std::uint16_t wSecond = 0;
  std::uint16_t wMilliseconds = 0;
};

// Fields to the second; what does not fit 16 bits is cut off.
SYSTEMTIME SystemTimeOf(const LocalTime& time, int milliseconds = 0);
LocalTime LocalTimeOf(const SYSTEMTIME& time);

// A whole second of a log's clock, which counts calendar fields as if they were UTC (clock.h).
class CTime {
 public:
  CTime() = default;
  explicit CTime(std::int64_t seconds_since_1970) : seconds_(seconds_since_1970) {}
  explicit CTime(const LocalTime& time) : seconds_(ClockSecondsOf(time)) {}
  // A year before 1900 gives the time 0.
  explicit CTime(const SYSTEMTIME& time) : seconds_(time.wYear < 1900 ? 0 : ClockSecondsOf(LocalTimeOf(time))) {}

  std::int64_t GetTime() const { return seconds_; }
  LocalTime GetLocalTime() const { return ClockTimeOf(seconds_); }
  SYSTEMTIME GetAsSystemTime() const { return SystemTimeOf(GetLocalTime()); }

 private:
  std::int64_t seconds_ = 0;
};

}  // namespace loom
