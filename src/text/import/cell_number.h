#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <string_view>

#include "platform/characters.h"
#include "platform/number.h"
#include "text/import/byte_words.h"

// The numbers that cells start with, as PrefixInt and PrefixDouble read them, faster where the whole cell is a plain
// decimal number, which nearly all cells are. Bytes up to `readable_end`, at or behind the cell's end, may be looked
// at: where there are enough of them, digits are read eight at a time.
namespace loom {

template <class Number>
struct CellNumber {
  Number value{};
  bool is_whole = true;  // the cell is that number and nothing else
};

namespace cell {

inline constexpr auto kPowersOfTen =
    std::to_array<double>({1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                           1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22});
inline constexpr std::size_t kExactDigits = 15;  // that a double holds without rounding
// The first `count` bytes (1 to 8) of a word as digits: their values at its end, zeros before them.
inline std::uint64_t DigitsOf(std::uint64_t word, std::size_t count) {
  return (word ^ '0' * kEach) << 8 * (kWordBytes - count);
}
inline bool AreDigits(std::uint64_t digits) { return (((digits + 0x76 * kEach) | digits) & kHighBits) == 0; }

// The number of eight digits: neighbours are joined to pairs, fours and all.
inline std::uint32_t ValueOf(std::uint64_t digits) {
  constexpr std::uint64_t kOfFour = 0x000000FF000000FF;
  digits = digits * 10 + (digits >> 8);
  return static_cast<std::uint32_t>(((digits & kOfFour) * (100 + (std::uint64_t{1000000} << 32)) +
                                     ((digits >> 16) & kOfFour) * (1 + (std::uint64_t{10000} << 32))) >>
                                    32);
}

inline bool FitsWord(std::string_view number, const char* readable_end) {
  return kHasWords && number.size() - 1 < kWordBytes && readable_end - number.data() >= std::ptrdiff_t{kWordBytes};
}

// Whether any number is read from the cell.
bool StartsNumber(std::string_view cell);

CellNumber<std::int32_t> OddInt(std::string_view cell);
CellNumber<double> OddDouble(std::string_view cell);
// Whatever does not fit a word.
CellNumber<std::int32_t> LongInt(std::string_view cell);
CellNumber<double> LongDouble(std::string_view cell);

}  // namespace cell

inline CellNumber<std::int32_t> CellInt(std::string_view cell, const char* readable_end) {
  const bool minus = !cell.empty() && cell.front() == '-';
  const std::string_view number = cell.substr(minus ? 1 : 0);
  if (!cell::FitsWord(number, readable_end)) return cell::LongInt(cell);
  const std::uint64_t digits = cell::DigitsOf(WordAt(number.data()), number.size());
  if (!cell::AreDigits(digits)) return cell::OddInt(cell);
  const auto value = static_cast<std::int32_t>(cell::ValueOf(digits));
  return {minus ? -value : value};
}

// Mantissa and power of ten are exact doubles, so that their quotient is the double nearest to the text.
inline CellNumber<double> CellDouble(std::string_view cell, const char* readable_end) {
  const bool minus = !cell.empty() && cell.front() == '-';
  const std::string_view number = cell.substr(minus ? 1 : 0);
  // One word for the digits before the point and one for those behind it.
  if (!kHasWords || number.empty() || number.size() > cell::kExactDigits + 1 ||
      readable_end - number.data() < std::ptrdiff_t{kWordBytes}) {
    return cell::LongDouble(cell);
  }
  const std::uint64_t word = WordAt(number.data());
  const std::uint64_t points = EqualBytes(word, '.' * kEach);
  const std::size_t whole =
      std::min<std::size_t>(static_cast<std::size_t>(std::countr_zero(points)) / 8, number.size());
  if (whole == 0 || (whole == kWordBytes && number.size() > kWordBytes)) return cell::LongDouble(cell);
  std::uint64_t digits = cell::DigitsOf(word, whole);
  bool is_plain = cell::AreDigits(digits);
  double value = cell::ValueOf(digits);
  if (whole + 1 < number.size()) {
    const char* const fraction = number.data() + whole + 1;
    const std::size_t decimals = number.size() - whole - 1;
    if (decimals > kWordBytes || readable_end - fraction < std::ptrdiff_t{kWordBytes}) return cell::LongDouble(cell);
    digits = cell::DigitsOf(WordAt(fraction), decimals);
    is_plain &= cell::AreDigits(digits);
    value = (value * cell::kPowersOfTen[decimals] + cell::ValueOf(digits)) / cell::kPowersOfTen[decimals];
  }
  if (!is_plain) return cell::OddDouble(cell);
  return {minus ? -value : value};
}

// Cells with nothing known behind them.
inline CellNumber<std::int32_t> CellInt(std::string_view cell) { return CellInt(cell, cell.data() + cell.size()); }
inline CellNumber<double> CellDouble(std::string_view cell) { return CellDouble(cell, cell.data() + cell.size()); }

}  // namespace loom
