#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "host/sinks/gdal_module.h"

// What the formats that libgdal writes hold, and how we write within that.
namespace loom {

// What stands for a missing number where a format has no nulls.
inline constexpr double kMissingNumber = -255;

struct GdalRules {
  const char* driver;
  std::vector<const char*> dataset_options;
  std::vector<const char*> layer_options;
  std::size_t most_name_bytes;   // 0: any name
  std::size_t most_text_bytes;   // of a text; 0: any number
  std::size_t most_row_bytes;    // of a row's fields; 0: any number
  std::int64_t most_part_bytes;  // of a file; 0: any number
  bool has_widths;               // fields of numbers are decimal texts
  bool has_nulls;                // of numbers; otherwise what is missing is -255
  bool has_gbk_texts;            // otherwise UTF-8
  bool keeps_blanks;             // at the ends of texts
  bool keeps_line_breaks;
  bool has_zone;          // times are UTC, otherwise local
  bool has_times;         // otherwise they are texts
  std::int64_t first_id;  // of the first row; -1: rows are put in another order
  // Before the name of the layer: sets its extent anew, where one that begins with a row without a place counts 0, 0.
  const char* extent_command = "";
};

const GdalRules& RulesOf(GdalFormat format);

// A field as the format has it.
struct GdalField {
  std::string name;
  int width = 0;
  int decimals = 0;
};

// Throws Error when the fields are too many bytes for a row, or the rows for a file.
std::vector<GdalField> FieldsOf(const LayerSchema& schema, const GdalRules& rules);
// "field,name,unit" of each field, as a text with a line each.
std::string FieldTable(const LayerSchema& schema, std::span<const GdalField> fields);

enum class TextChange { kNone, kCharacters, kShape };
// A text as the format holds it, and what it lost.
TextChange FitText(const GdalRules& rules, const GdalField& field, std::string& text);
// A number likewise; NaN for one without room. True when it lost digits.
bool FitNumber(const GdalRules& rules, const GdalField& field, double& number);

}  // namespace loom
