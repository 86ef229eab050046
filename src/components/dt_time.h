#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/cstring.h"
#include "platform/system_time.h"

namespace loom {

// A date and time, local.
class CDTTime {
 public:
  explicit CDTTime(double seconds_since_1970) : seconds_(seconds_since_1970) {}
  // A calendar day and seconds of that day.
  CDTTime(int year, int month, int day, double second_of_day);

  explicit CDTTime(const SYSTEMTIME& time)
      : CDTTime(time.wYear, time.wMonth, time.wDay,
                time.wHour * 3600 + time.wMinute * 60 + time.wSecond + time.wMilliseconds / 1000.0) {}

  double GetDblSecond() const { return seconds_; }
  // 127: "yyyy-mm-dd hh:nn:ss.ms" with three digits of a second; 126: the same without the date; other flags as 127.
  // Empty for what is no time before the year 10000. The first 86,400 seconds are a time of day without a date and look
  // the same in every time zone, on 1 January 1970.
  CString ToString(int flags) const;

 private:
  double seconds_;
};

// The texts of many times, as CDTTime::ToString gives them, in the time zone that is set when the first is asked for.
// Times come in runs: what the times of a minute have in common is made once.
class DateTimeText {
 public:
  static constexpr std::size_t kRoom = 40;

  explicit DateTimeText(int flags) : flags_(flags) {}
  // Writes the text of a time at `out`, where kRoom bytes are, and returns its end.
  char* Put(double seconds_since_1970, char* out);

 private:
  void StartMinute(std::int64_t time_s);

  int flags_;
  // The head of the text, up to the minutes, of the times from `first_s_` to `last_s_`, which is empty at first.
  std::int64_t first_s_ = 0;
  std::int64_t last_s_ = -1;
  std::int64_t minute_start_s_ = 0;
  std::size_t head_bytes_ = 0;
  char head_[24] = {};
};

}  // namespace loom
