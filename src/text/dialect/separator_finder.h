#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "text/dialect/text_dialect.h"

namespace loom::dialect {

// How well one way of cutting fits a text.
struct CutScore {
  std::string separator;
  char quote = 0;
  char escape = 0;
  bool trims_blanks = false;
  std::size_t width = 1;
  double score = 0;
  bool has_quoted = false;
};

// Every plausible way, the best one first. Separator, quote and comment that are given are taken as they are.
std::vector<CutScore> ScoreCuts(std::string_view sample, const Form& known, const Overrides& overrides);

}  // namespace loom::dialect
