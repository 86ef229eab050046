#include "host/logstore/log_header.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>

#include "platform/characters.h"
#include "platform/error.h"
#include "platform/number.h"

namespace loom {
namespace {

constexpr std::array<std::string_view, 3> kKindNames = {"store", "auto", "cmcc"};

std::int32_t NumberOption(std::string_view key, std::string_view text) {
  const auto number = ParseInt<std::int32_t>(text);
  if (!number) throw Error("log option '" + std::string(key) + "': '" + std::string(text) + "' is no 32-bit number");
  return *number;
}

bool AllDigits(std::string_view text) { return std::ranges::all_of(text, IsDigit); }

}  // namespace

std::string_view LogKindName(LogKind kind) { return kKindNames[static_cast<std::size_t>(kind)]; }

LogKind LogKindFromName(std::string_view name) {
  for (std::size_t i = 0; i < kKindNames.size(); ++i)
    if (kKindNames[i] == name) return static_cast<LogKind>(i);
  throw Error("'" + std::string(name) + "' is no kind of log (store, auto, cmcc)");
}

std::string DayText(const CalendarDay& day) {
  char text[40];
  std::snprintf(text, sizeof(text), "%04d-%02d-%02d", day.year, day.month, day.day);
  return text;
}

CalendarDay DayFromText(std::string_view text) {
  CalendarDay day{0, 0, 0};
  if (text.size() == 10 && text[4] == '-' && text[7] == '-' && AllDigits(text.substr(0, 4)) &&
      AllDigits(text.substr(5, 2)) && AllDigits(text.substr(8, 2)))
    day = {*ParseInt<int>(text.substr(0, 4)), *ParseInt<int>(text.substr(5, 2)), *ParseInt<int>(text.substr(8, 2))};
  // Nanoseconds since 1970 fit 64 bits until 2554.
  if (!IsValidDay(day) || day.year < 1970 || day.year > 2500)
    throw Error("'" + std::string(text) + "' is no day from 1970-01-01 to 2500-12-31");
  return day;
}

std::string HeaderText(const LogHeader& header) {
  return "kind=" + std::string(LogKindName(header.kind)) + ";version=" + std::to_string(header.version) +
         ";test_type=" + std::to_string(header.test_type) + ";date=" + DayText(header.day);
}

LogHeader ParseHeaderText(std::string_view text) {
  constexpr std::array<std::string_view, 4> kKeys = {"kind", "version", "test_type", "date"};
  LogHeader header;
  unsigned seen = 0;
  while (!text.empty()) {
    const std::string_view item = text.substr(0, text.find(';'));
    text.remove_prefix(item.size() == text.size() ? item.size() : item.size() + 1);
    const std::size_t equals = item.find('=');
    if (equals == std::string_view::npos) throw Error("log option '" + std::string(item) + "' has no value");
    const std::string_view key = item.substr(0, equals);
    const std::string_view value = item.substr(equals + 1);
    for (std::size_t i = 0; i < kKeys.size(); ++i) {
      if (kKeys[i] != key) continue;
      if (seen & (1U << i)) throw Error("log option '" + std::string(key) + "' is given twice");
      seen |= 1U << i;
    }
    if (key == "kind") header.kind = LogKindFromName(value);
    if (key == "version") header.version = NumberOption(key, value);
    if (key == "test_type") header.test_type = NumberOption(key, value);
    if (key == "date") header.day = DayFromText(value);
  }
  for (std::size_t i = 0; i < kKeys.size(); ++i)
    if (!(seen & (1U << i))) throw Error("log option '" + std::string(kKeys[i]) + "' is missing");
  return header;
}

std::int64_t MidnightSeconds(const CalendarDay& day) { return ClockSecondsOf({.day = day}); }

}  // namespace loom
