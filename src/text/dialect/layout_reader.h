#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace loom::dialect {

// What a text holds in the terms of its layout.
struct ReadTime {
  std::optional<std::int64_t> day;       // days since 1970
  double second_of_day = 0;              // of the instant as a whole without a day
  std::optional<std::int32_t> offset_s;  // zone east of Greenwich, where the text states one
};

// Reads texts of one layout, written in the letters of Unicode: yyyy yy MMMM MMM MM M dd d EEE HH H hh h mm m ss s SSS
// a
// XXX z, texts between ''; "epoch s", "epoch ms", "epoch us", "epoch ns", "days since 1899-12-30". Numbers need no
// leading zeros where a mark stands between them; seconds and fraction may be missing; months are English.
class LayoutReader {
 public:
  // Throws Error for a layout that is none.
  explicit LayoutReader(const std::string& layout, char decimal = '.');

  std::optional<ReadTime> Read(std::string_view text);
  bool HasDay() const { return has_day_; }
  bool IsInstant() const { return scale_ != 0; }  // a number that needs no zone, or only days

 private:
  enum class Field {
    kLiteral,
    kYear,
    kShortYear,
    kMonth,
    kMonthName,
    kDay,
    kWeekday,
    kHour,
    kMinute,
    kSecond,
    kFraction,
    kHalf,
    kZone
  };
  struct Token {
    Field field;
    std::uint8_t digits;      // as written
    bool is_exact;            // another number follows at once
    std::uint8_t run_digits;  // of the numbers that touch each other from here on; 0: no zero may be missing
    std::string text;         // of a literal
  };
  // How far a text was read, and what it has told.
  struct State {
    std::size_t at = 0;     // of the text
    std::size_t token = 0;  // the next one
    int year = 1970;
    int month = 1;
    int day = 1;
    int hour = 0;
    int minute = 0;
    double second = 0;
    int half = -1;  // 0 in the morning, 1 in the afternoon
    std::optional<std::int32_t> offset_s = {};
  };

  static std::optional<Field> FieldOf(char letter, std::size_t run);
  void AddLiteral(const std::string& text);
  void MarkRuns();
  std::optional<ReadTime> ReadNumber(std::string_view text) const;
  std::optional<ReadTime> ReadTokens(std::string_view text);
  bool ReadToken(std::string_view text, State& state) const;
  bool ReadLiteral(std::string_view text, State& state) const;
  bool ReadClockNumber(std::string_view text, State& state) const;
  bool ReadSecond(std::string_view text, State& state) const;
  bool ReadFraction(std::string_view text, State& state) const;
  bool ReadInteger(std::string_view text, State& state, std::size_t most, int& out) const;
  std::optional<ReadTime> Finish(const State& state);
  Field FieldAt(std::size_t token) const { return token < tokens_.size() ? tokens_[token].field : Field::kLiteral; }

  std::vector<Token> tokens_;
  double scale_ = 0;  // of a number: seconds of 1; 0: no number
  bool is_serial_ = false;
  char decimal_;
  bool has_day_ = false;
  int newest_key_ = -1;  // of the day that was looked up last
  std::optional<std::int64_t> newest_day_;
  // Texts that follow each other mostly differ behind the minute: what the newest one told up to there.
  bool may_resume_ = true;
  std::string newest_start_;
  State newest_state_;
};

}  // namespace loom::dialect
