#include "platform/system_time.h"

#include <chrono>

namespace loom {

SYSTEMTIME SystemTimeOf(const LocalTime& time, int milliseconds) {
  const auto field = [](int value) { return static_cast<std::uint16_t>(value); };
  const auto date = std::chrono::year(time.day.year) / time.day.month / time.day.day;
  const unsigned weekday = std::chrono::weekday(std::chrono::sys_days(date)).c_encoding();
  return {.wYear = field(time.day.year),
          .wMonth = field(time.day.month),
          .wDayOfWeek = static_cast<std::uint16_t>(weekday),
          .wDay = field(time.day.day),
          .wHour = field(time.hour),
          .wMinute = field(time.minute),
          .wSecond = field(time.second),
          .wMilliseconds = field(milliseconds)};
}

LocalTime LocalTimeOf(const SYSTEMTIME& time) {
  return {{time.wYear, time.wMonth, time.wDay}, time.wHour, time.wMinute, time.wSecond};
}

}  // namespace loom
