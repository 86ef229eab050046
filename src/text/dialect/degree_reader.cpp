#include "text/dialect/degree_reader.h"

#include <charconv>
#include <cmath>

#include "text/dialect/cell_value.h"

namespace loom::dialect {

std::optional<double> DegreeReader::Read(const std::vector<std::string_view>& cells) {
  if (columns_[0] >= cells.size()) return std::nullopt;
  const std::string_view cell = Trimmed(cells[columns_[0]]);
  if (cell.empty()) return std::nullopt;
  double degrees = 0;
  const auto [end, error] = std::from_chars(cell.data(), cell.data() + cell.size(), degrees);
  const bool is_plain = error == std::errc() && end == cell.data() + cell.size() && !is_nmea_;
  if (!is_plain) {
    const auto parsed = ParseDegrees(cell, decimal_, is_nmea_);
    if (!parsed) return std::nullopt;
    degrees = parsed->degrees;
    form_ = parsed->form;
    has_letter_ = has_letter_ || parsed->letter != 0;
  }
  if (columns_.size() > 1 && columns_[1] < cells.size() && HemisphereSign(cells[columns_[1]]) < 0)
    degrees = -std::abs(degrees);
  if (!(std::abs(degrees) <= limit_)) return std::nullopt;
  return degrees;
}

}  // namespace loom::dialect
