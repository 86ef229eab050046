#include "text/import/time_text.h"

#include <bit>
#include <cmath>

#include "components/dt_time.h"
#include "components/field_value.h"
#include "platform/characters.h"
#include "platform/clock.h"
#include "text/import/byte_words.h"
#include "text/import/cell_number.h"
#include "text/import/line_splitter.h"

namespace loom {

// First and last place of a character; a layout needs two of them.
struct CharacterPair {
  std::ptrdiff_t first = -1;
  std::ptrdiff_t last = -1;
  bool IsComplete() const { return first != last; }
  void Add(std::ptrdiff_t first_at, std::ptrdiff_t last_at) {
    if (first < 0) first = first_at;
    last = last_at;
  }
  // The bytes of a word that `text` has at `at`.
  void Add(std::uint64_t equal_bytes, std::ptrdiff_t at) {
    if (equal_bytes != 0)
      Add(at + (std::countr_zero(equal_bytes) >> 3), at + ((63 - std::countl_zero(equal_bytes)) >> 3));
  }
};

struct TimeMarks {
  CharacterPair dashes;
  CharacterPair colons;
  int colon_count = 0;
};

namespace {

constexpr int kTimeDecimals = 6;
constexpr double kFirstDay_s = 86400.0;       // the smallest number that stands for a time without a layout
constexpr double kLatest_s = 253402300799.0;  // end of the year 9999

// As CString::Mid.
std::string_view Mid(std::string_view text, std::ptrdiff_t from, std::ptrdiff_t count = -1) {
  const auto start = std::min(static_cast<std::size_t>(std::max<std::ptrdiff_t>(from, 0)), text.size());
  return text.substr(start, count < 0 ? std::string_view::npos : static_cast<std::size_t>(count));
}

int IntAt(std::string_view text, std::ptrdiff_t from, std::ptrdiff_t count) {
  return CellInt(Mid(text, from, count), text.data() + text.size()).value;
}

struct Date {
  int year;
  int month;
  int day;
  bool IsValid() const { return year >= 1970 && year <= 2038 && month >= 1 && month <= 12 && day >= 1 && day <= 31; }
};

Date DateIn(std::string_view text, const CharacterPair& dashes, const TimeLayout& layout) {
  const int middle = IntAt(text, dashes.first + 1, 2);
  if (layout.date == DateOrder::kYearMonthDay)
    return {IntAt(text, dashes.first - 4, 4), middle, IntAt(text, dashes.last + 1, 2)};
  const int leading = IntAt(text, dashes.first - 2, 2);
  const int year = IntAt(text, dashes.last + 1, layout.year_length);
  if (layout.date == DateOrder::kDayMonthYear) return {year, middle, leading};
  return {year, leading, middle};
}

// What stands in front of the last colon.
struct Clock {
  int hour;
  int minute;
  int second;  // 0 where the seconds stand behind the colon
  double SecondOfDay() const { return (hour * 60.0 + minute) * 60.0 + second; }
  bool IsInRange() const { return hour <= 23 && minute <= 59 && second <= 59; }
};

Clock ClockIn(std::string_view text, const CharacterPair& colons, SecondsRule rule) {
  return {IntAt(text, colons.first - 2, 2), IntAt(text, colons.first + 1, 2),
          rule == SecondsRule::kMilliseconds ? IntAt(text, colons.last - 2, 2) : 0};
}

// What stands behind the last colon.
struct LastNumber {
  double number;
  bool is_whole;  // nothing else stands there, or behind the date that follows
};

LastNumber LastNumberIn(std::string_view text, const CharacterPair& dashes, const CharacterPair& colons,
                        const TimeLayout& layout) {
  const std::string_view rest = Mid(text, colons.last + 1);
  const bool has_date_behind = layout.date != DateOrder::kNone && dashes.first > colons.last;
  const std::ptrdiff_t date_start = dashes.first - (layout.date == DateOrder::kYearMonthDay ? 4 : 2);
  const std::ptrdiff_t before_date = std::max<std::ptrdiff_t>(date_start - (colons.last + 1), 0);
  const std::string_view uncut = has_date_behind ? Mid(rest, 0, before_date) : rest;
  const std::string_view number_text = Trimmed(uncut);
  if (layout.seconds == SecondsRule::kTwoDigits) {
    const CellNumber<double> number = CellDouble(rest.substr(0, 2));
    return {number.value, number_text.size() <= 2 && CellDouble(number_text).is_whole};
  }
  const CellNumber<double> number = CellDouble(number_text);
  // A date that follows without a blank lends its digits to the number.
  const bool stands_alone = !has_date_behind || number_text.size() < uncut.size();
  if (!number.is_whole || !stands_alone) return {CellDouble(rest).value, false};
  return {number.value, true};
}

bool EndsWithYear(std::string_view text, const CharacterPair& dashes, const TimeLayout& layout) {
  const std::string_view year = Mid(text, dashes.last + 1);
  return layout.year_length < 0 ? CellInt(year).is_whole : year.size() <= static_cast<std::size_t>(layout.year_length);
}

double SecondsBehind(double number, SecondsRule rule) {
  return rule == SecondsRule::kMilliseconds ? number * 0.001 : number;
}

// What is below the next unit.
double SecondsLimit(SecondsRule rule) { return rule == SecondsRule::kMilliseconds ? 1000.0 : 60.0; }

// The number that the text of `seconds` with six decimals reads as. Where the product below, which may be off by a
// quarter, does not decide how to round, the text itself does.
double AsItsText(double seconds) {
  constexpr double kMicrosecondsExact = 4.0e9;
  if (seconds >= 0 && seconds < kMicrosecondsExact) {
    const double microseconds = seconds * 1e6;
    const double whole = std::floor(microseconds);
    const double rest = microseconds - whole;
    if (rest < 0.3) return whole / 1e6;
    if (rest > 0.7) return (whole + 1.0) / 1e6;
  }
  return PrefixDouble(NumberText(seconds, kTimeDecimals));
}

}  // namespace

TimeTextConverter::TimeTextConverter(const CString& layout_name) {
  for (const TimeLayout& layout : kTimeLayouts) {
    if (layout_name.CompareNoCase(layout.name) == 0) layout_ = &layout;
  }
}

double TimeTextConverter::Seconds(std::string_view text, const char* readable_end) {
  const double seconds = UnroundedSeconds(text, readable_end);
  return std::isfinite(seconds) && seconds != kInvalidDouble ? AsItsText(seconds) : kInvalidDouble;
}

double TimeTextConverter::UnroundedSeconds(std::string_view text, const char* readable_end) {
  flaw_ = TimeFlaw::kNone;
  if (layout_ == nullptr) {
    const CellNumber<double> number = CellDouble(text, readable_end);
    if (number.value > kLatest_s) flaw_ = TimeFlaw::kTooLate;
    if (!number.is_whole) flaw_ = TimeFlaw::kRest;
    return number.value >= kFirstDay_s ? number.value : kInvalidDouble;
  }
  if (!head_.text.IsEmpty() && text.starts_with(head_.text)) {
    const std::string_view rest = text.substr(head_.text.view().size());
    const CellNumber<double> number = CellDouble(rest, readable_end);
    if (number.is_whole && rest.find('-') == std::string_view::npos) {
      if (number.value >= SecondsLimit(layout_->seconds)) [[unlikely]]
        flaw_ = TimeFlaw::kRange;
      return head_.midnight_s + (head_.second_of_day + SecondsBehind(number.value, layout_->seconds));
    }
  }
  TimeMarks marks;
  auto& [dashes, colons, colon_count] = marks;
  const auto size = static_cast<std::ptrdiff_t>(text.size());
  std::ptrdiff_t at = 0;
  for (; kHasWords && size - at >= std::ptrdiff_t{kWordBytes}; at += kWordBytes) {
    const std::uint64_t word = WordAt(text.data() + at);
    const std::uint64_t equal_colon = EqualBytes(word, ':' * kEach);
    dashes.Add(EqualBytes(word, '-' * kEach), at);
    colons.Add(equal_colon, at);
    colon_count += std::popcount(equal_colon);
  }
  for (; at < size; ++at) {
    const char c = text[static_cast<std::size_t>(at)];
    if (c == '-') dashes.Add(at, at);
    if (c != ':') continue;
    colons.Add(at, at);
    ++colon_count;
  }
  if (!colons.IsComplete()) return kInvalidDouble;
  return SecondsByLayout(text, marks);
}

double TimeTextConverter::SecondsByLayout(std::string_view text, const TimeMarks& marks) {
  const auto& [dashes, colons, colon_count] = marks;
  const bool has_date = layout_->date != DateOrder::kNone;
  double midnight_s = 0;
  if (has_date) {
    if (!dashes.IsComplete()) return kInvalidDouble;
    const Date date = DateIn(text, dashes, *layout_);
    if (!date.IsValid()) return kInvalidDouble;
    midnight_s = LocalMidnight(date.year, date.month, date.day);
    if (date.day > 28 && !IsValidDay({date.year, date.month, date.day})) flaw_ = TimeFlaw::kDate;
  }
  const SecondsRule rule = layout_->seconds;
  const Clock clock = ClockIn(text, colons, rule);
  const LastNumber behind = LastNumberIn(text, dashes, colons, *layout_);
  const bool year_ends = !has_date || layout_->date == DateOrder::kYearMonthDay || dashes.last < colons.last ||
                         EndsWithYear(text, dashes, *layout_);
  if (!behind.is_whole || !year_ends) flaw_ = TimeFlaw::kRest;
  if (!clock.IsInRange() || !(behind.number >= 0 && behind.number < SecondsLimit(rule))) flaw_ = TimeFlaw::kRange;
  if (colon_count != (rule == SecondsRule::kMilliseconds ? 3 : 2)) flaw_ = TimeFlaw::kColons;
  const double second_of_day = clock.SecondOfDay();
  // Where all that was read before the rest stands in front of the last colon, and means what it says.
  if (flaw_ == TimeFlaw::kNone && rule != SecondsRule::kTwoDigits && colons.first + 2 <= colons.last &&
      dashes.last + 2 <= colons.last)
    head_ = {CString(Mid(text, 0, colons.last + 1)), midnight_s, second_of_day};
  return midnight_s + (second_of_day + SecondsBehind(behind.number, rule));
}

double TimeTextConverter::LocalMidnight(int year, int month, int day) {
  const std::int32_t key = (year * 16 + month) * 32 + day;
  if (key == newest_day_) return newest_midnight_s_;
  const auto [midnight, is_new] = midnights_s_.try_emplace(key);
  if (is_new) midnight->second = CDTTime(year, month, day, 0.0).GetDblSecond();
  newest_day_ = key;
  return newest_midnight_s_ = midnight->second;
}

void TimeTextConverter::ConvertTimeText(CString& text) {
  const double seconds = Seconds(text.view());
  text = seconds == kInvalidDouble ? CString("-255") : CString(NumberText(seconds, kTimeDecimals));
}

}  // namespace loom
