#include <cstdio>
#include <cstdlib>

#include "text/dialect/calendar_words.h"
#include "text/dialect/time_cell.h"

// What the shape of a time says: its days, and its layout in letters.
namespace loom::dialect {

bool TimeShape::IsAkin(const TimeShape& other) const {
  return date == other.date && is_year_first == other.is_year_first && has_short_year == other.has_short_year &&
         date_mark == other.date_mark && clock == other.clock && clock_mark == other.clock_mark &&
         clock_first == other.clock_first && joint == other.joint && has_half == other.has_half &&
         has_year_last == other.has_year_last && has_brackets == other.has_brackets;
}

std::string OffsetText(std::int32_t offset_s) {
  if (offset_s == 0) return "UTC";
  char text[16];
  const std::int32_t minutes = std::abs(offset_s) / 60;
  std::snprintf(text, sizeof(text), "%c%02d:%02d", offset_s < 0 ? '-' : '+', minutes / 60 % 100, minutes % 60);
  return text;
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

namespace {

std::string DateLayout(const TimeShape& shape, DateOrder order) {
  const std::string year = shape.has_short_year ? "yy" : "yyyy";
  const std::string month = shape.is_padded ? "MM" : "M";
  const std::string day = shape.is_padded ? "dd" : "d";
  const std::string mark(1, shape.date_mark);
  const auto join = [&](const std::string& a, const std::string& b, const std::string& c) {
    if (shape.date_mark == kChineseDateMark) return a + "年" + b + "月" + c + "日";
    return a + mark + b + mark + c;
  };
  switch (shape.date) {
    case DateForm::kCompact8:
      return "yyyyMMdd";
    case DateForm::kDayMonthName:
      return "dd" + mark + "MMM" + mark + year;
    case DateForm::kMonthNameDay:
      return std::string("MMM dd") + (shape.has_year_last ? "" : (mark == "," ? ", " : " ") + year);
    case DateForm::kNumbers:
      return order == DateOrder::kYmd   ? join(year, month, day)
             : order == DateOrder::kDmy ? join(day, month, year)
                                        : join(month, day, year);
    default:
      return {};
  }
}

std::string ClockLayout(const TimeShape& shape) {
  std::string clock;
  if (shape.clock == ClockForm::kCompact) clock = "HHmmss";
  if (shape.clock == ClockForm::kMarks && shape.clock_mark == kChineseClockMark) {
    clock = "HH时mm分ss秒";
  } else if (shape.clock == ClockForm::kMarks) {
    const std::string mark(1, shape.clock_mark);
    clock = std::string(shape.has_half ? "h" : "HH") + mark + "mm" + (shape.has_seconds ? mark + "ss" : "");
  }
  if (shape.fraction_mark != 0) clock += std::string(1, shape.fraction_mark) + "SSS";
  return clock + (shape.has_half ? " a" : "");
}

}  // namespace

std::string LayoutText(const TimeShape& shape, DateOrder order) {
  const std::string date = (shape.has_weekday ? "EEE " : "") + DateLayout(shape, order);
  const std::string clock = ClockLayout(shape);
  std::string joint;
  for (const char c : shape.joint) joint += c == 'T' ? std::string("'T'") : std::string(1, c);
  std::string layout = shape.clock_first ? clock + joint + date : date + joint + clock;
  if (shape.zone != ZoneForm::kNone)
    layout += std::string(shape.zone_has_blank || shape.has_year_last ? " " : "") +
              (shape.zone == ZoneForm::kWord ? "z" : "XXX");
  if (shape.has_year_last) layout += " yyyy";
  return shape.has_brackets ? "[" + layout + "]" : layout;
}

}  // namespace loom::dialect
