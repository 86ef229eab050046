#include "host/workbook/cell_text_kind.h"

#include <charconv>
#include <cstdint>

#include "platform/calendar.h"
#include "platform/characters.h"

namespace loom {
namespace {

constexpr std::size_t kMostDigits = 15;  // what a number cell keeps
constexpr std::string_view kTimeShape = "0000-00-00 00:00:00.000";
constexpr std::int64_t kFirstDay = 61;  // 1900-03-01; the system has a 29 February 1900

std::size_t DigitsAt(std::string_view text, std::size_t at) {
  const std::size_t start = at;
  while (at < text.size() && IsDigit(text[at])) ++at;
  return at - start;
}

bool HasShapeOfTime(std::string_view text) {
  if (text.size() != kTimeShape.size()) return false;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (kTimeShape[at] == '0' ? !IsDigit(text[at]) : text[at] != kTimeShape[at]) return false;
  }
  return true;
}

int Number(std::string_view text, std::size_t at, std::size_t digits) {
  int number = 0;
  for (const char c : text.substr(at, digits)) number = number * 10 + (c - '0');
  return number;
}

// Days since 1899-12-30; negative for a day that no calendar has.
std::int64_t DaysOf(std::string_view text) {
  const CalendarDay day{Number(text, 0, 4), Number(text, 5, 2), Number(text, 8, 2)};
  return IsOnCalendar(day) ? DaysSince1970(day) + kSerialOf1970 : -1;
}

}  // namespace

bool IsPlainNumber(std::string_view text) {
  const std::size_t first = !text.empty() && text[0] == '-' ? 1 : 0;
  const std::size_t whole = DigitsAt(text, first);
  if (whole == 0 || (whole > 1 && text[first] == '0')) return false;
  std::size_t end = first + whole;
  std::size_t decimals = 0;
  if (end < text.size() && text[end] == '.') {
    decimals = DigitsAt(text, end + 1);
    if (decimals == 0) return false;
    end += 1 + decimals;
  }
  return end == text.size() && whole + decimals <= kMostDigits;
}

char* PutSerial(std::string_view text, char* out) {
  if (!HasShapeOfTime(text)) return nullptr;
  const std::int64_t days = DaysOf(text);
  const std::int64_t hour = Number(text, 11, 2), minute = Number(text, 14, 2), second = Number(text, 17, 2);
  if (days < kFirstDay || hour > 23 || minute > 59 || second > 59) return nullptr;
  const std::int64_t time_ms = ((hour * 60 + minute) * 60 + second) * 1000 + Number(text, 20, 3);
  out = std::to_chars(out, out + kSerialRoom, days).ptr;
  // Eleven decimals: half a microsecond. 1e11 / 86400000 is 31250 / 27.
  constexpr int kDecimals = 11;
  std::int64_t fraction = (time_ms * 31250 + 13) / 27;
  if (fraction == 0) return out;
  *out = '.';
  for (int at = kDecimals; at > 0; --at, fraction /= 10) out[at] = static_cast<char>('0' + fraction % 10);
  out += kDecimals + 1;
  while (out[-1] == '0') --out;
  return out;
}

}  // namespace loom
