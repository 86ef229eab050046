#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "text/dialect/position_cell.h"

namespace loom::dialect {

// Degrees of one or two cells of a record: the value, and the letter of the hemisphere where it has a column.
class DegreeReader {
 public:
  DegreeReader(std::vector<std::size_t> columns, bool is_nmea, char decimal, double limit)
      : columns_(std::move(columns)), is_nmea_(is_nmea), decimal_(decimal), limit_(limit) {}

  std::optional<double> Read(const std::vector<std::string_view>& cells);
  const std::vector<std::size_t>& columns() const { return columns_; }
  // The newest cell is the number as it stands.
  bool IsPlain() const { return is_plain_; }
  const char* FormName() const { return DegreeFormName(form_, has_letter_); }

 private:
  std::vector<std::size_t> columns_;
  bool is_nmea_;
  char decimal_;
  double limit_;
  DegreeForm form_ = DegreeForm::kDecimal;  // of the newest cell
  bool has_letter_ = false;
  bool is_plain_ = false;
};

}  // namespace loom::dialect
