#include "text/dialect/column_profile.h"

#include <algorithm>

namespace loom::dialect {
namespace {

constexpr std::size_t kNullWordsKept = 8;
constexpr std::uint64_t kOneInFifty = 50;    // so many cells may not fit
constexpr std::uint64_t kEnoughForOne = 25;  // cells of which one may not fit, whatever their share
constexpr std::size_t kTextPlacesKept = 3;

// A time has a digit in it, and a mark or a month.
bool MayBeTime(std::string_view text) {
  if (text.size() < 5 || text.size() > 48) return false;
  int digits = 0;
  for (const char c : text) digits += IsDigit(c);
  return digits >= 3 && digits * 4 >= static_cast<int>(text.size());
}

bool MayBeNumber(std::string_view text) {
  const char c = text.front();
  return IsDigit(c) || c == '-' || c == '+' || c == '.' || c == ',';
}

}  // namespace

void ColumnProfile::Add(std::string_view cell, char decimal, std::uint64_t line) {
  const std::string_view text = Trimmed(cell);
  if (text.empty() || (given_nulls_ != nullptr && IsGivenNull(text))) return AddNothing(text);
  if (MayBeNumber(text)) {
    if (const auto number = ParseNumber(text, decimal)) {
      AddValue(text, *number);
      return AddNumber(*number);
    }
  }
  AddOther(text, line);
}

void ColumnProfile::Count(std::string_view cell, char decimal, std::uint64_t line) {
  const std::string_view text = Trimmed(cell);
  if (text.empty() || (given_nulls_ != nullptr && IsGivenNull(text))) return AddNothing(text);
  if (MayBeNumber(text)) {
    if (const auto form = FormOfNumber(text, decimal)) return AddNumber(*form);
  }
  AddOther(text, line);
}

// No number.
void ColumnProfile::AddOther(std::string_view text, std::uint64_t line) {
  if (given_nulls_ == nullptr && IsNullWord(text)) return AddNothing(text);
  if (MayBeTime(text)) {
    if (const auto time = ParseTimeText(text)) return AddTime(*time);
  }
  ++texts_;
  if (text_places_.size() < kTextPlacesKept) text_places_.push_back({line, -1, std::string(text.substr(0, 80))});
}

bool ColumnProfile::IsGivenNull(std::string_view text) const {
  return std::ranges::find(*given_nulls_, text) != given_nulls_->end();
}

void ColumnProfile::AddNothing(std::string_view text) {
  ++(text.empty() ? empty_ : nulls_);
  if (text.empty() || null_words_.size() >= kNullWordsKept) return;
  if (std::ranges::find(null_words_, text) == null_words_.end()) null_words_.emplace_back(text);
}

void ColumnProfile::AddValue(std::string_view text, const NumberCell& number) {
  const double value = number.value;
  if (number.is_integer && number.unit.empty()) {
    const std::size_t digits = text.size() - (text.front() == '-' || text.front() == '+' ? 1 : 0);
    shortest_ = std::min(shortest_, digits);
    longest_ = std::max(longest_, digits);
  }
  if (Numbers() == 0) {
    minimum_ = maximum_ = first_ = value;
  } else {
    minimum_ = std::min(minimum_, value);
    maximum_ = std::max(maximum_, value);
    if (value < last_) never_falls_ = false;
  }
  last_ = value;
  if (number.is_integer) return;
  ++(number.has_comma ? commas_ : points_);
  if (number.decimals >= 3) ++long_fractions_;
  if (number.decimals != 3) ++other_than_thousands_;
}

void ColumnProfile::AddNumber(const NumberForm& number) {
  ++(number.is_integer ? integers_ : numbers_);
  if (number.unit.empty()) return;
  ++with_unit_;
  if (raw_unit_.empty()) {
    raw_unit_ = number.unit;
    unit_ = UnitName(number.unit);
  } else if (number.unit != raw_unit_ && UnitName(number.unit) != unit_) {
    ++other_units_;
  }
}

void ColumnProfile::AddTime(const TimeText& time) {
  ++times_;
  if (time.shape.zone == ZoneForm::kWord) has_word_zone_ = true;
  if (!shape_) {
    shape_ = time.shape;
  } else if (!shape_->IsAkin(time.shape)) {
    ++odd_times_;
    return;
  } else {
    // The layout says what any of them has.
    shape_->is_padded = shape_->is_padded && time.shape.is_padded;
    if (shape_->fraction_mark == 0) shape_->fraction_mark = time.shape.fraction_mark;
    shape_->has_seconds = shape_->has_seconds || time.shape.has_seconds;
    if (shape_->zone == ZoneForm::kNone) {
      shape_->zone = time.shape.zone;
      shape_->zone_has_blank = time.shape.zone_has_blank;
    }
  }
  if (time.shape.date != DateForm::kNone) order_mask_ &= time.OrderMask();
}

bool ColumnProfile::FitsMostly(std::uint64_t fitting) const {
  const std::uint64_t others = Filled() - std::min(Filled(), fitting);
  const bool is_only_one = others <= 1 && Filled() >= kEnoughForOne;
  return fitting > 0 && (is_only_one || others * kOneInFifty <= Filled());
}

Kind ColumnProfile::PlainKind() const {
  if (Filled() == 0) return Kind::kEmpty;
  if (times_ > odd_times_ && FitsMostly(times_)) return Kind::kTime;
  if (FitsMostly(Numbers()) && other_units_ * kOneInFifty <= Filled())
    return numbers_ > 0 || with_unit_ > 0 ? Kind::kNumber : Kind::kInteger;
  return Kind::kText;
}

}  // namespace loom::dialect
