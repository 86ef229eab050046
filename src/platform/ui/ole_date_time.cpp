#include "platform/ui/ole_date_time.h"

#include <chrono>
#include <cstdio>
#include <ctime>

namespace loom {
namespace {

using std::chrono::sys_days;

constexpr long long kSecondsPerDay = 86400;
constexpr sys_days kZeroDay{std::chrono::year{1899} / 12 / 30};

std::chrono::year_month_day DayOf(const CalendarDay& day) { return std::chrono::year{day.year} / day.month / day.day; }

}  // namespace

COleDateTime::COleDateTime(int year, int month, int day, int hour, int minute, int second)
    : COleDateTime(LocalTime{{year, month, day}, hour, minute, second}) {}

COleDateTime::COleDateTime(const LocalTime& time) {
  const auto within = [](int value, int lowest, int highest) { return value >= lowest && value <= highest; };
  const bool is_time = within(time.hour, 0, 23) && within(time.minute, 0, 59) && within(time.second, 0, 59);
  const bool is_day = within(time.day.year, 100, 9999) && within(time.day.month, 1, 12) &&
                      within(time.day.day, 1, 31) && DayOf(time.day).ok();
  if (!is_time || !is_day) {
    status_ = kInvalid;
    return;
  }
  seconds_ = (sys_days(DayOf(time.day)) - kZeroDay).count() * kSecondsPerDay + time.hour * 3600 + time.minute * 60 +
             time.second;
}

COleDateTime COleDateTime::GetCurrentTime() { return COleDateTime(LocalTimeOf(std::time(nullptr))); }

LocalTime COleDateTime::Fields() const {
  const long long seconds = IsValid() ? seconds_ : 0;
  const long long days = std::chrono::floor<std::chrono::days>(std::chrono::seconds(seconds)).count();
  const int of_day = static_cast<int>(seconds - days * kSecondsPerDay);
  const std::chrono::year_month_day day{kZeroDay + std::chrono::days(days)};
  return {.day = {static_cast<int>(day.year()), static_cast<int>(static_cast<unsigned>(day.month())),
                  static_cast<int>(static_cast<unsigned>(day.day()))},
          .hour = of_day / 3600,
          .minute = of_day / 60 % 60,
          .second = of_day % 60};
}

// Before the zero date the fraction still counts forward from midnight: -1.25 is 6:00 of the day before it.
double COleDateTime::GetDays() const {
  const long long seconds = IsValid() ? seconds_ : 0;
  const long long days = std::chrono::floor<std::chrono::days>(std::chrono::seconds(seconds)).count();
  const double fraction = static_cast<double>(seconds - days * kSecondsPerDay) / kSecondsPerDay;
  return days < 0 ? static_cast<double>(days) - fraction : static_cast<double>(days) + fraction;
}

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
