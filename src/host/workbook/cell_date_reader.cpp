#include "host/workbook/cell_date_reader.h"

#include <algorithm>
#include <charconv>
#include <vector>

#include "platform/calendar.h"
#include "platform/number.h"

namespace loom {
namespace {

constexpr double kFalseLeapDay = 60;  // 1900-02-29
constexpr double kDaysTo1904 = 1462;  // from 1899-12-30
constexpr double kDaysToYear10000 = 2958466;

// Position behind what does not show a part of a date at `at`: a quoted or escaped text, a padding, a bracket.
std::size_t SkipLiteral(std::string_view code, std::size_t at) {
  if (code[at] == '"') return std::min(code.find('"', at + 1), code.size() - 1) + 1;
  if (code[at] == '\\' || code[at] == '_' || code[at] == '*') return at + 2;
  return at;
}

bool IsElapsedTime(std::string_view bracket) {
  return !bracket.empty() && bracket.find_first_not_of("hHmMsS") == std::string_view::npos;
}

std::optional<double> TimeOfDay(std::string_view text) {
  if (text.ends_with('Z')) text.remove_suffix(1);
  double parts[3] = {};
  for (int at = 0; at < 3; ++at) {
    const std::size_t colon = text.find(':');
    const auto value = ParseDouble(text.substr(0, colon));
    if (!value || !(*value >= 0) || (at < 2 && text.substr(0, colon).size() > 2)) return std::nullopt;
    parts[at] = *value;
    if (colon == std::string_view::npos) {
      if (at == 0 || parts[0] >= 24 || parts[1] >= 60 || parts[2] >= 60) return std::nullopt;
      return (parts[0] * 3600 + parts[1] * 60 + parts[2]) / static_cast<double>(kDay_s);
    }
    text.remove_prefix(colon + 1);
  }
  return std::nullopt;
}

std::optional<double> DaysOfDate(std::string_view text) {
  if (text.size() != 10 || text[4] != '-' || text[7] != '-') return std::nullopt;
  const auto year = ParseInt<int>(text.substr(0, 4));
  const auto month = ParseInt<int>(text.substr(5, 2));
  const auto day = ParseInt<int>(text.substr(8, 2));
  if (!year || !month || !day || !IsOnCalendar({*year, *month, *day})) return std::nullopt;
  return static_cast<double>(DaysSince1970({*year, *month, *day}) + kSerialOf1970);
}

}  // namespace

bool IsDateFormatId(int id) {
  return (id >= 14 && id <= 22) || (id >= 27 && id <= 36) || (id >= 45 && id <= 47) || (id >= 50 && id <= 58);
}

bool IsDateFormatCode(std::string_view code) {
  for (std::size_t at = 0; at < code.size() && code[at] != ';';) {
    if (const std::size_t behind = SkipLiteral(code, at); behind != at) {
      at = behind;
    } else if (code[at] == '[') {
      const std::size_t end = std::min(code.find(']', at), code.size());
      if (IsElapsedTime(code.substr(at + 1, end - at - 1))) return true;
      at = end + 1;
    } else if (std::string_view("yYmMdDhHsS").find(code[at]) != std::string_view::npos) {
      return true;
    } else {
      ++at;
    }
  }
  return false;
}

std::optional<double> DaysOfSerial(double serial, bool from_1904) {
  if (!(serial >= 0)) return std::nullopt;
  if (serial >= 1 && from_1904) serial += kDaysTo1904;
  if (serial >= 1 && !from_1904 && serial < kFalseLeapDay) serial += 1;
  if (serial >= kDaysToYear10000) return std::nullopt;
  return serial;
}

void SetWorksheetNumber(WorksheetCell& cell, double number, bool shows_date, bool from_1904) {
  const auto days = shows_date ? DaysOfSerial(number, from_1904) : std::nullopt;
  cell.kind = days ? WorksheetCell::Kind::kDate : WorksheetCell::Kind::kNumber;
  cell.number = number;
  cell.days = days.value_or(0);
}

void SetWorksheetDate(WorksheetCell& cell, double days, bool from_1904) {
  cell.kind = WorksheetCell::Kind::kDate;
  cell.days = cell.number = days;
  if (days >= 1 && from_1904) cell.number -= kDaysTo1904;
  if (days >= 1 && !from_1904 && days <= kFalseLeapDay) cell.number -= 1;
}

std::optional<double> DaysOfIsoText(std::string_view text) {
  if (text.size() < 10 || text[4] != '-') return TimeOfDay(text);
  const auto days = DaysOfDate(text.substr(0, 10));
  if (!days || text.size() == 10) return days;
  if (text[10] != 'T' && text[10] != ' ') return std::nullopt;
  const auto time = TimeOfDay(text.substr(11));
  if (!time) return std::nullopt;
  return *days + *time;
}

}  // namespace loom
