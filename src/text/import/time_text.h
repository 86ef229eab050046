#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <unordered_map>

#include "platform/cstring.h"

namespace loom {

enum class DateOrder { kNone, kYearMonthDay, kDayMonthYear, kMonthDayYear };
enum class SecondsRule {
  kDecimal,       // a decimal number behind the last colon
  kMilliseconds,  // two digits before the last colon, milliseconds behind it
  kTwoDigits,     // the two characters behind the last colon
};

// One layout of the time column.
struct TimeLayout {
  const char* name;
  DateOrder date;
  SecondsRule seconds;
  int year_length = 4;  // of a year that stands last; -1: up to the end
};

// In the order in which they are listed to choose from.
// clang-format off
inline constexpr auto kTimeLayouts = std::to_array<TimeLayout>({
    {"hh:nn:ss.ms",            DateOrder::kNone,         SecondsRule::kDecimal},
    {"yyyy-mm-dd hh:nn:ss:ms", DateOrder::kYearMonthDay, SecondsRule::kMilliseconds},
    {"yyyy-mm-dd hh:nn:ss.ms", DateOrder::kYearMonthDay, SecondsRule::kDecimal},
    {"hh:nn:ss dd-mm-yyyy",    DateOrder::kDayMonthYear, SecondsRule::kTwoDigits, -1},
    {"hh:nn:ss mm-dd-yyyy",    DateOrder::kMonthDayYear, SecondsRule::kTwoDigits, -1},
    {"hh:nn:ss.ms dd-mm-yyyy", DateOrder::kDayMonthYear, SecondsRule::kDecimal},
    {"hh:nn:ss.ms mm-dd-yyyy", DateOrder::kMonthDayYear, SecondsRule::kDecimal},
});
// clang-format on

struct TimeMarks;

// What of a time text was not taken as it stands, though the text has a value.
enum class TimeFlaw {
  kNone,
  kColons,   // more or fewer than the layout has
  kDate,     // a day behind the end of its month, which goes on into the next one
  kRange,    // hours above 23, minutes or seconds above 59, milliseconds above 999
  kRest,     // something stands behind the seconds or the year, or no number stands there
  kTooLate,  // beyond the year 9999: no text shows such a time
};

// Reads the texts of a time column.
class TimeTextConverter {
 public:
  // The name is compared without case. Under a name of no layout a text is a number of seconds since 1970.
  explicit TimeTextConverter(const CString& layout_name);

  // Seconds since 1970, or of the day in the layout without a date, as their text with six decimals says it;
  // kInvalidDouble for a text that does not fit the layout.
  double Seconds(std::string_view text) { return Seconds(text, text.data() + text.size()); }
  // Bytes up to `readable_end`, at or behind the text's end, may be looked at.
  double Seconds(std::string_view text, const char* readable_end);

  TimeFlaw Flaw() const { return flaw_; }  // of the newest text that has a value

  // The text becomes those seconds with six decimals, or "-255".
  void ConvertTimeText(CString& text);

 private:
  double UnroundedSeconds(std::string_view text, const char* readable_end);
  double SecondsByLayout(std::string_view text, const TimeMarks& marks);
  double LocalMidnight(int year, int month, int day);

  // What times that follow each other start with, up to the last colon.
  struct Head {
    CString text;
    double midnight_s = 0;
    double second_of_day = 0;  // without what stands behind the colon
  };

  TimeFlaw flaw_ = TimeFlaw::kNone;
  const TimeLayout* layout_ = nullptr;  // null: a number of seconds
  Head head_;                           // of the newest time that has one; empty: none yet
  std::int32_t newest_day_ = -1;        // key of newest_midnight_s_
  double newest_midnight_s_ = 0;
  std::unordered_map<std::int32_t, double> midnights_s_;
};

}  // namespace loom
