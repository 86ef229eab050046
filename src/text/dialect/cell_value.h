#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/characters.h"

namespace loom::dialect {

std::string Lower(std::string_view text);  // Latin letters only

// Words that stand for nothing where the other cells of a column are numbers or times.
bool IsNullWord(std::string_view cell);

// How a number is written.
struct NumberForm {
  bool is_integer = false;
  bool has_comma = false;      // as decimal mark
  std::size_t decimals = 0;    // digits behind the mark
  std::string_view unit = {};  // known ones only
};

// A number with what follows it.
struct NumberCell : NumberForm {
  double value = 0;
};

// Nothing where the whole cell is no number, with an optional unit. A decimal comma is accepted when `decimal` says so.
std::optional<NumberForm> FormOfNumber(std::string_view cell, char decimal);
std::optional<NumberCell> ParseNumber(std::string_view cell, char decimal);

// The unit in brackets or behind the name of a heading: "Height(m)", "Speed [km/h]", "rsrp_dbm"; empty: none.
std::string UnitOfName(std::string_view name);
// What `unit` is called in the tables: "kmh" -> "km/h"; empty for what is no unit.
std::string_view UnitName(std::string_view unit);

// Words of a name in lower case: "CurrentLatitude" -> current, latitude; "GPS_lat(deg)" -> gps, lat, deg.
std::vector<std::string> WordsOf(std::string_view name);

// The separators that a file could have, in the order of preference.
inline constexpr std::string_view kSeparatorChars = ",;\t|";

}  // namespace loom::dialect
