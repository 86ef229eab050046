#include "text/dialect/position_cell.h"

#include <charconv>
#include <cmath>
#include <cstring>

#include "text/dialect/calendar_words.h"
#include "text/dialect/cell_value.h"

namespace loom::dialect {
namespace {

constexpr double kNmeaHundred = 100.0;

char LetterOf(char c) {
  switch (c) {
    case 'N':
    case 'n':
      return 'N';
    case 'S':
    case 's':
      return 'S';
    case 'E':
    case 'e':
    case 'O':
    case 'o':
      return 'E';
    case 'W':
    case 'w':
      return 'W';
    default:
      return 0;
  }
}

// Marks between degrees, minutes and seconds. The bytes of one character are passed over together.
std::size_t MarkLength(std::string_view text) {
  for (const std::string_view mark : {"\xC2\xB0", "\xC2\xBA", "\xE2\x80\xB2", "\xE2\x80\xB3", "\xE2\x80\x99",
                                      "\xE2\x80\x9D", "\xEF\xBF\xBD", "\xC2\xB4", "\xCB\x9A"}) {
    if (text.starts_with(mark)) return mark.size();
  }
  const char c = text.empty() ? '\0' : text.front();
  return c == ' ' || c == '\'' || c == '"' || c == ':' ? 1 : 0;
}

}  // namespace

int HemisphereSign(std::string_view cell) {
  const std::string lower = Lower(Trimmed(cell));
  if (lower == "n" || lower == "e" || lower == "north" || lower == "east") return 1;
  if (lower == "s" || lower == "w" || lower == "south" || lower == "west") return -1;
  return 0;
}

const char* DegreeFormName(DegreeForm form, bool has_letter) {
  switch (form) {
    case DegreeForm::kDegreesMinutes:
      return "degrees minutes";
    case DegreeForm::kDegreesMinutesSeconds:
      return "degrees minutes seconds";
    case DegreeForm::kNmea:
      return "ddmm.mmmm";
    default:
      return has_letter ? "decimal letter" : "decimal";
  }
}

std::optional<DegreeCell> ParseDegrees(std::string_view cell, char decimal, bool is_nmea) {
  cell = Trimmed(cell);
  if (cell.empty() || cell.size() > 48) return std::nullopt;
  DegreeCell out;
  if (!IsDigit(cell.back()) && LetterOf(cell.back()) != 0) {
    out.letter = LetterOf(cell.back());
    cell = Trimmed(cell.substr(0, cell.size() - 1));
  } else if (LetterOf(cell.front()) != 0) {
    out.letter = LetterOf(cell.front());
    cell = Trimmed(cell.substr(1));
  }
  double sign = 1;
  if (!cell.empty() && (cell.front() == '-' || cell.front() == '+')) {
    sign = cell.front() == '-' ? -1 : 1;
    cell.remove_prefix(1);
  }
  double numbers[3] = {};
  int count = 0;
  bool has_mark = false;
  while (!cell.empty()) {
    if (count == 3) return std::nullopt;
    std::size_t length = 0;
    char text[32];
    bool has_point = false;
    while (length < cell.size() && length < sizeof(text)) {
      const char c = cell[length];
      const bool is_point = c == '.' || (c == ',' && (decimal == ',' || count > 0));
      if (!IsDigit(c) && (!is_point || has_point)) break;
      has_point = has_point || is_point;
      text[length++] = is_point ? '.' : c;
    }
    if (length == 0 || length == sizeof(text) || !IsDigit(text[0])) return std::nullopt;
    const auto [end, error] = std::from_chars(text, text + length, numbers[count]);
    if (error != std::errc() || (end != text + length && *end != '.')) return std::nullopt;
    ++count;
    cell.remove_prefix(length);
    while (const std::size_t mark = MarkLength(cell)) {
      has_mark = true;
      cell.remove_prefix(mark);
    }
    if (!cell.empty() && !has_mark) return std::nullopt;
  }
  if (count == 0 || (count > 1 && (numbers[1] > 60 || numbers[0] != std::floor(numbers[0])))) return std::nullopt;
  if (count > 2 && (numbers[2] > 60 || numbers[1] != std::floor(numbers[1]))) return std::nullopt;
  if (count == 1 && is_nmea) {
    const double whole = std::floor(numbers[0] / kNmeaHundred);
    const double minutes = numbers[0] - whole * kNmeaHundred;
    if (minutes >= 60) return std::nullopt;
    out.form = DegreeForm::kNmea;
    out.degrees = whole + minutes / 60.0;
  } else {
    out.form = count == 1   ? DegreeForm::kDecimal
               : count == 2 ? DegreeForm::kDegreesMinutes
                            : DegreeForm::kDegreesMinutesSeconds;
    out.degrees = numbers[0] + numbers[1] / 60.0 + numbers[2] / 3600.0;
  }
  out.degrees *= sign;
  if (out.letter == 'S' || out.letter == 'W') out.degrees = -out.degrees;
  return out;
}

}  // namespace loom::dialect
