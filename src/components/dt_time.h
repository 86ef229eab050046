#pragma once

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
  CString ToString(int flags) const;

 private:
  double seconds_;
};

}  // namespace loom
