#include "text/import/cell_number.h"

#include <limits>

namespace loom::cell {

bool StartsNumber(std::string_view cell) {
  const std::size_t sign = !cell.empty() && (cell.front() == '-' || cell.front() == '+') ? 1 : 0;
  const std::string_view number = cell.substr(sign);
  return !number.empty() && IsDigit(number[number[0] == '.' && number.size() > 1 ? 1 : 0]);
}

CellNumber<std::int32_t> OddInt(std::string_view cell) {
  return {PrefixInt(cell), ParseInt<std::int32_t>(cell).has_value()};
}

CellNumber<double> OddDouble(std::string_view cell) {
  return {PrefixDouble(cell), StartsNumber(cell) && ParseDouble(cell).has_value()};
}

CellNumber<std::int32_t> LongInt(std::string_view cell) {
  const bool minus = !cell.empty() && cell.front() == '-';
  const std::string_view number = cell.substr(minus ? 1 : 0);
  if (number.empty() || number.size() > 2 * kWordBytes) return OddInt(cell);
  std::int64_t value = 0;
  if (kHasWords && number.size() > kWordBytes) {
    const std::size_t leading = number.size() - kWordBytes;
    const std::uint64_t high = DigitsOf(WordAt(number.data()), leading);
    const std::uint64_t low = DigitsOf(WordAt(number.data() + leading), kWordBytes);
    if (!AreDigits(high) || !AreDigits(low)) return OddInt(cell);
    value = std::int64_t{ValueOf(high)} * 100'000'000 + ValueOf(low);
  } else {
    for (const char c : number) {
      if (!IsDigit(c)) return OddInt(cell);
      value = value * 10 + (c - '0');
    }
  }
  if (value > std::numeric_limits<std::int32_t>::max()) return OddInt(cell);
  return {static_cast<std::int32_t>(minus ? -value : value)};
}

CellNumber<double> LongDouble(std::string_view cell) {
  const bool minus = !cell.empty() && cell.front() == '-';
  const std::string_view number = cell.substr(minus ? 1 : 0);
  if (number.empty() || number.size() > kExactDigits + 1 || !IsDigit(number.front())) return OddDouble(cell);
  std::int64_t mantissa = 0;
  std::size_t at = 0;
  for (; at < number.size() && IsDigit(number[at]); ++at) mantissa = mantissa * 10 + (number[at] - '0');
  std::size_t decimals = 0;
  if (at < number.size()) {
    if (number[at] != '.') return OddDouble(cell);
    decimals = number.size() - ++at;
    for (; at < number.size(); ++at) {
      if (!IsDigit(number[at])) return OddDouble(cell);
      mantissa = mantissa * 10 + (number[at] - '0');
    }
  }
  if (decimals == 0 && number.size() > kExactDigits) return OddDouble(cell);
  const double value = static_cast<double>(mantissa) / kPowersOfTen[decimals];
  return {minus ? -value : value};
}

}  // namespace loom::cell
