#pragma once

#include <optional>
#include <string>
#include <vector>

#include "text/dialect/column_profile.h"
#include "text/dialect/position_cell.h"
#include "text/dialect/text_dialect.h"

namespace loom::dialect {

struct TimeRole {
  std::vector<std::size_t> columns;
  std::vector<std::string> layouts;  // of all columns together; more than one: each fits so far, the likeliest first
  std::string zone;                  // of times that state none
  double confidence = 0;
};

struct PositionRole {
  std::vector<std::size_t> columns;
  bool is_nmea = false;
  double confidence = 0;
};

// What columns are for, by their names and their first cells.
struct Roles {
  std::optional<TimeRole> time;
  std::optional<PositionRole> latitude;
  std::optional<PositionRole> longitude;
  std::vector<std::string> layouts;             // of every column that holds a time, else empty
  std::vector<bool> is_latitude, is_longitude;  // by name and values, also where another one was taken
};

// Cells of the first rows, column by column.
using FirstCells = std::vector<std::vector<std::string>>;

Roles FindRoles(const std::vector<std::string>& names, const std::vector<ColumnProfile>& profiles,
                const FirstCells& cells, char decimal, const Overrides& overrides);

// Number of the column that is named or numbered so; throws Error where there is none.
std::size_t ColumnOf(const std::string& name_or_number, const std::vector<std::string>& names, std::size_t width);

}  // namespace loom::dialect
