#include "text/dialect/time_cell.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "text/dialect/calendar_words.h"
#include "text/dialect/cell_value.h"

namespace loom::dialect {
namespace {

constexpr auto kLongMonths =
    std::to_array<std::string_view>({"january", "february", "march", "april", "may", "june", "july", "august",
                                     "september", "october", "november", "december"});
constexpr auto kWeekdays = std::to_array<std::string_view>({"mon", "tue", "wed", "thu", "fri", "sat", "sun"});

// Hours east of Greenwich, in minutes.
constexpr auto kZoneWords = std::to_array<std::pair<std::string_view, int>>({
    {"Z", 0},      {"UTC", 0},    {"GMT", 0},    {"UT", 0},     {"WET", 0},     {"WEST", 60},
    {"BST", 60},   {"CET", 60},   {"CEST", 120}, {"MEZ", 60},   {"MESZ", 120},  {"EET", 120},
    {"EEST", 180}, {"MSK", 180},  {"JST", 540},  {"KST", 540},  {"HKT", 480},   {"SGT", 480},
    {"AEST", 600}, {"AEDT", 660}, {"EST", -300}, {"EDT", -240}, {"CST", -360},  {"CDT", -300},
    {"MST", -420}, {"MDT", -360}, {"PST", -480}, {"PDT", -420}, {"AKST", -540}, {"HST", -600},
});

// Reads forward through one cell.
class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}
  bool IsAtEnd() const { return at_ >= text_.size(); }
  char Peek(std::size_t ahead = 0) const { return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0'; }
  void Skip(std::size_t count = 1) { at_ += count; }
  std::size_t At() const { return at_; }
  void Return(std::size_t at) { at_ = at; }
  std::string_view From(std::size_t start) const { return text_.substr(start, at_ - start); }
  std::string_view Rest() const { return text_.substr(at_); }
  std::size_t Digits() const {
    std::size_t count = 0;
    while (IsDigit(Peek(count))) ++count;
    return count;
  }
  std::int32_t Number(std::size_t digits) {
    std::int32_t value = 0;
    for (std::size_t i = 0; i < digits; ++i) value = value * 10 + (text_[at_++] - '0');
    return value;
  }
  std::string_view Word() {
    const std::size_t start = at_;
    while (IsLetter(Peek())) ++at_;
    return From(start);
  }

 private:
  std::string_view text_;
  std::size_t at_ = 0;
};

int MonthOf(std::string_view word) {
  const std::string lower = Lower(word);
  for (std::size_t month = 0; month < 12; ++month) {
    if (lower == kMonths[month] || lower == kLongMonths[month] || (month == 8 && lower == "sept"))
      return static_cast<int>(month) + 1;
  }
  return 0;
}

void SkipWeekday(Reader& in, TimeShape& shape) {
  const std::size_t start = in.At();
  const std::string word = Lower(in.Word());
  const bool is_weekday =
      word.size() >= 3 && std::ranges::find(kWeekdays, std::string_view(word).substr(0, 3)) != kWeekdays.end();
  if (!is_weekday) return in.Return(start);
  shape.has_weekday = true;
  if (in.Peek() == ',' || in.Peek() == '.') in.Skip();
  while (in.Peek() == ' ') in.Skip();
}

// Mon dd, yyyy or dd Mon yyyy or dd-Mon-yy.
bool ParseNamedDate(Reader& in, TimeText& out) {
  const std::size_t start = in.At();
  TimeShape& shape = out.shape;
  const auto skip_marks = [&] {
    while (in.Peek() == ' ' || in.Peek() == ',' || in.Peek() == '-' || in.Peek() == '/' || in.Peek() == '.') in.Skip();
  };
  int day = 0;
  int month = 0;
  if (IsLetter(in.Peek())) {
    month = MonthOf(in.Word());
    skip_marks();
    const std::size_t digits = in.Digits();
    if (month == 0 || digits == 0 || digits > 2) return in.Return(start), false;
    day = in.Number(digits);
    shape.date_mark = in.Peek() == ',' ? ',' : ' ';
    shape.date = DateForm::kMonthNameDay;
  } else {
    const std::size_t digits = in.Digits();
    if (digits == 0 || digits > 2) return false;
    day = in.Number(digits);
    shape.date_mark = in.Peek();
    skip_marks();
    month = IsLetter(in.Peek()) ? MonthOf(in.Word()) : 0;
    if (month == 0) return in.Return(start), false;
    shape.date = DateForm::kDayMonthName;
  }
  out.parts[0] = shape.date == DateForm::kDayMonthName ? day : month;
  out.parts[1] = shape.date == DateForm::kDayMonthName ? month : day;
  const std::size_t before_year = in.At();
  skip_marks();
  const std::size_t digits = in.Digits();
  if (digits == 2 && in.Peek(digits) == ':' && shape.date == DateForm::kMonthNameDay) {
    shape.has_year_last = true;
    return in.Return(before_year), true;
  }
  if ((digits != 4 && digits != 2) || in.Peek(digits) == ':') return in.Return(start), false;
  out.parts[2] = in.Number(digits);
  shape.has_short_year = digits == 2;
  return true;
}

// Chinese dates have a mark of three bytes behind each number.
std::string_view ChineseMark(Reader& in) {
  for (const std::string_view mark : {"\xE5\xB9\xB4", "\xE6\x9C\x88", "\xE6\x97\xA5"}) {  // 年 月 日
    if (in.Rest().starts_with(mark)) return mark;
  }
  return {};
}

void TakeCompactDate(Reader& in, TimeText& out) {
  out.parts[0] = in.Number(4);
  out.parts[1] = in.Number(2);
  out.parts[2] = in.Number(2);
  out.shape.date = DateForm::kCompact8;
  out.shape.is_year_first = true;
}

// The mark between the parts of a date; 0 for none. Stays in front of it.
char DateMark(Reader& in) {
  if (!ChineseMark(in).empty()) return kChineseDateMark;
  const char mark = in.Peek();
  return mark == '-' || mark == '/' || mark == '.' || mark == '_' || mark == ':' ? mark : '\0';
}

bool PassDateMark(Reader& in, char mark) {
  const bool is_there = mark == kChineseDateMark ? !ChineseMark(in).empty() : in.Peek() == mark;
  if (is_there) in.Skip(mark == kChineseDateMark ? 3 : 1);
  return is_there;
}

// Three numbers with a mark between them.
bool ParseMarkedDate(Reader& in, TimeText& out) {
  TimeShape& shape = out.shape;
  std::size_t lengths[3] = {in.Digits(), 0, 0};
  if (lengths[0] != 1 && lengths[0] != 2 && lengths[0] != 4) return false;
  out.parts[0] = in.Number(lengths[0]);
  const char mark = DateMark(in);
  if (mark == 0) return false;
  for (int part = 1; part < 3; ++part) {
    if (!PassDateMark(in, mark)) return false;
    lengths[part] = in.Digits();
    const bool is_last_year = lengths[part] == 4 && part == 2 && lengths[0] != 4;
    if (lengths[part] != 1 && lengths[part] != 2 && !is_last_year) return false;
    out.parts[part] = in.Number(lengths[part]);
  }
  if (mark == kChineseDateMark) PassDateMark(in, mark);
  if (mark == ':' && lengths[0] != 4 && lengths[2] != 4) return false;
  shape.date = DateForm::kNumbers;
  shape.date_mark = mark;
  shape.is_year_first = lengths[0] == 4;
  shape.has_short_year = lengths[0] != 4 && lengths[2] != 4;
  shape.is_padded = lengths[0] != 1 && lengths[1] == 2 && lengths[2] != 1;
  const bool is_doubtful = shape.has_short_year && (lengths[2] != 2 || (!shape.is_padded && mark != '/'));
  return !is_doubtful;
}

bool ParseNumberDate(Reader& in, TimeText& out) {
  const std::size_t digits = in.Digits();
  if (digits == 8 || digits == 14) {
    TakeCompactDate(in, out);
    return true;
  }
  const std::size_t start = in.At();
  if (ParseMarkedDate(in, out)) return true;
  in.Return(start);
  return false;
}

bool ParseHalf(Reader& in, TimeText& out, int& hour) {
  const std::size_t start = in.At();
  while (in.Peek() == ' ') in.Skip();
  std::string word;
  while (IsLetter(in.Peek()) || (in.Peek() == '.' && !word.empty())) {
    if (IsLetter(in.Peek())) word += in.Peek();
    in.Skip();
  }
  word = Lower(word);
  if (word != "am" && word != "pm") return in.Return(start), false;
  out.shape.has_half = true;
  if (hour < 1 || hour > 12) return false;
  hour = hour % 12 + (word == "pm" ? 12 : 0);
  return true;
}

bool ParseFraction(Reader& in, TimeText& out, double& seconds) {
  const char mark = in.Peek();
  if ((mark != '.' && mark != ',' && mark != ':') || !IsDigit(in.Peek(1))) return true;
  in.Skip();
  const std::size_t digits = in.Digits();
  if (digits > 9 || (mark == ':' && digits > 3)) return false;
  const double fraction = in.Number(digits);
  seconds += fraction / std::pow(10.0, mark == ':' ? 3.0 : static_cast<double>(digits));
  out.shape.fraction_mark = mark;
  out.shape.fraction_digits = static_cast<std::uint8_t>(digits);
  return true;
}

// The mark between hours and minutes; 0 for none. Stays in front of it.
char ClockMark(Reader& in, bool has_date) {
  if (in.Rest().starts_with("\xE6\x97\xB6")) return kChineseClockMark;  // 时
  const char mark = in.Peek();
  return mark == ':' || (has_date && (mark == '.' || mark == '-' || mark == '_')) ? mark : '\0';
}

bool PassClockMark(Reader& in, char mark, std::string_view chinese) {
  const bool is_chinese = mark == kChineseClockMark;
  const bool is_there = is_chinese ? in.Rest().starts_with(chinese) : in.Peek() == mark && mark != 0;
  if (is_there) in.Skip(is_chinese ? chinese.size() : 1);
  return is_there;
}

bool ParseMarkedClock(Reader& in, TimeText& out, int& hour, int& minute, double& seconds) {
  TimeShape& shape = out.shape;
  const std::size_t digits = in.Digits();
  if (digits != 1 && digits != 2) return false;
  hour = in.Number(digits);
  shape.clock_mark = ClockMark(in, shape.date != DateForm::kNone);
  if (!PassClockMark(in, shape.clock_mark, "\xE6\x97\xB6") || in.Digits() != 2) return false;
  minute = in.Number(2);
  shape.clock = ClockForm::kMarks;
  const std::size_t behind_minute = in.At();
  const bool goes_on = PassClockMark(in, shape.clock_mark, "\xE5\x88\x86");  // 分
  if (goes_on && in.Digits() > 0) {
    if (in.Digits() != 2) return false;
    seconds = in.Number(2);
    shape.has_seconds = true;
    return shape.clock_mark != kChineseClockMark || PassClockMark(in, kChineseClockMark, "\xE7\xA7\x92");  // 秒
  }
  in.Return(behind_minute);
  return shape.clock_mark == ':';
}

bool ParseClock(Reader& in, TimeText& out) {
  const std::size_t start = in.At();
  TimeShape& shape = out.shape;
  int hour = 0;
  int minute = 0;
  double seconds = 0;
  bool is_clock = true;
  if (in.Digits() == 6 && shape.date == DateForm::kCompact8) {
    hour = in.Number(2);
    minute = in.Number(2);
    seconds = in.Number(2);
    shape.clock = ClockForm::kCompact;
    shape.has_seconds = true;
  } else {
    is_clock = ParseMarkedClock(in, out, hour, minute, seconds);
  }
  is_clock = is_clock && (!shape.has_seconds || ParseFraction(in, out, seconds));
  is_clock = is_clock && (ParseHalf(in, out, hour) || !shape.has_half);
  if (!is_clock || hour > 23 || minute > 59 || seconds >= 61) {
    in.Return(start);
    return false;
  }
  out.second_of_day = hour * 3600.0 + minute * 60.0 + seconds;
  return true;
}

bool ParseZoneEnd(Reader& in, TimeText& out) {
  if (in.IsAtEnd()) return true;
  const std::size_t start = in.At();
  while (in.Peek() == ' ') in.Skip();
  out.shape.zone_has_blank = in.At() != start;
  const std::string_view zone = in.Rest();
  const std::optional<std::int32_t> offset = ParseZone(zone);
  if (!offset) return false;
  out.zone = zone;
  out.offset_s = *offset;
  out.shape.zone = IsLetter(zone.front()) && zone != "Z" ? ZoneForm::kWord : ZoneForm::kOffset;
  in.Skip(zone.size());
  return true;
}

bool ParseJoint(Reader& in, TimeShape& shape) {
  const std::size_t start = in.At();
  while (in.Peek() == ' ' || in.Peek() == ',' || in.Peek() == '_' || in.Peek() == 'T' || in.Peek() == '-' ||
         in.Peek() == '/' || in.Peek() == ';')
    in.Skip();
  shape.joint = in.From(start);
  return shape.joint.size() <= 3;
}

bool ParseDate(Reader& in, TimeText& out) {
  SkipWeekday(in, out.shape);
  return ParseNumberDate(in, out) || ParseNamedDate(in, out);
}

// What follows the clock of a date that has told no year: a zone and the year.
bool ParseYearBehind(Reader& in, TimeText& out) {
  if (in.Peek() != ' ') return false;
  in.Skip();
  if (!IsDigit(in.Peek())) {
    out.zone = in.Rest().substr(0, in.Rest().find(' '));
    const std::optional<std::int32_t> offset = ParseZone(out.zone);
    if (!offset) return false;
    out.offset_s = *offset;
    out.shape.zone = IsLetter(out.zone.front()) && out.zone != "Z" ? ZoneForm::kWord : ZoneForm::kOffset;
    in.Skip(out.zone.size());
    if (in.Peek() != ' ') return false;
    in.Skip();
  }
  if (in.Digits() != 4) return false;
  out.parts[2] = in.Number(4);
  return in.IsAtEnd();
}

// A date, and what follows it.
bool ParseDateFirst(Reader& in, TimeText& out) {
  if (in.IsAtEnd()) return !out.shape.has_year_last;
  const std::size_t before = in.At();
  if (!ParseJoint(in, out.shape)) return false;
  const bool has_clock = ParseClock(in, out);
  if (out.shape.has_year_last) return has_clock && ParseYearBehind(in, out);
  if (!has_clock) {
    in.Return(before);
    out.shape.joint.clear();
  }
  if (!ParseZoneEnd(in, out) || !in.IsAtEnd()) return false;
  return out.shape.clock != ClockForm::kNone || out.shape.zone == ZoneForm::kNone;
}

bool ParseClockFirst(Reader& in, TimeText& out) {
  if (!ParseClock(in, out)) return false;
  if (in.IsAtEnd()) return true;
  const std::size_t behind_clock = in.At();
  if (ParseZoneEnd(in, out)) return true;
  in.Return(behind_clock);
  out.shape.zone_has_blank = false;
  out.shape.clock_first = true;
  if (!ParseJoint(in, out.shape) || out.shape.joint.empty() || !ParseDate(in, out)) return false;
  return !out.shape.has_year_last && ParseZoneEnd(in, out) && in.IsAtEnd();
}

}  // namespace

std::optional<std::int32_t> ParseZone(std::string_view text) {
  for (const auto& [word, minutes] : kZoneWords) {
    if (text == word) return minutes * 60;
  }
  if (text.starts_with("UTC") || text.starts_with("GMT")) text.remove_prefix(3);
  if (text.size() < 2 || (text[0] != '+' && text[0] != '-')) return std::nullopt;
  const int sign = text[0] == '-' ? -1 : 1;
  Reader in(text.substr(1));
  const std::size_t digits = in.Digits();
  int hours = 0;
  int minutes = 0;
  if (digits == 4) {
    hours = in.Number(2);
    minutes = in.Number(2);
  } else if (digits == 1 || digits == 2) {
    hours = in.Number(digits);
    if (in.Peek() == ':') {
      in.Skip();
      if (in.Digits() != 2) return std::nullopt;
      minutes = in.Number(2);
    }
  } else {
    return std::nullopt;
  }
  if (!in.IsAtEnd() || hours > 14 || minutes > 59) return std::nullopt;
  return sign * (hours * 3600 + minutes * 60);
}

std::optional<TimeText> ParseTimeText(std::string_view cell) {
  if (cell.size() < 5 || cell.size() > 48) return std::nullopt;
  TimeText out;
  if (cell.front() == '[' && cell.back() == ']') {
    cell = cell.substr(1, cell.size() - 2);
    out.shape.has_brackets = true;
  }
  const bool has_brackets = out.shape.has_brackets;
  Reader in(cell);
  bool is_time = false;
  if (ParseDate(in, out)) {
    is_time = ParseDateFirst(in, out);
  } else {
    out = TimeText();
    out.shape.has_brackets = has_brackets;
    in.Return(0);
    is_time = ParseClockFirst(in, out);
  }
  if (!is_time || (out.shape.date != DateForm::kNone && out.OrderMask() == 0)) return std::nullopt;
  return out;
}

}  // namespace loom::dialect
