#include "text/dialect/layout_reader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "platform/calendar.h"
#include "platform/error.h"
#include "text/dialect/calendar_words.h"
#include "text/dialect/cell_value.h"
#include "text/dialect/time_cell.h"

namespace loom::dialect {
LayoutReader::LayoutReader(const std::string& layout, char decimal) : decimal_(decimal) {
  if (layout == "epoch s") scale_ = 1;
  if (layout == "epoch ms") scale_ = 1e-3;
  if (layout == "epoch us") scale_ = 1e-6;
  if (layout == "epoch ns") scale_ = 1e-9;
  if (layout == "days since 1899-12-30") scale_ = kDay_s, is_serial_ = true;
  has_day_ = scale_ != 0;
  if (scale_ != 0) return;
  for (std::size_t at = 0; at < layout.size();) {
    const char c = layout[at];
    std::size_t run = 1;
    while (at + run < layout.size() && layout[at + run] == c) ++run;
    const auto add = [&](Field field) {
      tokens_.push_back({field, static_cast<std::uint8_t>(std::min<std::size_t>(run, 9)), false, 0, {}});
      at += run;
    };
    switch (c) {
      case 'y':
        add(run == 2 ? Field::kShortYear : Field::kYear);
        continue;
      case 'M':
        add(run > 2 ? Field::kMonthName : Field::kMonth);
        continue;
      case 'd':
        add(Field::kDay);
        continue;
      case 'E':
        add(Field::kWeekday);
        continue;
      case 'H':
        add(Field::kHour);
        continue;
      case 'h':
        add(Field::kHalfHour);
        continue;
      case 'm':
        add(Field::kMinute);
        continue;
      case 's':
        add(Field::kSecond);
        continue;
      case 'S':
        add(Field::kFraction);
        continue;
      case 'a':
        add(Field::kHalf);
        continue;
      case 'X':
      case 'x':
      case 'z':
      case 'Z':
        add(Field::kZone);
        continue;
      default:
        break;
    }
    std::string text(1, c);
    if (c == '\'') {
      const auto close = layout.find('\'', at + 1);
      if (close == std::string::npos) throw Error("the time layout \"" + layout + "\" has a ' without its end");
      text = close == at + 1 ? "'" : layout.substr(at + 1, close - at - 1);
      at = close;
    } else if (IsLetter(c)) {
      throw Error("the time layout \"" + layout + "\" has a letter without meaning: " + text);
    }
    ++at;
    if (!tokens_.empty() && tokens_.back().field == Field::kLiteral)
      tokens_.back().text += text;
    else
      tokens_.push_back({Field::kLiteral, 0, false, 0, text});
  }
  if (tokens_.empty()) throw Error("an empty time layout");
  MarkRuns();
}

// Numbers that touch each other have as many digits as written; a clock among them may lack its leading zeros.
void LayoutReader::MarkRuns() {
  const auto is_number = [](const Token& token) {
    return token.field != Field::kLiteral && token.field != Field::kMonthName && token.field != Field::kWeekday &&
           token.field != Field::kHalf && token.field != Field::kZone && token.field != Field::kFraction;
  };
  for (std::size_t at = 0; at < tokens_.size();) {
    std::size_t end = at;
    std::size_t digits = 0;
    bool has_date = false;
    for (; end < tokens_.size() && is_number(tokens_[end]); ++end) {
      digits += tokens_[end].digits;
      has_date = has_date || tokens_[end].field == Field::kDay;
    }
    has_day_ = has_day_ || has_date;
    for (std::size_t token = at; end > at + 1 && token < end; ++token) tokens_[token].is_exact = true;
    if (end > at + 1 && !has_date) tokens_[at].run_digits = static_cast<std::uint8_t>(digits);
    at = std::max(end, at + 1);
  }
}

std::optional<ReadTime> LayoutReader::Read(std::string_view text) {
  text = Trimmed(text);
  return scale_ != 0 ? ReadNumber(text) : ReadTokens(text);
}

std::optional<ReadTime> LayoutReader::ReadNumber(std::string_view text) const {
  const std::optional<NumberCell> number = ParseNumber(text, decimal_);
  if (!number || !number->unit.empty()) return std::nullopt;
  ReadTime time;
  if (is_serial_) {
    if (number->value < 1 || number->value > 100000) return std::nullopt;
    const double days = std::floor(number->value);
    time.day = static_cast<std::int64_t>(days - kSerialOf1970);
    time.second_of_day = std::round((number->value - days) * kDay_s * 1e3) / 1e3;
    return time;
  }
  const double seconds = scale_ < 1 ? number->value / (1.0 / scale_) : number->value;
  if (seconds < kDay_s || seconds > 1e11) return std::nullopt;
  time.second_of_day = seconds;
  time.offset_s = 0;
  return time;
}

std::int64_t LayoutReader::DayFor(int year, int month, int day) {
  const int key = (year * 16 + month) * 32 + day;
  if (key != newest_key_) {
    newest_day_ = DaysSince1970({year, month, day});
    newest_key_ = key;
  }
  return newest_day_;
}

std::optional<ReadTime> LayoutReader::ReadTokens(std::string_view text) {
  std::string padded;
  int year = 1970, month = 1, day = 1, hour = 0, minute = 0;
  double second = 0;
  int half = -1;
  ReadTime time;
  std::size_t at = 0;
  const auto digits_at = [&](std::size_t from) {
    std::size_t count = 0;
    while (from + count < text.size() && IsDigit(text[from + count])) ++count;
    return count;
  };
  for (std::size_t index = 0; index < tokens_.size(); ++index) {
    const Token& token = tokens_[index];
    if (token.run_digits > 0) {
      const std::size_t found = digits_at(at);
      if (found > 0 && found < token.run_digits) {
        padded =
            std::string(text.substr(0, at)) + std::string(token.run_digits - found, '0') + std::string(text.substr(at));
        text = padded;
      }
    }
    const auto number = [&](std::size_t most, int& out) {
      std::size_t count = std::min(digits_at(at), token.is_exact ? std::size_t{token.digits} : most);
      if (count == 0 || (token.is_exact && count != token.digits)) return false;
      out = 0;
      while (count-- > 0) out = out * 10 + (text[at++] - '0');
      return true;
    };
    switch (token.field) {
      case Field::kLiteral: {
        const bool is_before_seconds = index + 1 < tokens_.size() && tokens_[index + 1].field == Field::kSecond;
        const bool is_before_fraction = index + 1 < tokens_.size() && tokens_[index + 1].field == Field::kFraction;
        bool fits = true;
        std::size_t to = at;
        for (const char c : token.text) {
          if (c == ' ') {
            const std::size_t from = to;
            while (to < text.size() && text[to] == ' ') ++to;
            const Field next = index + 1 < tokens_.size() ? tokens_[index + 1].field : Field::kLiteral;
            fits = fits && (to > from || next == Field::kZone || next == Field::kHalf);
          } else {
            fits = fits && to < text.size() && text[to] == c;
            ++to;
          }
        }
        if (fits) {
          at = to;
        } else if (is_before_fraction) {
          ++index;
        } else if (is_before_seconds) {
          ++index;
          if (index + 2 < tokens_.size() && tokens_[index + 2].field == Field::kFraction) index += 2;
        } else {
          return std::nullopt;
        }
        break;
      }
      case Field::kYear:
        if (!number(4, year)) return std::nullopt;
        break;
      case Field::kShortYear:
        if (!number(2, year)) return std::nullopt;
        year += year < kShortYearPivot ? 2000 : 1900;
        break;
      case Field::kMonth:
        if (!number(2, month)) return std::nullopt;
        break;
      case Field::kDay:
        if (!number(2, day)) return std::nullopt;
        break;
      case Field::kHour:
      case Field::kHalfHour:
        if (!number(2, hour)) return std::nullopt;
        break;
      case Field::kMinute:
        if (!number(2, minute)) return std::nullopt;
        break;
      case Field::kSecond: {
        int whole = 0;
        if (!number(2, whole)) return std::nullopt;
        second = whole;
        const bool has_fraction_token = index + 2 < tokens_.size() && tokens_[index + 2].field == Field::kFraction;
        if (has_fraction_token || at + 1 >= text.size() || text[at] != '.' || !IsDigit(text[at + 1])) break;
        const std::size_t count = digits_at(at + 1);
        double fraction = 0;
        std::from_chars(text.data() + at, text.data() + at + 1 + count, fraction);
        second += fraction;
        at += 1 + count;
        break;
      }
      case Field::kFraction: {
        const std::size_t count = digits_at(at);
        if (count == 0 || count > 12) return std::nullopt;
        std::uint64_t value = 0;
        std::from_chars(text.data() + at, text.data() + at + count, value);
        const bool is_behind_colon = index > 0 && tokens_[index - 1].text == ":";
        second += static_cast<double>(value) / std::pow(10.0, is_behind_colon ? 3.0 : static_cast<double>(count));
        at += count;
        break;
      }
      case Field::kMonthName:
      case Field::kWeekday: {
        const std::size_t from = at;
        while (at < text.size() && (IsLetter(text[at]) || (static_cast<unsigned char>(text[at]) >= 0x80))) ++at;
        if (token.field == Field::kWeekday) {
          if (at < text.size() && text[at] == ',') ++at;
          break;
        }
        const std::string word = Lower(text.substr(from, std::min<std::size_t>(at - from, 3)));
        const auto found = std::ranges::find(kMonths, word);
        if (found == kMonths.end()) return std::nullopt;
        month = static_cast<int>(found - kMonths.begin()) + 1;
        break;
      }
      case Field::kHalf: {
        std::string word;
        while (at < text.size() && (IsLetter(text[at]) || text[at] == '.')) {
          if (text[at] != '.') word += text[at];
          ++at;
        }
        word = Lower(word);
        if (word != "am" && word != "pm") return std::nullopt;
        half = word == "pm" ? 1 : 0;
        break;
      }
      case Field::kZone: {
        const std::size_t end = std::min(text.find(' ', at), text.size());
        const std::optional<std::int32_t> offset = ParseZone(text.substr(at, end - at));
        if (!offset) return std::nullopt;
        time.offset_s = *offset;
        at = end;
        break;
      }
    }
  }
  if (at != text.size() || hour > 24 || minute > 59 || second >= 61 || month < 1 || month > 12 || day < 1 ||
      year < 1900 || year > 2100)
    return std::nullopt;
  if (half >= 0) {
    if (hour < 1 || hour > 12) return std::nullopt;
    hour = hour % 12 + 12 * half;
  }
  if (has_day_) {
    if (!IsOnCalendar({year, month, day})) return std::nullopt;
    time.day = DayFor(year, month, day);
  }
  time.second_of_day = hour * 3600.0 + minute * 60.0 + second;
  return time;
}

}  // namespace loom::dialect
