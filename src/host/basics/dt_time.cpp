#include "components/dt_time.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/clock.h"
#include "platform/digits.h"
#include "platform/time_units.h"

namespace loom {
namespace {

constexpr int kTimeOnly = 126;
constexpr int kDateAndTime = 127;
constexpr double kLatest_s = 253402300799.0;  // end of the year 9999
// Before 1973 some offsets of local time were no whole minutes.
constexpr std::int64_t kWholeMinuteOffsets_s = 94694400;

// Hours count from the day's midnight, as the time of day of a record does, so that a day on which the clock changes
// reads back right as well. Of a day that begins twice the system may name the second midnight: before it, the clock
// counts.
std::int64_t SecondOfDay(std::int64_t time_s, const LocalTime& local) {
  const std::int64_t second = time_s - LocalMidnight(local.day);
  return second >= 0 ? second : (local.hour * 60 + local.minute) * 60 + local.second;
}

char* PutTwoDigits(std::int64_t number, char* out) {
  return loom::PutTwoDigits(static_cast<std::uint32_t>(number), out);
}

char* PutDate(const CalendarDay& day, char* out) {
  if (day.year >= 0 && day.year <= 9999) {
    out = PutTwoDigits(day.year % 100, PutTwoDigits(day.year / 100, out));
  } else {
    out = std::to_chars(out, out + 8, day.year).ptr;
  }
  *out++ = '-';
  out = PutTwoDigits(day.month, out);
  *out++ = '-';
  out = PutTwoDigits(day.day, out);
  *out++ = ' ';
  return out;
}

}  // namespace

CDTTime::CDTTime(int year, int month, int day, double second_of_day)
    : seconds_(static_cast<double>(LocalMidnight({year, month, day})) + second_of_day) {}

// Works with the head of the time that was asked for last, until the other layout or another time zone is asked for.
CString CDTTime::ToString(int flags) const {
  static thread_local struct {
    std::string zone;
    int flags = kDateAndTime;
    DateTimeText text{kDateAndTime};
  } last;
  const char* const zone = std::getenv("TZ");
  const std::string_view zone_name = zone != nullptr ? zone : "";
  if (last.flags != flags || last.zone != zone_name) last = {std::string(zone_name), flags, DateTimeText(flags)};
  char text[DateTimeText::kRoom];
  const char* const end = last.text.Put(seconds_, text);
  return CString(std::string_view(text, static_cast<std::size_t>(end - text)));
}

char* DateTimeText::Put(double seconds_since_1970, char* out) {
  if (!(std::abs(seconds_since_1970) <= kLatest_s)) return out;
  const std::int64_t total_ms = std::llround(seconds_since_1970 * 1000.0);
  const std::int64_t total_s = (total_ms >= 0 ? total_ms : total_ms - 999) / 1000;
  if (total_s < first_s_ || total_s > last_s_) StartMinute(total_s);
  std::memcpy(out, head_, sizeof head_);
  out = PutTwoDigits(total_s - minute_start_s_, out + head_bytes_);
  *out++ = '.';
  return PutThreeDigits(static_cast<std::uint32_t>(total_ms - total_s * 1000), out);
}

void DateTimeText::StartMinute(std::int64_t time_s) {
  const bool is_time_of_day = time_s >= 0 && time_s < kDay_s;
  const LocalTime local = is_time_of_day ? LocalTime{} : LocalTimeOf(time_s);
  const std::int64_t second_of_day = is_time_of_day ? time_s : SecondOfDay(time_s, local);
  char* end = head_;
  if (flags_ != kTimeOnly) end = PutDate(local.day, end);
  end = PutTwoDigits(second_of_day / 3600, end);
  *end++ = ':';
  end = PutTwoDigits(second_of_day / 60 % 60, end);
  *end++ = ':';
  head_bytes_ = static_cast<std::size_t>(end - head_);
  minute_start_s_ = time_s - second_of_day % 60;
  // The minute of the day, as far as it lies in one of the minutes at which the offset of local time may change.
  const std::int64_t whole_minute_s = time_s / 60 * 60;
  const bool is_known = is_time_of_day || time_s >= kWholeMinuteOffsets_s;
  first_s_ = is_known ? std::max(minute_start_s_, whole_minute_s) : time_s;
  last_s_ = is_known ? std::min(minute_start_s_, whole_minute_s) + 59 : time_s;
}

}  // namespace loom
