#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "text/dialect/cell_value.h"
#include "text/dialect/text_dialect.h"
#include "text/dialect/time_cell.h"

namespace loom::dialect {

// What the cells of one column have been so far.
class ColumnProfile {
 public:
  ColumnProfile() = default;
  // `nulls`: the words that stand for nothing, and no others; null where they are to be guessed.
  explicit ColumnProfile(const std::vector<std::string>* nulls) : given_nulls_(nulls) {}

  void Add(std::string_view cell, char decimal, std::uint64_t line);
  // The same without the values of numbers: how they are written only.
  void Count(std::string_view cell, char decimal, std::uint64_t line);
  void AddMissing() { ++empty_; }
  void AddKnownTime() { ++times_; }       // a cell that the layout of its column reads
  void AddKnownDegrees() { ++numbers_; }  // likewise

  std::uint64_t Filled() const { return integers_ + numbers_ + times_ + texts_; }
  std::uint64_t Numbers() const { return integers_ + numbers_; }
  std::uint64_t Integers() const { return integers_; }
  std::uint64_t Texts() const { return texts_; }
  std::uint64_t Times() const { return times_; }
  std::uint64_t Commas() const { return commas_; }
  std::uint64_t Points() const { return points_; }
  std::uint64_t Empty() const { return empty_; }
  std::uint64_t Nulls() const { return nulls_; }
  std::uint64_t LongFractions() const { return long_fractions_; }  // numbers of three decimals or more
  // Numbers whose fraction has not just three digits, as groups of thousands have.
  std::uint64_t OtherThanThousands() const { return other_than_thousands_; }
  std::uint64_t OddTimes() const { return odd_times_; }  // not written as the first one
  std::uint64_t OtherUnits() const { return other_units_; }
  double Minimum() const { return minimum_; }
  double Maximum() const { return maximum_; }
  const std::string& Unit() const { return unit_; }
  std::uint64_t WithUnit() const { return with_unit_; }
  const std::optional<TimeShape>& Shape() const { return shape_; }
  int OrderMask() const { return order_mask_; }  // orders that make every text of the first shape a date
  bool HasWordZone() const { return has_word_zone_; }
  std::size_t ShortestDigits() const { return shortest_; }
  std::size_t LongestDigits() const { return longest_; }
  const std::vector<std::string>& NullWords() const { return null_words_; }
  const std::vector<Place>& TextPlaces() const { return text_places_; }
  std::pair<double, double> FirstAndLast() const { return {first_, last_}; }
  bool NeverFalls() const { return never_falls_; }

  // Kind by the cells alone; a few that do not fit change nothing.
  Kind PlainKind() const;
  bool FitsMostly(std::uint64_t fitting) const;

 private:
  void AddValue(std::string_view text, const NumberCell& number);
  void AddNumber(const NumberForm& number);
  void AddOther(std::string_view text, std::uint64_t line);
  void AddNothing(std::string_view text);
  bool IsGivenNull(std::string_view text) const;
  void AddTime(const TimeText& time);

  const std::vector<std::string>* given_nulls_ = nullptr;
  std::uint64_t other_than_thousands_ = 0;
  std::uint64_t empty_ = 0, nulls_ = 0, integers_ = 0, numbers_ = 0, times_ = 0, texts_ = 0;
  std::uint64_t commas_ = 0, points_ = 0, long_fractions_ = 0, odd_times_ = 0, with_unit_ = 0, other_units_ = 0;
  double minimum_ = 0, maximum_ = 0, first_ = 0, last_ = 0;
  bool never_falls_ = true;
  std::string unit_;
  std::string raw_unit_;
  std::optional<TimeShape> shape_;
  bool has_word_zone_ = false;
  int order_mask_ = 7;
  std::size_t shortest_ = SIZE_MAX, longest_ = 0;
  std::vector<std::string> null_words_;
  std::vector<Place> text_places_;
};

}  // namespace loom::dialect
