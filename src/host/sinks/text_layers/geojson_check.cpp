#include "host/sinks/text_layers/geojson_check.h"

#include <nlohmann/json.hpp>

#include "host/sinks/text_layers/line_reader.h"
#include "host/sinks/text_layers/position_texts.h"

namespace loom {
namespace {

constexpr std::string_view kFeature = "{\"type\":\"Feature\",";
constexpr std::string_view kCoordinates = "\"coordinates\":";
constexpr std::string_view kProperties = "\"properties\":";

std::string_view CoordinatesOf(std::string_view line) {
  const std::string_view geometry = line.substr(0, line.find(kProperties));
  const std::size_t at = geometry.find(kCoordinates);
  return at != std::string_view::npos ? geometry.substr(at + kCoordinates.size()) : std::string_view();
}

LayerRow RowOf(std::string_view line, const std::vector<std::string>& fields) {
  LayerRow row;
  bool is_first = true;
  ForEachPosition(CoordinatesOf(line), [&](const GeoPoint& point) {
    if (std::exchange(is_first, false)) row.point = point;
  });
  const auto feature = nlohmann::json::parse(line);
  for (const std::string& field : fields) {
    const auto value = feature["properties"].find(field);
    if (value == feature["properties"].end() || value->is_null())
      row.values.emplace_back();
    else if (value->is_string())
      row.values.emplace_back(value->get<std::string>());
    else
      row.values.emplace_back(value->is_boolean() ? (value->get<bool>() ? 1.0 : 0.0) : value->get<double>());
  }
  return row;
}

}  // namespace

LayerReadBack ReadGeojson(const CString& path, const std::vector<std::string>& fields,
                          std::span<const std::int64_t> rows) {
  LayerReadBack found;
  std::size_t next = 0;
  ForEachLine(path, [&](std::string_view line) {
    if (!line.starts_with(kFeature)) return;
    if (line.ends_with(',')) line.remove_suffix(1);
    ++found.rows;
    ForEachPosition(CoordinatesOf(line), [&](const GeoPoint& point) { found.extent.Add(point); });
    if (next >= rows.size() || rows[next] != found.rows) return;
    found.samples.push_back(RowOf(line, fields));
    ++next;
  });
  return found;
}

}  // namespace loom
