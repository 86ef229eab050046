#include "text/dialect/layout_reader.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "platform/calendar.h"
#include "platform/error.h"
#include "text/dialect/calendar_words.h"
#include "text/dialect/cell_value.h"
#include "text/dialect/time_cell.h"

namespace loom::dialect {
namespace {

constexpr std::size_t kMostFractionDigits = 12;
constexpr auto kTenTo = std::to_array<double>({1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12});

std::size_t DigitsAt(std::string_view text, std::size_t from) {
  std::size_t count = 0;
  while (from + count < text.size() && IsDigit(text[from + count])) ++count;
  return count;
}

// Seconds that the digits behind a mark stand for.
double FractionOf(std::string_view digits, std::size_t places) {
  std::uint64_t value = 0;
  for (const char c : digits) value = value * 10 + static_cast<std::uint64_t>(c - '0');
  return static_cast<double>(value) / kTenTo[places];
}

// The word of letters and points at `at`, without the points.
std::string TakeWord(std::string_view text, std::size_t& at) {
  std::string word;
  while (at < text.size() && (IsLetter(text[at]) || text[at] == '.')) {
    if (text[at] != '.') word += text[at];
    ++at;
  }
  return Lower(word);
}

void PassLetters(std::string_view text, std::size_t& at) {
  while (at < text.size() && (IsLetter(text[at]) || static_cast<unsigned char>(text[at]) >= 0x80)) ++at;
}

}  // namespace

std::optional<LayoutReader::Field> LayoutReader::FieldOf(char letter, std::size_t run) {
  switch (letter) {
    case 'y':
      return run == 2 ? Field::kShortYear : Field::kYear;
    case 'M':
      return run > 2 ? Field::kMonthName : Field::kMonth;
    case 'd':
      return Field::kDay;
    case 'E':
      return Field::kWeekday;
    case 'H':
    case 'h':
      return Field::kHour;
    case 'm':
      return Field::kMinute;
    case 's':
      return Field::kSecond;
    case 'S':
      return Field::kFraction;
    case 'a':
      return Field::kHalf;
    case 'X':
    case 'x':
    case 'z':
    case 'Z':
      return Field::kZone;
    default:
      return std::nullopt;
  }
}

LayoutReader::LayoutReader(const std::string& layout, char decimal) : decimal_(decimal) {
  if (layout == "epoch s") scale_ = 1;
  if (layout == "epoch ms") scale_ = 1e-3;
  if (layout == "epoch us") scale_ = 1e-6;
  if (layout == "epoch ns") scale_ = 1e-9;
  if (layout == "days since 1899-12-30") scale_ = static_cast<double>(kDay_s), is_serial_ = true;
  has_day_ = scale_ != 0;
  if (scale_ != 0) return;
  for (std::size_t at = 0; at < layout.size();) {
    const char c = layout[at];
    std::size_t run = 1;
    while (at + run < layout.size() && layout[at + run] == c) ++run;
    if (const std::optional<Field> field = FieldOf(c, run)) {
      tokens_.push_back({*field, static_cast<std::uint8_t>(std::min<std::size_t>(run, 9)), false, 0, {}});
      at += run;
    } else if (c == '\'') {
      const auto close = layout.find('\'', at + 1);
      if (close == std::string::npos) throw Error("the time layout \"" + layout + "\" has a ' without its end");
      AddLiteral(close == at + 1 ? "'" : layout.substr(at + 1, close - at - 1));
      at = close + 1;
    } else if (IsLetter(c)) {
      throw Error("the time layout \"" + layout + "\" has a letter without meaning: " + c);
    } else {
      AddLiteral(std::string(1, c));
      ++at;
    }
  }
  if (tokens_.empty()) throw Error("an empty time layout");
  MarkRuns();
}

void LayoutReader::AddLiteral(const std::string& text) {
  if (!tokens_.empty() && tokens_.back().field == Field::kLiteral)
    tokens_.back().text += text;
  else
    tokens_.push_back({Field::kLiteral, 0, false, 0, text});
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
    const bool goes_on = end < tokens_.size() && tokens_[end].field == Field::kFraction;
    if (goes_on && end == at + 1) tokens_[at].is_exact = true;
    if (end > at + 1 && !has_date) tokens_[at].run_digits = static_cast<std::uint8_t>(digits);
    may_resume_ = may_resume_ && tokens_[at].run_digits == 0;
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
    time.day = static_cast<std::int64_t>(days) - kSerialOf1970;
    time.second_of_day = std::round((number->value - days) * kDay_s * 1e3) / 1e3;
    return time;
  }
  const double seconds = scale_ < 1 ? number->value / (1.0 / scale_) : number->value;
  if (seconds < kDay_s || seconds > 1e11) return std::nullopt;
  time.second_of_day = seconds;
  time.offset_s = 0;
  return time;
}

std::optional<ReadTime> LayoutReader::ReadTokens(std::string_view text) {
  State state;
  const bool is_resumed = !newest_start_.empty() && text.starts_with(newest_start_);
  if (is_resumed) state = newest_state_;
  std::string padded;
  for (; state.token < tokens_.size(); ++state.token) {
    const Token& token = tokens_[state.token];
    const std::size_t found = token.run_digits > 0 ? DigitsAt(text, state.at) : 0;
    if (found > 0 && found < token.run_digits) {
      padded = std::string(text.substr(0, state.at)) + std::string(token.run_digits - found, '0') +
               std::string(text.substr(state.at));
      text = padded;
    }
    if (token.field == Field::kSecond && may_resume_ && !is_resumed) {
      newest_start_ = text.substr(0, state.at);
      newest_state_ = state;
    }
    if (!ReadToken(text, state)) return std::nullopt;
  }
  return state.at == text.size() ? Finish(state) : std::nullopt;
}

bool LayoutReader::ReadToken(std::string_view text, State& state) const {
  switch (tokens_[state.token].field) {
    case Field::kLiteral:
      return ReadLiteral(text, state);
    case Field::kSecond:
      return ReadSecond(text, state);
    case Field::kFraction:
      return ReadFraction(text, state);
    case Field::kMonthName: {
      const std::size_t from = state.at;
      PassLetters(text, state.at);
      const auto found =
          std::ranges::find(kMonths, Lower(text.substr(from, std::min<std::size_t>(state.at - from, 3))));
      state.month = static_cast<int>(found - kMonths.begin()) + 1;
      return found != kMonths.end();
    }
    case Field::kWeekday:
      PassLetters(text, state.at);
      if (state.at < text.size() && text[state.at] == ',') ++state.at;
      return true;
    case Field::kHalf: {
      const std::string word = TakeWord(text, state.at);
      state.half = word == "pm" ? 1 : 0;
      return word == "am" || word == "pm";
    }
    case Field::kZone: {
      const std::size_t end = std::min(text.find_first_of(" ]", state.at), text.size());
      state.offset_s = ParseZone(text.substr(state.at, end - state.at));
      state.at = end;
      return state.offset_s.has_value();
    }
    default:
      return ReadClockNumber(text, state);
  }
}

// A text between the others. In front of seconds, and of their fraction, it may be missing together with them.
bool LayoutReader::ReadLiteral(std::string_view text, State& state) const {
  const Field next = FieldAt(state.token + 1);
  bool fits = true;
  std::size_t to = state.at;
  for (const char c : tokens_[state.token].text) {
    if (c == ' ') {
      const std::size_t from = to;
      while (to < text.size() && text[to] == ' ') ++to;
      fits = fits && (to > from || next == Field::kZone || next == Field::kHalf);
    } else {
      fits = fits && to < text.size() && text[to] == c;
      ++to;
    }
  }
  if (fits) {
    state.at = to;
    return true;
  }
  if (next != Field::kSecond && next != Field::kFraction) return false;
  ++state.token;
  if (next == Field::kSecond && FieldAt(state.token + 2) == Field::kFraction) state.token += 2;
  return true;
}

bool LayoutReader::ReadInteger(std::string_view text, State& state, std::size_t most, int& out) const {
  const Token& token = tokens_[state.token];
  std::size_t count = std::min(DigitsAt(text, state.at), token.is_exact ? std::size_t{token.digits} : most);
  if (count == 0 || (token.is_exact && count != token.digits)) return false;
  out = 0;
  while (count-- > 0) out = out * 10 + (text[state.at++] - '0');
  return true;
}

bool LayoutReader::ReadClockNumber(std::string_view text, State& state) const {
  switch (tokens_[state.token].field) {
    case Field::kYear:
      return ReadInteger(text, state, 4, state.year);
    case Field::kShortYear:
      if (!ReadInteger(text, state, 2, state.year)) return false;
      state.year += state.year < kShortYearPivot ? 2000 : 1900;
      return true;
    case Field::kMonth:
      return ReadInteger(text, state, 2, state.month);
    case Field::kDay:
      return ReadInteger(text, state, 2, state.day);
    case Field::kHour:
      return ReadInteger(text, state, 2, state.hour);
    default:
      return ReadInteger(text, state, 2, state.minute);
  }
}

bool LayoutReader::ReadSecond(std::string_view text, State& state) const {
  int whole = 0;
  if (!ReadInteger(text, state, 2, whole)) return false;
  state.second = whole;
  const bool has_fraction_token =
      FieldAt(state.token + 1) == Field::kFraction || FieldAt(state.token + 2) == Field::kFraction;
  if (has_fraction_token || state.at + 1 >= text.size() || text[state.at] != '.') return true;
  const std::size_t count = DigitsAt(text, state.at + 1);
  if (count == 0) return true;
  if (count > kMostFractionDigits) return false;
  state.second += FractionOf(text.substr(state.at + 1, count), count);
  state.at += 1 + count;
  return true;
}

bool LayoutReader::ReadFraction(std::string_view text, State& state) const {
  const std::size_t count = DigitsAt(text, state.at);
  if (count == 0 || count > kMostFractionDigits) return false;
  const bool is_behind_colon = state.token > 0 && tokens_[state.token - 1].text == ":";
  state.second += FractionOf(text.substr(state.at, count), is_behind_colon ? 3 : count);
  state.at += count;
  return true;
}

std::optional<ReadTime> LayoutReader::Finish(const State& state) {
  int hour = state.hour;
  if (hour > 24 || state.minute > 59 || state.second >= 61 || state.month < 1 || state.month > 12 || state.day < 1 ||
      state.year < 1900 || state.year > 2100)
    return std::nullopt;
  if (state.half >= 0) {
    if (hour < 1 || hour > 12) return std::nullopt;
    hour = hour % 12 + 12 * state.half;
  }
  ReadTime time{
      .day = {}, .second_of_day = hour * 3600.0 + state.minute * 60.0 + state.second, .offset_s = state.offset_s};
  if (!has_day_) return time;
  const int key = (state.year * 16 + state.month) * 32 + state.day;
  if (key != newest_key_) {
    const CalendarDay day{state.year, state.month, state.day};
    newest_key_ = key;
    newest_day_.reset();
    if (IsOnCalendar(day)) newest_day_ = DaysSince1970(day);
  }
  if (!newest_day_) return std::nullopt;
  time.day = newest_day_;
  return time;
}

}  // namespace loom::dialect
