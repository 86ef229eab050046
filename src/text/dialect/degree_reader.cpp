#include "text/dialect/degree_reader.h"

#include <cmath>

#include "text/dialect/cell_value.h"

namespace loom::dialect {

std::optional<double> DegreeReader::Read(const std::vector<std::string_view>& cells) {
  if (columns_[0] >= cells.size()) return std::nullopt;
  const std::string_view cell = Trimmed(cells[columns_[0]]);
  if (cell.empty()) return std::nullopt;
  const std::optional<NumberCell> number = is_nmea_ ? std::nullopt : ParseNumber(cell, '.');
  double degrees = number ? number->value : 0;
  is_plain_ = number && number->unit.empty() && cell.front() != '+';
  if (!number || !number->unit.empty()) {
    const auto parsed = ParseDegrees(cell, decimal_, is_nmea_);
    if (!parsed) return std::nullopt;
    degrees = parsed->degrees;
    form_ = parsed->form;
    has_letter_ = has_letter_ || parsed->letter != 0;
  }
  if (columns_.size() > 1 && columns_[1] < cells.size() && HemisphereSign(cells[columns_[1]]) < 0)
    degrees = -std::abs(degrees), is_plain_ = false;
  if (!(std::abs(degrees) <= limit_)) return std::nullopt;
  return degrees;
}

}  // namespace loom::dialect
