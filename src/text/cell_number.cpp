#include "text/cell_number.h"

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

}  // namespace loom::cell
