#pragma once

#include <optional>
#include <string_view>

namespace loom::dialect {

enum class DegreeForm { kDecimal, kDegreesMinutes, kDegreesMinutesSeconds, kNmea };

struct DegreeCell {
  DegreeForm form = DegreeForm::kDecimal;
  double degrees = 0;  // signed by the letter or sign that the cell holds
  char letter = 0;     // N, S, E or W where one stands in the cell
};

// One latitude or longitude, the whole cell: "51.31", "31.7N", "57 41 49.5 N", "1°14,04'". `is_nmea`: a plain number
// holds degrees and minutes without a mark, ddmm.mmmm.
std::optional<DegreeCell> ParseDegrees(std::string_view cell, char decimal, bool is_nmea);

// +1 or -1 for a cell that is a letter or word of a hemisphere; 0 for any other.
int HemisphereSign(std::string_view cell);

const char* DegreeFormName(DegreeForm form, bool has_letter);

}  // namespace loom::dialect
