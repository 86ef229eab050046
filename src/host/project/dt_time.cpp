#include "components/dt_time.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/clock.h"

namespace loom {
namespace {

constexpr int kTimeOnly = 126;
constexpr double kLatest_s = 253402300799.0;  // end of the year 9999
// Before 1973 some offsets of local time were no whole minutes.
constexpr std::int64_t kWholeMinuteOffsets_s = 94694400;

struct LocalDay {
  CalendarDay day;
  std::int64_t midnight_s;
};

LocalDay LocalDayAt(std::int64_t time_s) {
  const CalendarDay day = LocalTimeOf(time_s).day;
  return {day, LocalMidnight(day)};
}

// Times come in runs: the day of a minute is remembered until another minute, or another time zone, is asked for.
LocalDay LocalDayOf(std::int64_t time_s) {
  static thread_local struct {
    std::int64_t minute = 0;
    std::string zone;
    LocalDay day;
  } last;
  if (time_s < kWholeMinuteOffsets_s) return LocalDayAt(time_s);
  const char* const zone = std::getenv("TZ");
  const std::string_view zone_name = zone != nullptr ? zone : "";
  if (last.minute == time_s / 60 && last.zone == zone_name) return last.day;
  last.day = LocalDayAt(time_s);
  last.minute = time_s / 60;
  last.zone = zone_name;
  return last.day;
}

// With leading zeros.
char* PutDigits(char* out, int digits, std::int64_t number) {
  for (char* at = out + digits; at-- > out; number /= 10) *at = static_cast<char>('0' + number % 10);
  return out + digits;
}

}  // namespace

CDTTime::CDTTime(int year, int month, int day, double second_of_day)
    : seconds_(static_cast<double>(LocalMidnight({year, month, day})) + second_of_day) {}

// Hours count from the day's midnight, as the time of day of a record does, so that a day on which the clock changes
// reads back right as well.
CString CDTTime::ToString(int flags) const {
  if (!(std::abs(seconds_) <= kLatest_s)) return {};
  const std::int64_t total_ms = std::llround(seconds_ * 1000.0);
  const std::int64_t total_s = (total_ms >= 0 ? total_ms : total_ms - 999) / 1000;
  const LocalDay local = LocalDayOf(total_s);
  const std::int64_t second_of_day = total_s - local.midnight_s;
  char text[40];
  char* end = text;
  if (flags != kTimeOnly) {
    const bool is_common = local.day.year >= 0 && local.day.year <= 9999;
    end = is_common ? PutDigits(end, 4, local.day.year) : std::to_chars(end, end + 8, local.day.year).ptr;
    *end++ = '-';
    end = PutDigits(end, 2, local.day.month);
    *end++ = '-';
    end = PutDigits(end, 2, local.day.day);
    *end++ = ' ';
  }
  end = PutDigits(end, 2, second_of_day / 3600);
  *end++ = ':';
  end = PutDigits(end, 2, second_of_day / 60 % 60);
  *end++ = ':';
  end = PutDigits(end, 2, second_of_day % 60);
  *end++ = '.';
  end = PutDigits(end, 3, total_ms - total_s * 1000);
  return CString(std::string_view(text, static_cast<std::size_t>(end - text)));
}

}  // namespace loom
