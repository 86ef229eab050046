#include "platform/system_time.h"

namespace loom {

SYSTEMTIME SystemTimeOf(const LocalTime& time, int milliseconds) {
  const auto field = [](int value) { return static_cast<std::uint16_t>(value); };
  return {.wYear = field(time.day.year),
          .wMonth = field(time.day.month),
          .wDayOfWeek = field(WeekdayOf(time.day)),
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
