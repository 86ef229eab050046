#include "platform/ui/ole_date_time.h"

#include <cstdio>
#include <ctime>

namespace loom {
namespace {

constexpr std::int64_t kZero_s = -kSerialOf1970 * kDay_s;  // since 1970

}  // namespace

COleDateTime::COleDateTime(int year, int month, int day, int hour, int minute, int second)
    : COleDateTime(LocalTime{{year, month, day}, hour, minute, second}) {}

COleDateTime::COleDateTime(const LocalTime& time) {
  const auto within = [](int value, int lowest, int highest) { return value >= lowest && value <= highest; };
  const bool is_time = within(time.hour, 0, 23) && within(time.minute, 0, 59) && within(time.second, 0, 59);
  if (is_time && within(time.day.year, 100, 9999) && IsOnCalendar(time.day)) {
    seconds_ = ClockSecondsOf(time) - kZero_s;
  } else {
    status_ = kInvalid;
  }
}

COleDateTime COleDateTime::GetCurrentTime() { return COleDateTime(LocalTimeOf(std::time(nullptr))); }

LocalTime COleDateTime::Fields() const { return ClockTimeOf((IsValid() ? seconds_ : 0) + kZero_s); }

COleDateTime COleDateTime::DateOnly() const {
  COleDateTime date = *this;
  const LocalTime time = Fields();
  date.seconds_ -= time.hour * 3600 + time.minute * 60 + time.second;
  return date;
}

COleDateTime COleDateTime::TimeOnly() const {
  COleDateTime time_of_day = *this;
  const LocalTime time = Fields();
  time_of_day.seconds_ = time.hour * 3600 + time.minute * 60 + time.second;
  return time_of_day;
}

CString COleDateTime::Format() const {
  if (!IsValid()) return {};
  const LocalTime time = Fields();
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", time.day.year, time.day.month, time.day.day,
                time.hour, time.minute, time.second);
  return text;
}

std::partial_ordering operator<=>(const COleDateTime& a, const COleDateTime& b) {
  if (!a.IsValid() || !b.IsValid()) return std::partial_ordering::unordered;
  return a.seconds_ <=> b.seconds_;
}

bool operator==(const COleDateTime& a, const COleDateTime& b) {
  return a.status_ == b.status_ && (!a.IsValid() || a.seconds_ == b.seconds_);
}

}  // namespace loom
