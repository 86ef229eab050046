#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "text/dialect/text_dialect.h"

namespace loom::dialect {

// What the start of a text shows about its form. `sample` is UTF-8.
struct Shape {
  Form form;
  std::size_t width = 1;  // cells of a record
  std::vector<std::string> names;
  bool has_quoted_head = false;  // names stand in quotes
  double separator_confidence = 0;
  double header_confidence = 0;
  std::vector<Alternative> alternatives;
};

Shape FindShape(std::string_view sample, const Form& known, const Overrides& overrides);

}  // namespace loom::dialect
