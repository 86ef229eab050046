#include "text/dialect/time_cell.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
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
  const std::size_t before_year = in.At();
  skip_marks();
  const std::size_t digits = in.Digits();
  if ((digits == 4 || digits == 2) && in.Peek(digits) != ':') {
    out.parts[2] = in.Number(digits);
    shape.has_short_year = digits == 2;
  } else {
    return in.Return(before_year), in.Return(start), false;
  }
  out.parts[0] = shape.date == DateForm::kDayMonthName ? day : month;
  out.parts[1] = shape.date == DateForm::kDayMonthName ? month : day;
  return true;
}

// Chinese dates have a mark of three bytes behind each number.
std::string_view ChineseMark(Reader& in) {
  for (const std::string_view mark : {"\xE5\xB9\xB4", "\xE6\x9C\x88", "\xE6\x97\xA5"}) {  // 年 月 日
    if (in.Rest().starts_with(mark)) return mark;
  }
  return {};
}

bool ParseNumberDate(Reader& in, TimeText& out) {
  const std::size_t start = in.At();
  TimeShape& shape = out.shape;
  const std::size_t first = in.Digits();
  if (first == 8 && !IsDigit(in.Peek(8))) {
    out.parts[0] = in.Number(4);
    out.parts[1] = in.Number(2);
    out.parts[2] = in.Number(2);
    shape.date = DateForm::kCompact8;
    shape.is_year_first = true;
    return true;
  }
  if (first == 14) {
    out.parts[0] = in.Number(4);
    out.parts[1] = in.Number(2);
    out.parts[2] = in.Number(2);
    shape.date = DateForm::kCompact8;
    shape.is_year_first = true;
    return true;
  }
  if (first != 1 && first != 2 && first != 4) return false;
  out.parts[0] = in.Number(first);
  std::size_t lengths[3] = {first, 0, 0};
  const std::string_view chinese = ChineseMark(in);
  char mark = chinese.empty() ? in.Peek() : '\xE5';
  if (chinese.empty() && mark != '-' && mark != '/' && mark != '.' && mark != '_' && mark != ':')
    return in.Return(start), false;
  for (int part = 1; part < 3; ++part) {
    if (!chinese.empty()) {
      if (ChineseMark(in).empty()) return in.Return(start), false;
      in.Skip(3);
    } else {
      if (in.Peek() != mark) return in.Return(start), false;
      in.Skip();
    }
    lengths[part] = in.Digits();
    const bool may_be = lengths[part] == 1 || lengths[part] == 2 || (lengths[part] == 4 && part == 2 && first != 4);
    if (!may_be) return in.Return(start), false;
    out.parts[part] = in.Number(lengths[part]);
  }
  if (!chinese.empty() && !ChineseMark(in).empty()) in.Skip(3);
  if (mark == ':' && first != 4 && lengths[2] != 4) return in.Return(start), false;
  shape.date = DateForm::kNumbers;
  shape.date_mark = mark;
  shape.is_year_first = first == 4;
  shape.has_short_year = first != 4 && lengths[2] != 4;
  shape.is_padded = first != 1 && lengths[1] == 2 && lengths[2] != 1;
  const bool is_doubtful = shape.has_short_year && (lengths[2] != 2 || (!shape.is_padded && mark != '/'));
  if (is_doubtful) return in.Return(start), false;
  return true;
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

bool ParseClock(Reader& in, TimeText& out) {
  const std::size_t start = in.At();
  TimeShape& shape = out.shape;
  const std::size_t digits = in.Digits();
  int hour = 0;
  int minute = 0;
  double seconds = 0;
  if (digits == 6 && shape.date == DateForm::kCompact8) {
    hour = in.Number(2);
    minute = in.Number(2);
    seconds = in.Number(2);
    shape.clock = ClockForm::kCompact;
    shape.has_seconds = true;
  } else {
    if (digits != 1 && digits != 2) return false;
    hour = in.Number(digits);
    shape.clock_mark = in.Peek();
    const bool may_be_marked =
        shape.clock_mark == ':' || ((shape.clock_mark == '.' || shape.clock_mark == '-' || shape.clock_mark == '_') &&
                                    shape.date != DateForm::kNone);
    if (!may_be_marked) return in.Return(start), false;
    in.Skip();
    if (in.Digits() != 2) return in.Return(start), false;
    minute = in.Number(2);
    shape.clock = ClockForm::kMarks;
    if (in.Peek() == shape.clock_mark && in.Digits() == 0 && IsDigit(in.Peek(1))) {
      in.Skip();
      if (in.Digits() != 2) return in.Return(start), false;
      seconds = in.Number(2);
      shape.has_seconds = true;
    } else if (shape.clock_mark != ':') {
      return in.Return(start), false;
    }
  }
  if (shape.has_seconds && !ParseFraction(in, out, seconds)) return in.Return(start), false;
  if (!ParseHalf(in, out, hour) && shape.has_half) return in.Return(start), false;
  if (hour > 23 || minute > 59 || seconds >= 61) return in.Return(start), false;
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

}  // namespace

bool TimeShape::IsAkin(const TimeShape& other) const {
  return date == other.date && is_year_first == other.is_year_first && has_short_year == other.has_short_year &&
         date_mark == other.date_mark && clock == other.clock && clock_mark == other.clock_mark &&
         clock_first == other.clock_first && joint == other.joint && has_half == other.has_half;
}

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

std::string OffsetText(std::int32_t offset_s) {
  if (offset_s == 0) return "UTC";
  char text[16];
  const std::int32_t minutes = std::abs(offset_s) / 60;
  std::snprintf(text, sizeof(text), "%c%02d:%02d", offset_s < 0 ? '-' : '+', minutes / 60 % 100, minutes % 60);
  return text;
}

std::optional<TimeText> ParseTimeText(std::string_view cell) {
  if (cell.size() < 5 || cell.size() > 48) return std::nullopt;
  TimeText out;
  Reader in(cell);
  if (ParseDate(in, out)) {
    if (in.IsAtEnd()) return out.OrderMask() != 0 ? std::optional(out) : std::nullopt;
    const std::size_t before = in.At();
    if (!ParseJoint(in, out.shape)) return std::nullopt;
    if (!ParseClock(in, out)) {
      in.Return(before);
      out.shape.joint.clear();
    }
    if (!ParseZoneEnd(in, out) || !in.IsAtEnd()) return std::nullopt;
    if (out.shape.clock == ClockForm::kNone && out.shape.zone != ZoneForm::kNone) return std::nullopt;
    return out.OrderMask() != 0 ? std::optional(out) : std::nullopt;
  }
  out = TimeText();
  in.Return(0);
  if (!ParseClock(in, out)) return std::nullopt;
  if (in.IsAtEnd()) return out;
  const std::size_t behind_clock = in.At();
  if (ParseZoneEnd(in, out)) return out;
  in.Return(behind_clock);
  out.shape.clock_first = true;
  if (!ParseJoint(in, out.shape) || out.shape.joint.empty() || !ParseDate(in, out)) return std::nullopt;
  if (!ParseZoneEnd(in, out) || !in.IsAtEnd()) return std::nullopt;
  return out.OrderMask() != 0 ? std::optional(out) : std::nullopt;
}

std::optional<CalendarDay> DayOf(const TimeText& text, DateOrder order) {
  const TimeShape& shape = text.shape;
  CalendarDay day{};
  switch (shape.date) {
    case DateForm::kNone:
      return std::nullopt;
    case DateForm::kDayMonthName:
      day = {text.parts[2], text.parts[1], text.parts[0]};
      break;
    case DateForm::kMonthNameDay:
      day = {text.parts[2], text.parts[0], text.parts[1]};
      break;
    default:
      if (shape.is_year_first || order == DateOrder::kYmd) {
        if (order != DateOrder::kYmd) return std::nullopt;
        day = {text.parts[0], text.parts[1], text.parts[2]};
      } else if (order == DateOrder::kDmy) {
        day = {text.parts[2], text.parts[1], text.parts[0]};
      } else {
        day = {text.parts[2], text.parts[0], text.parts[1]};
      }
      if (!shape.is_year_first && order == DateOrder::kYmd && !shape.has_short_year) return std::nullopt;
  }
  if (shape.has_short_year) {
    if (day.year > 99) return std::nullopt;
    day.year += day.year < kShortYearPivot ? 2000 : 1900;
  }
  if (!IsOnCalendar(day) || day.year < 1900 || day.year > 2100) return std::nullopt;
  return day;
}

int TimeText::OrderMask() const {
  int mask = 0;
  for (const DateOrder order : {DateOrder::kYmd, DateOrder::kDmy, DateOrder::kMdy}) {
    const bool by_name = shape.date == DateForm::kDayMonthName || shape.date == DateForm::kMonthNameDay;
    if (by_name && order != DateOrder::kDmy) continue;
    if (DayOf(*this, order)) mask |= 1 << static_cast<int>(order);
  }
  return mask;
}

std::string LayoutText(const TimeShape& shape, DateOrder order) {
  std::string date;
  const std::string year = shape.has_short_year ? "yy" : "yyyy";
  const std::string month = shape.is_padded ? "MM" : "M";
  const std::string day = shape.is_padded ? "dd" : "d";
  const auto join = [&](const std::string& a, const std::string& b, const std::string& c) {
    if (shape.date_mark == '\xE5') return a + "年" + b + "月" + c + "日";
    const std::string mark = shape.date_mark != 0 ? std::string(1, shape.date_mark) : "";
    return a + mark + b + mark + c;
  };
  if (shape.date == DateForm::kCompact8) date = "yyyyMMdd";
  if (shape.date == DateForm::kCompact6 || shape.date == DateForm::kNumbers) {
    date = order == DateOrder::kYmd   ? join(year, month, day)
           : order == DateOrder::kDmy ? join(day, month, year)
                                      : join(month, day, year);
  }
  if (shape.date == DateForm::kDayMonthName) date = join("dd", "MMM", year);
  if (shape.date == DateForm::kMonthNameDay)
    date = std::string("MMM dd") + (shape.date_mark == ',' ? ", " : " ") + year;
  if (shape.has_weekday) date = "EEE " + date;
  std::string clock;
  if (shape.clock == ClockForm::kCompact) clock = "HHmmss";
  if (shape.clock == ClockForm::kMarks) {
    const std::string mark(1, shape.clock_mark);
    clock = std::string(shape.has_half ? "h" : "HH") + mark + "mm" + (shape.has_seconds ? mark + "ss" : "");
  }
  if (shape.fraction_mark != 0) clock += std::string(1, shape.fraction_mark) + "SSS";
  if (shape.has_half) clock += " a";
  std::string joint;
  for (const char c : shape.joint) joint += c == 'T' ? std::string("'T'") : std::string(1, c);
  std::string layout = shape.clock_first ? clock + joint + date : date + joint + clock;
  if (shape.zone != ZoneForm::kNone)
    layout += std::string(shape.zone_has_blank ? " " : "") + (shape.zone == ZoneForm::kWord ? "z" : "XXX");
  return layout;
}

}  // namespace loom::dialect
