#include "apps/text_files/dialect_json.h"

#include <cmath>

#include "apps/text_files/finding_words.h"

namespace loom {
namespace {

using dialect::Findings;

constexpr const char* kLineEnds[] = {"lf", "crlf", "cr"};

Json InstantJson(const std::optional<double>& seconds, bool has_date) {
  return seconds ? Json(InstantText(*seconds, has_date)) : Json();
}

Json TimeJson(const std::optional<dialect::TimeFinding>& time) {
  if (!time) return nullptr;
  return {{"columns", time->columns},
          {"layout", time->layout},
          {"zone", time->zone},
          {"ambiguous", time->ambiguous},
          {"first", InstantJson(time->first, time->has_date)},
          {"last", InstantJson(time->last, time->has_date)},
          {"earliest", InstantJson(time->earliest, time->has_date)},
          {"latest", InstantJson(time->latest, time->has_date)},
          {"valid", time->valid}};
}

Json PositionJson(const std::optional<dialect::PositionFinding>& position) {
  if (!position) return nullptr;
  return {{"columns", position->columns},
          {"form", position->form},
          {"min", position->min ? Json(*position->min) : Json()},
          {"max", position->max ? Json(*position->max) : Json()},
          {"valid", position->valid}};
}

std::string OneChar(char c) { return c == 0 ? std::string() : std::string(1, c); }

Json ColumnsJson(const Findings& found) {
  Json columns = Json::array();
  for (const dialect::ColumnFinding& column : found.columns) {
    columns.push_back({{"name", column.name},
                       {"unit", column.unit},
                       {"kind", dialect::KindName(column.kind)},
                       {"layout", column.layout},
                       {"zone", column.zone},
                       {"nulls", column.nulls},
                       {"empty", column.empty},
                       {"bad", column.bad},
                       {"confidence", std::round(column.confidence * 1000) / 1000}});
  }
  return columns;
}

Json FormJson(const dialect::Form& form) {
  return {{"encoding", form.encoding},
          {"bom", form.has_bom},
          {"line_end", kLineEnds[static_cast<std::size_t>(form.line_end)]},
          {"separator", form.separator},
          {"quote", OneChar(form.quote)},
          {"escape", OneChar(form.escape)},
          {"comment", form.comment},
          {"decimal", OneChar(form.decimal)},
          {"preamble_rows", form.preamble_rows},
          {"header_rows", form.header_rows},
          {"footer_rows", form.footer_rows}};
}

// Columns of a saved dialect are numbers, or names.
std::vector<std::string> ColumnTexts(const Json& columns) {
  std::vector<std::string> texts;
  for (const Json& column : columns) {
    texts.push_back(column.is_string() ? column.get<std::string>() : std::to_string(column.get<std::size_t>()));
  }
  return texts;
}

template <class Value>
void Take(const Json& json, const char* name, std::optional<Value>& value) {
  if (json.contains(name)) value = json.at(name).get<Value>();
}

}  // namespace

Json FindingsJson(const Findings& found) {
  Json json = FormJson(found.form);
  json["rows"] = found.rows;
  json["columns"] = ColumnsJson(found);
  json["time"] = TimeJson(found.time);
  json["latitude"] = PositionJson(found.latitude);
  json["longitude"] = PositionJson(found.longitude);
  json["confidence"] = std::round(found.confidence * 1000) / 1000;
  json["alternatives"] = Json::array();
  for (const dialect::Alternative& other : found.alternatives) {
    json["alternatives"].push_back(
        {{"separator", other.separator}, {"confidence", std::round(other.confidence * 1000) / 1000}});
  }
  return json;
}

Json DialectJson(const Findings& found) {
  Json json = FormJson(found.form);
  json.erase("bom");
  json.erase("line_end");
  const auto part = [](const auto& finding, const char* name) -> Json {
    if (!finding) return nullptr;
    Json out{{"columns", finding->columns}};
    if constexpr (requires { finding->layout; }) out["layout"] = finding->layout, out["zone"] = finding->zone;
    (void)name;
    return out;
  };
  json["time"] = part(found.time, "time");
  json["latitude"] = part(found.latitude, "latitude");
  json["longitude"] = part(found.longitude, "longitude");
  return json;
}

dialect::Overrides OverridesFromJson(const Json& json) {
  dialect::Overrides overrides;
  Take(json, "encoding", overrides.encoding);
  Take(json, "separator", overrides.separator);
  Take(json, "quote", overrides.quote);
  Take(json, "escape", overrides.escape);
  Take(json, "comment", overrides.comment);
  Take(json, "preamble_rows", overrides.preamble_rows);
  Take(json, "header_rows", overrides.header_rows);
  Take(json, "footer_rows", overrides.footer_rows);
  Take(json, "nulls", overrides.nulls);
  if (json.contains("decimal")) overrides.decimal = json.at("decimal").get<std::string>().at(0);
  const auto columns_of = [&](const char* name, std::optional<std::vector<std::string>>& columns) {
    if (!json.contains(name)) return;
    columns = json.at(name).is_null() ? std::vector<std::string>() : ColumnTexts(json.at(name).at("columns"));
  };
  columns_of("time", overrides.time_columns);
  columns_of("latitude", overrides.latitude_columns);
  columns_of("longitude", overrides.longitude_columns);
  if (overrides.time_columns && !overrides.time_columns->empty()) {
    Take(json.at("time"), "layout", overrides.time_layout);
    Take(json.at("time"), "zone", overrides.zone);
    if (overrides.zone && *overrides.zone == "varies") overrides.zone.reset();
  }
  return overrides;
}

}  // namespace loom
