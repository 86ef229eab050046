#pragma once

#include <compare>

#include "platform/clock.h"
#include "platform/cstring.h"

namespace loom {

// A local date and time of the years 100 to 9999, as days since midnight of 1899-12-30 (a whole number is midnight), or
// none, or one that could not be made. Seconds are whole.
class COleDateTime {
 public:
  enum Status { kValid, kInvalid, kNull };

  COleDateTime() = default;  // valid: the zero date at midnight
  // A field out of its range makes it invalid.
  COleDateTime(int year, int month, int day, int hour, int minute, int second);
  explicit COleDateTime(const LocalTime& time);
  static COleDateTime Null() { return COleDateTime(kNull); }
  static COleDateTime GetCurrentTime();

  Status GetStatus() const { return status_; }
  bool IsValid() const { return status_ == kValid; }

  // -1 unless valid.
  int GetYear() const { return IsValid() ? Fields().day.year : -1; }
  int GetMonth() const { return IsValid() ? Fields().day.month : -1; }
  int GetDay() const { return IsValid() ? Fields().day.day : -1; }
  int GetHour() const { return IsValid() ? Fields().hour : -1; }
  int GetMinute() const { return IsValid() ? Fields().minute : -1; }
  int GetSecond() const { return IsValid() ? Fields().second : -1; }
  LocalTime Fields() const;  // of the zero date unless valid

  COleDateTime DateOnly() const;  // at midnight
  COleDateTime TimeOnly() const;  // on the zero date
  CString Format() const;         // "%Y-%m-%d %H:%M:%S"; empty unless valid

  // Unordered unless both are valid.
  friend std::partial_ordering operator<=>(const COleDateTime& a, const COleDateTime& b);
  friend bool operator==(const COleDateTime& a, const COleDateTime& b);

 private:
  explicit COleDateTime(Status status) : status_(status) {}
  std::int64_t seconds_ = 0;  // since the zero date, of a calendar without summer time
  Status status_ = kValid;
};

}  // namespace loom
