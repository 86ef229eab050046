#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/cstring.h"
#include "text/dialect/text_dialect.h"

namespace loom::dialect {

// A column that becomes an information element.
struct ElementColumn {
  std::size_t column = 0;
  std::string element;
  bool is_number = false;
  bool is_whole = false;  // the element takes whole numbers only
  double factor = 1;      // from the unit of the column to that of the element
  double offset = 0;
};

struct ElementMapping {
  std::vector<ElementColumn> columns;
  std::vector<std::size_t> unmapped;
  std::string protocol;  // "GSM", "TD-SCDMA", "LTE"; empty where no element tells
};

// One line of config/text_columns.tsv: a name as WordsOf() cuts it, joined by '_'.
struct ElementRule {
  std::string element;
  std::string unit;      // of the element; empty: taken as it stands
  std::string protocol;  // empty: of any
};
using ElementRules = std::multimap<std::string, ElementRule, std::less<>>;

// Throws Error with the line.
ElementRules ParseElementRules(std::string_view table);
ElementRules LoadElementRules();  // from the configuration folder

// The columns that are no part of time and position. `given`: columns that a person has mapped, by number; an empty
// name leaves one out. Throws Error for an element that the catalogue lacks or that is given twice.
ElementMapping MapElements(const Findings& found, const ElementRules& rules,
                           const std::map<std::size_t, std::string>& given);

// Factor and offset from one unit to another; false where they do not belong together.
bool UnitConversion(std::string_view from, std::string_view to, double& factor, double& offset);

}  // namespace loom::dialect
