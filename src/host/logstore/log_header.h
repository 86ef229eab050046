#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/clock.h"

namespace loom {

// 10,000 hours: from there on a number of seconds is no time of day.
inline constexpr double kEndOfTimes_s = 36'000'000.0;

// Which library a log belongs to: the log store, the automatic test system, the China Mobile automatic drive test.
enum class LogKind { kStore, kAuto, kCmcc };

// What a log says of itself.
struct LogHeader {
  LogKind kind = LogKind::kStore;
  std::int32_t version = 160;
  std::int32_t test_type = 1;  // 1 outdoor, 2 indoor, 3 merged outdoor, 4 merged indoor
  CalendarDay day;             // local

  friend bool operator==(const LogHeader&, const LogHeader&) = default;
};

std::string_view LogKindName(LogKind kind);      // "store", "auto", "cmcc"
LogKind LogKindFromName(std::string_view name);  // throws Error for another name
std::string DayText(const CalendarDay& day);     // "yyyy-mm-dd"
CalendarDay DayFromText(std::string_view text);  // throws Error when it is no "yyyy-mm-dd" of 1970 to 2500

// The text of the section's custom option: "kind=store;version=160;test_type=1;date=2024-05-17".
std::string HeaderText(const LogHeader& header);
// Its inverse. Keys in any order, unknown ones are skipped; throws Error when one of the four is missing, repeated or
// not what it should be.
LogHeader ParseHeaderText(std::string_view text);

// Midnight of the log's day, in seconds since 1970, with the local clock read as UTC: a log tells the same times
// wherever it is read.
std::int64_t MidnightSeconds(const CalendarDay& day);

}  // namespace loom
