#include "text/time_text.h"

#include <bit>
#include <cmath>

#include "components/dt_time.h"
#include "components/field_value.h"
#include "text/byte_words.h"
#include "text/cell_number.h"

namespace loom {
namespace {

constexpr int kTimeDecimals = 6;
constexpr double kFirstDay_s = 86400.0;  // the smallest number that stands for a time without a layout

// First and last place of a character; a layout needs two of them.
struct Pair {
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

Date DateIn(std::string_view text, const Pair& dashes, const TimeLayout& layout) {
  const int middle = IntAt(text, dashes.first + 1, 2);
  if (layout.date == DateOrder::kYearMonthDay)
    return {IntAt(text, dashes.first - 4, 4), middle, IntAt(text, dashes.last + 1, 2)};
  const int leading = IntAt(text, dashes.first - 2, 2);
  const int year = IntAt(text, dashes.last + 1, layout.year_length);
  if (layout.date == DateOrder::kDayMonthYear) return {year, middle, leading};
  return {year, leading, middle};
}

// What stands in front of the last colon.
double SecondOfHead(std::string_view text, const Pair& colons, SecondsRule rule) {
  const double minutes = IntAt(text, colons.first - 2, 2) * 60.0 + IntAt(text, colons.first + 1, 2);
  return minutes * 60.0 + (rule == SecondsRule::kMilliseconds ? IntAt(text, colons.last - 2, 2) : 0);
}

double SecondsBehind(double number, SecondsRule rule) {
  return rule == SecondsRule::kMilliseconds ? number * 0.001 : number;
}

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
  if (layout_ == nullptr) {
    const double seconds = CellDouble(text, readable_end).value;
    return seconds >= kFirstDay_s ? seconds : kInvalidDouble;
  }
  if (!head_.text.IsEmpty() && text.starts_with(head_.text)) {
    const std::string_view rest = text.substr(head_.text.view().size());
    const CellNumber<double> number = CellDouble(rest, readable_end);
    if (number.is_whole && rest.find('-') == std::string_view::npos)
      return head_.midnight_s + (head_.second_of_day + SecondsBehind(number.value, layout_->seconds));
  }
  Pair dashes;
  Pair colons;
  const auto size = static_cast<std::ptrdiff_t>(text.size());
  std::ptrdiff_t at = 0;
  for (; kHasWords && size - at >= std::ptrdiff_t{kWordBytes}; at += kWordBytes) {
    const std::uint64_t word = WordAt(text.data() + at);
    dashes.Add(EqualBytes(word, '-' * kEach), at);
    colons.Add(EqualBytes(word, ':' * kEach), at);
  }
  for (; at < size; ++at) {
    const char c = text[static_cast<std::size_t>(at)];
    if (c == '-') dashes.Add(at, at);
    if (c == ':') colons.Add(at, at);
  }
  if (!colons.IsComplete()) return kInvalidDouble;
  double midnight_s = 0;
  if (layout_->date != DateOrder::kNone) {
    if (!dashes.IsComplete()) return kInvalidDouble;
    const Date date = DateIn(text, dashes, *layout_);
    if (!date.IsValid()) return kInvalidDouble;
    midnight_s = LocalMidnight(date.year, date.month, date.day);
  }
  const double second_of_day = SecondOfHead(text, colons, layout_->seconds);
  const std::string_view rest = Mid(text, colons.last + 1, layout_->seconds == SecondsRule::kTwoDigits ? 2 : -1);
  // Where all that was read before the rest stands in front of the last colon.
  if (layout_->seconds != SecondsRule::kTwoDigits && colons.first + 2 <= colons.last && dashes.last + 2 <= colons.last)
    head_ = {CString(Mid(text, 0, colons.last + 1)), midnight_s, second_of_day};
  return midnight_s + (second_of_day + SecondsBehind(CellDouble(rest).value, layout_->seconds));
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
