#include "host/sinks/gdal/gdal_rules.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "host/sinks/layer_names.h"
#include "platform/encoding.h"
#include "platform/error.h"

namespace loom {
namespace {

constexpr std::size_t kMostFieldBytes = 254;
constexpr int kMostNumberWidth = 24;
constexpr int kMostWholeWidth = 15;  // of a number with decimals: a rare huge one does not cost the others theirs
constexpr int kTimeWidth = 23;
constexpr std::int64_t kShapeBytes = 28;
constexpr std::int64_t kSectorBytes = 1100;  // at most, of a polygon of 61 points
constexpr std::int64_t kTwoGigabytes = (1ll << 31) - 1;

// By the order of GdalFormat.
const GdalRules kRules[] = {
    {.driver = "FlatGeobuf",
     .dataset_options = {},
     .layer_options = {},
     .most_name_bytes = 0,
     .most_text_bytes = 0,
     .most_row_bytes = 0,
     .most_part_bytes = 0,
     .has_widths = false,
     .has_nulls = true,
     .has_gbk_texts = false,
     .keeps_blanks = true,
     .keeps_line_breaks = true,
     .has_zone = true,
     .has_times = true,
     .first_id = -1},
    {.driver = "MapInfo File",
     .dataset_options = {"FORMAT=TAB"},
     .layer_options = {"ENCODING=CP936", "BOUNDS=-181,-91,181,91"},
     .most_name_bytes = 31,
     .most_text_bytes = kMostFieldBytes,
     .most_row_bytes = 32'767,
     .most_part_bytes = kTwoGigabytes,
     .has_widths = false,
     .has_nulls = false,
     .has_gbk_texts = true,
     .keeps_blanks = false,
     .keeps_line_breaks = true,
     .has_zone = false,
     .has_times = true,
     .first_id = 1},
    {.driver = "MapInfo File",
     .dataset_options = {"FORMAT=MIF"},
     .layer_options = {"ENCODING=CP936", "BOUNDS=-181,-91,181,91"},
     .most_name_bytes = 31,
     .most_text_bytes = kMostFieldBytes,
     .most_row_bytes = 0,
     .most_part_bytes = 0,
     .has_widths = false,
     .has_nulls = false,
     .has_gbk_texts = true,
     .keeps_blanks = true,
     .keeps_line_breaks = false,
     .has_zone = false,
     .has_times = true,
     .first_id = 1},
    {.driver = "ESRI Shapefile",
     .dataset_options = {},
     .layer_options = {"ENCODING=UTF-8"},
     .most_name_bytes = 10,
     .most_text_bytes = kMostFieldBytes,
     .most_row_bytes = 65'535,
     .most_part_bytes = kTwoGigabytes,
     .has_widths = true,
     .has_nulls = true,
     .has_gbk_texts = false,
     .keeps_blanks = false,
     .keeps_line_breaks = true,
     .has_zone = false,
     .has_times = false,
     .first_id = 0,
     .extent_command = "RECOMPUTE EXTENT ON "},
};

// Places before the point that both numbers need, with the sign.
int WholeWidth(double minimum, double maximum) {
  int width = 1;
  for (const double number : {minimum, maximum}) {
    if (std::isnan(number)) continue;
    char text[400];
    const auto end = std::to_chars(text, text + sizeof text, std::trunc(number), std::chars_format::fixed).ptr;
    // -0.5 has a sign that its whole part lacks.
    const int sign = number < 0 && text[0] != '-' ? 1 : 0;
    width = std::max(width, static_cast<int>(end - text) + sign);
  }
  return width;
}

void SetWidth(const LayerColumn& column, GdalField& field) {
  const int whole = std::max(WholeWidth(column.facts.minimum, column.facts.maximum),
                             column.has_range ? WholeWidth(column.minimum, column.maximum) : 1);
  if (column.type != ColumnType::kReal) {
    field.width = std::min(whole, kMostNumberWidth);
    return;
  }
  const int before_point = std::min(whole, kMostWholeWidth);
  field.decimals = std::clamp(column.facts.decimals, 1, kMostNumberWidth - 1 - before_point);
  field.width = before_point + 1 + field.decimals;
}

int BytesOf(const LayerColumn& column, const GdalField& field) {
  if (field.width > 0) return field.width;
  return column.type == ColumnType::kInt || column.type == ColumnType::kShort ? 4 : 8;
}

void RequireRoom(const LayerSchema& schema, const GdalRules& rules, std::int64_t row_bytes) {
  if (rules.most_row_bytes > 0 && row_bytes > static_cast<std::int64_t>(rules.most_row_bytes))
    throw Error(schema.name + ": rows of " + std::to_string(row_bytes) + " bytes, " + rules.driver + " holds " +
                std::to_string(rules.most_row_bytes) + "; choose elements by name");
  const std::int64_t shape_bytes = schema.shape == LayerShape::kPoint ? kShapeBytes : kSectorBytes;
  const std::int64_t part = schema.rows * std::max(row_bytes + 1, shape_bytes);
  if (rules.most_part_bytes > 0 && part > rules.most_part_bytes)
    throw Error(schema.name + ": " + std::to_string(part >> 20) + " MiB, a part of " + rules.driver +
                " holds 2 GB; choose elements by name, or a part of the drive");
}

std::string CsvText(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' ? "\"\"" : std::string(1, c);
  return quoted + '"';
}

bool IsPlain(const std::string& text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) >= 0x20 && (c & 0x80) == 0; });
}

// What is left of the text in so many bytes of the format's encoding.
void Cut(const GdalRules& rules, std::size_t bytes, std::string& text) {
  if (!rules.has_gbk_texts) {
    text = HeadOfUtf8(text, bytes);
    return;
  }
  text = HeadOfUtf8(text, 2 * bytes);  // more than that they never are
  while (Utf8ToGbkOr(text, '?').view().size() > bytes) text = HeadOfUtf8(text, text.size() - 1);
}

void TrimBlanks(std::string& text) {
  const std::size_t last = text.find_last_not_of(' ');
  text.resize(last == std::string::npos ? 0 : last + 1);
  text.erase(0, text.find_first_not_of(' '));
}

}  // namespace

const GdalRules& RulesOf(GdalFormat format) { return kRules[static_cast<std::size_t>(format)]; }

std::vector<GdalField> FieldsOf(const LayerSchema& schema, const GdalRules& rules) {
  std::vector<std::string> names;
  for (const LayerColumn& column : schema.columns) names.push_back(column.name);
  names = UniqueNames(names, {.most_bytes = rules.most_name_bytes, .ascii_only = rules.most_name_bytes > 0});
  std::vector<GdalField> fields;
  std::int64_t row_bytes = 0;
  for (std::size_t at = 0; at < names.size(); ++at) {
    const LayerColumn& column = schema.columns[at];
    GdalField& field = fields.emplace_back(GdalField{.name = names[at]});
    if (column.IsText() && rules.most_text_bytes > 0)
      field.width = static_cast<int>(std::clamp<std::size_t>(column.facts.text_bytes, 1, rules.most_text_bytes));
    if (column.type == ColumnType::kTime && !rules.has_times) field.width = kTimeWidth;
    if (!column.IsText() && column.type != ColumnType::kTime && rules.has_widths) SetWidth(column, field);
    row_bytes += BytesOf(column, field);
  }
  RequireRoom(schema, rules, row_bytes);
  return fields;
}

std::string FieldTable(const LayerSchema& schema, std::span<const GdalField> fields) {
  std::string table = "field,name,unit\n";
  for (std::size_t at = 0; at < fields.size(); ++at)
    table += fields[at].name + "," + CsvText(schema.columns[at].name) + "," + CsvText(schema.columns[at].unit) + "\n";
  return table;
}

TextChange FitText(const GdalRules& rules, const GdalField& field, std::string& text) {
  if (rules.most_text_bytes == 0) return TextChange::kNone;
  const bool has_blanks = text.front() == ' ' || text.back() == ' ';
  if (IsPlain(text) && text.size() <= static_cast<std::size_t>(field.width) && (rules.keeps_blanks || !has_blanks))
    return TextChange::kNone;
  const std::string before = text;
  if (rules.has_gbk_texts) text = GbkToUtf8(Utf8ToGbkOr(text, '?'));
  const bool has_other_characters = text != before;
  const std::string in_shape = text;
  if (!rules.keeps_line_breaks)
    std::ranges::replace_if(
        text, [](char c) { return c == '\n' || c == '\r'; }, ' ');
  Cut(rules, static_cast<std::size_t>(field.width), text);
  if (!rules.keeps_blanks) TrimBlanks(text);
  return has_other_characters ? TextChange::kCharacters : text != in_shape ? TextChange::kShape : TextChange::kNone;
}

bool FitNumber(const GdalRules& rules, const GdalField& field, double& number) {
  if (!rules.has_widths || field.width == 0) return false;
  const double power = std::pow(10.0, field.decimals);
  const double scaled = std::nearbyint(number * power) / power;
  const double rounded = std::isfinite(scaled) && field.decimals > 0 ? scaled : number;
  char text[400];
  const auto end =
      std::to_chars(text, text + sizeof text, rounded, std::chars_format::fixed, std::max(field.decimals, 0)).ptr;
  if (end - text > field.width) {
    number = kNoNumber;
    return true;
  }
  const bool has_lost = rounded != number;
  number = rounded;
  return has_lost;
}

}  // namespace loom
