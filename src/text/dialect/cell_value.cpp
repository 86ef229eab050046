#include "text/dialect/cell_value.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <utility>

#include "text/dialect/calendar_words.h"

namespace loom::dialect {
namespace {

bool IsUpper(char c) { return c >= 'A' && c <= 'Z'; }
bool IsLower(char c) { return c >= 'a' && c <= 'z'; }

constexpr auto kNullWords = std::to_array<std::string_view>({"-",    "--",  "---", "None", "none", "null",   "NULL",
                                                             "Null", "NaN", "nan", "NAN",  "N/A",  "n/a",    "NA",
                                                             "#N/A", "\\N", "?",   "*",    "nil",  "(null)", "<null>"});

// As written -> as named.
constexpr auto kUnits = std::to_array<std::pair<std::string_view, std::string_view>>({
    {"m", "m"},
    {"M", "m"},
    {"meter", "m"},
    {"meters", "m"},
    {"metres", "m"},
    {"km", "km"},
    {"ft", "ft"},
    {"feet", "ft"},
    {"mi", "mi"},
    {"km/h", "km/h"},
    {"kmh", "km/h"},
    {"kph", "km/h"},
    {"KM/H", "km/h"},
    {"Km/h", "km/h"},
    {"mph", "mph"},
    {"mps", "m/s"},
    {"m/s", "m/s"},
    {"knots", "kn"},
    {"kts", "kn"},
    {"kn", "kn"},
    {"knot", "kn"},
    {"dBm", "dBm"},
    {"dbm", "dBm"},
    {"DBM", "dBm"},
    {"dB", "dB"},
    {"db", "dB"},
    {"DB", "dB"},
    {"Hz", "Hz"},
    {"hz", "Hz"},
    {"kHz", "kHz"},
    {"khz", "kHz"},
    {"KHz", "kHz"},
    {"MHz", "MHz"},
    {"mhz", "MHz"},
    {"MHZ", "MHz"},
    {"GHz", "GHz"},
    {"ms", "ms"},
    {"sec", "s"},
    {"%", "%"},
    {"deg", "deg"},
    {"\xC2\xB0", "deg"},
    {"degrees", "deg"},
    {"mV", "mV"},
    {"mA", "mA"},
    {"mAh", "mAh"},
    {"bps", "bit/s"},
    {"kbps", "kbit/s"},
    {"Kbps", "kbit/s"},
    {"Mbps", "Mbit/s"},
    {"mbps", "Mbit/s"},
    {"kB", "kB"},
    {"KB", "kB"},
    {"MB", "MB"},
    {"GB", "GB"},
    {"hPa", "hPa"},
    {"mbar", "hPa"},
    {"mW", "mW"},
    {"min", "min"},
    {"px", "px"},
    {"s", "s"},
    {"V", "V"},
    {"A", "A"},
    {"W", "W"},
    {"C", "C"},
    {"F", "F"},
    {"h", "h"},
    {"\xC2\xB0"
     "C",
     "C"},
    {"\xE2\x84\x83", "C"},
    {"kn/h", "kn"},
});

// One letter that is too short to be believed right behind a number, where hexadecimal digits look the same.
bool NeedsBlank(std::string_view unit) { return unit.size() == 1 && unit != "m" && unit != "M" && unit != "%"; }

constexpr auto kNameUnits = std::to_array<std::pair<std::string_view, std::string_view>>({
    {"dbm", "dBm"}, {"db", "dB"},     {"kmh", "km/h"}, {"kph", "km/h"},    {"mph", "mph"},     {"mps", "m/s"},
    {"mhz", "MHz"}, {"khz", "kHz"},   {"hz", "Hz"},    {"kbps", "kbit/s"}, {"mbps", "Mbit/s"}, {"bps", "bit/s"},
    {"ms", "ms"},   {"knots", "kn"},  {"meters", "m"}, {"metres", "m"},    {"feet", "ft"},     {"degrees", "deg"},
    {"deg", "deg"}, {"percent", "%"}, {"ft", "ft"},    {"m", "m"},
});

}  // namespace

std::string Lower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (IsUpper(c)) c = static_cast<char>(c + ('a' - 'A'));
  }
  return lower;
}

bool IsNullWord(std::string_view cell) {
  constexpr std::string_view kFirstOfAny = "-Nn#\\?*(<.";
  if (cell.empty() || cell.size() > 6 || kFirstOfAny.find(cell.front()) == std::string_view::npos) return false;
  return std::ranges::find(kNullWords, cell) != kNullWords.end();
}

std::string_view UnitName(std::string_view unit) {
  const auto found = std::ranges::find(kUnits, unit, [](const auto& row) { return row.first; });
  return found != kUnits.end() ? found->second : std::string_view();
}

namespace {

constexpr std::size_t kExactDigits = 15;  // so many make a whole number that a double holds
constexpr auto kTenTo =
    std::to_array<double>({1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15});

// The number at the start of a cell.
struct NumberScan {
  std::size_t end = 0;
  std::size_t digits = 0;
  std::size_t decimals = 0;
  char mark = 0;
  bool has_exponent = false;
};

void PassExponent(std::string_view cell, NumberScan& scan) {
  if (scan.end + 1 >= cell.size() || (cell[scan.end] | 0x20) != 'e') return;
  std::size_t exponent = scan.end + 1;
  if (cell[exponent] == '-' || cell[exponent] == '+') ++exponent;
  const std::size_t start = exponent;
  while (exponent < cell.size() && IsDigit(cell[exponent])) ++exponent;
  if (exponent == start || exponent - start > 3) return;
  scan.end = exponent;
  scan.has_exponent = true;
}

NumberScan ScanNumber(std::string_view cell, char decimal) {
  NumberScan scan;
  std::size_t at = !cell.empty() && (cell[0] == '-' || cell[0] == '+') ? 1 : 0;
  const std::size_t start = at;
  while (at < cell.size() && IsDigit(cell[at])) ++at;
  scan.digits = at - start;
  if (at < cell.size() && (cell[at] == '.' || (cell[at] == ',' && decimal == ','))) {
    scan.mark = cell[at++];
    const std::size_t first = at;
    while (at < cell.size() && IsDigit(cell[at])) ++at;
    scan.decimals = at - first;
    scan.digits += scan.decimals;
  }
  scan.end = at;
  if (scan.digits > 0) PassExponent(cell, scan);
  return scan;
}

bool TakeForm(std::string_view cell, const NumberScan& scan, NumberForm& form) {
  if (scan.digits == 0) return false;
  form.is_integer = scan.mark == 0 && !scan.has_exponent;
  form.has_comma = scan.mark == ',';
  form.decimals = scan.decimals;
  if (scan.end >= cell.size()) return true;
  const std::string_view rest = Trimmed(cell.substr(scan.end));
  if (rest.empty() || UnitName(rest).empty() || (NeedsBlank(rest) && cell[scan.end] != ' ')) return false;
  form.unit = rest;
  return true;
}

double ValueOf(std::string_view cell, const NumberScan& scan) {
  std::string_view number = cell.substr(0, scan.end);
  if (scan.digits <= kExactDigits && !scan.has_exponent) {
    std::uint64_t mantissa = 0;
    for (const char c : number) {
      if (IsDigit(c)) mantissa = mantissa * 10 + static_cast<std::uint64_t>(c - '0');
    }
    const double value = static_cast<double>(mantissa) / kTenTo[scan.decimals];
    return cell[0] == '-' ? -value : value;
  }
  char text[48];
  if (scan.mark == ',' && number.size() < sizeof(text)) {
    std::ranges::copy(number, text);
    *static_cast<char*>(std::memchr(text, ',', number.size())) = '.';
    number = std::string_view(text, number.size());
  }
  if (number[0] == '+') number.remove_prefix(1);
  double value = 0;
  std::from_chars(number.data(), number.data() + number.size(), value);
  return value;
}

}  // namespace

std::optional<NumberForm> FormOfNumber(std::string_view cell, char decimal) {
  NumberForm form;
  return TakeForm(cell, ScanNumber(cell, decimal), form) ? std::optional(form) : std::nullopt;
}

std::optional<NumberCell> ParseNumber(std::string_view cell, char decimal) {
  const NumberScan scan = ScanNumber(cell, decimal);
  NumberCell number;
  if (!TakeForm(cell, scan, number)) return std::nullopt;
  number.value = ValueOf(cell, scan);
  return number;
}

std::vector<std::string> WordsOf(std::string_view name) {
  std::vector<std::string> words;
  std::string word;
  bool is_word_chinese = false;
  const auto finish = [&] {
    if (!word.empty()) words.push_back(Lower(word));
    word.clear();
  };
  for (std::size_t at = 0; at < name.size(); ++at) {
    const char c = name[at];
    const auto byte = static_cast<unsigned char>(c);
    const bool is_word = IsUpper(c) || IsLower(c) || IsDigit(c) || byte >= 0x80;
    if (!is_word) {
      finish();
      continue;
    }
    const bool is_inside = byte >= 0x80 && byte < 0xC0;  // of a character
    const bool is_chinese = is_inside ? is_word_chinese : byte >= 0xE0;
    const bool is_capital =
        IsUpper(c) && !word.empty() &&
        (IsLower(word.back()) || (at + 1 < name.size() && IsLower(name[at + 1]) && IsUpper(word.back())));
    if (is_capital || (!word.empty() && is_chinese != is_word_chinese)) finish();
    is_word_chinese = is_chinese;
    word += c;
  }
  finish();
  return words;
}

std::string UnitOfName(std::string_view name) {
  for (const auto& [open, close] : {std::pair{'(', ')'}, std::pair{'[', ']'}}) {
    const auto from = name.find(open);
    const auto to = name.find(close, from == std::string_view::npos ? 0 : from);
    if (from == std::string_view::npos || to == std::string_view::npos) continue;
    const std::string_view unit = UnitName(Trimmed(name.substr(from + 1, to - from - 1)));
    if (!unit.empty()) return std::string(unit);
  }
  const std::vector<std::string> words = WordsOf(name);
  if (words.size() < 2) return {};
  const auto found = std::ranges::find(kNameUnits, words.back(), [](const auto& row) { return row.first; });
  return found != kNameUnits.end() ? std::string(found->second) : std::string();
}

}  // namespace loom::dialect
