#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "platform/number.h"

// The numbers that cells start with, as PrefixInt and PrefixDouble read them, faster where the whole cell is a plain
// decimal number, which nearly all cells are.
namespace loom {

template <class Number>
struct CellNumber {
  Number value{};
  bool is_whole = true;  // the cell is that number and nothing else
};

namespace cell {

inline bool IsDigit(char c) { return static_cast<unsigned char>(c - '0') < 10; }

inline constexpr auto kPowersOfTen =
    std::to_array<double>({1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                           1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22});
inline constexpr std::size_t kExactDigits = 15;  // that a double holds without rounding

// Whether any number is read from the cell.
bool StartsNumber(std::string_view cell);

CellNumber<std::int32_t> OddInt(std::string_view cell);
CellNumber<double> OddDouble(std::string_view cell);

}  // namespace cell

inline CellNumber<std::int32_t> CellInt(std::string_view cell) {
  constexpr std::size_t kFittingDigits = 9;
  const bool minus = !cell.empty() && cell.front() == '-';
  const std::string_view digits = cell.substr(minus ? 1 : 0);
  if (digits.empty() || digits.size() > kFittingDigits) return cell::OddInt(cell);
  std::int32_t value = 0;
  for (const char c : digits) {
    if (!cell::IsDigit(c)) return cell::OddInt(cell);
    value = value * 10 + (c - '0');
  }
  return {minus ? -value : value};
}

// Mantissa and power of ten are exact doubles, so that their quotient is the double nearest to the text.
inline CellNumber<double> CellDouble(std::string_view cell) {
  const bool minus = !cell.empty() && cell.front() == '-';
  const std::string_view number = cell.substr(minus ? 1 : 0);
  if (number.empty() || number.size() > cell::kExactDigits + 1 || !cell::IsDigit(number.front()))
    return cell::OddDouble(cell);
  std::int64_t mantissa = 0;
  std::size_t at = 0;
  for (; at < number.size() && cell::IsDigit(number[at]); ++at) mantissa = mantissa * 10 + (number[at] - '0');
  std::size_t decimals = 0;
  if (at < number.size()) {
    if (number[at] != '.') return cell::OddDouble(cell);
    decimals = number.size() - ++at;
    for (; at < number.size(); ++at) {
      if (!cell::IsDigit(number[at])) return cell::OddDouble(cell);
      mantissa = mantissa * 10 + (number[at] - '0');
    }
  }
  if (decimals == 0 && number.size() > cell::kExactDigits) return cell::OddDouble(cell);
  const double value = static_cast<double>(mantissa) / cell::kPowersOfTen[decimals];
  return {minus ? -value : value};
}

}  // namespace loom
