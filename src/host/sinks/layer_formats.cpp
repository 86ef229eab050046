#include <algorithm>

#include "host/sinks/gdal_module.h"
#include "host/sinks/geopackage/geopackage_sink.h"
#include "host/sinks/layer_sink.h"
#include "host/sinks/layer_time.h"
#include "host/sinks/text_layers/geojson_sink.h"
#include "host/sinks/text_layers/gpx_sink.h"
#include "host/sinks/text_layers/kml_sink.h"
#include "platform/encoding.h"

namespace loom {
namespace {

constexpr std::size_t kAnyNumber = SIZE_MAX;
// Degrees to which MapInfo files round positions.
constexpr double kMapInfoStep = 1e-6;

// Limits: SQLite's 2,000 columns with row id and geometry; dBase's 255; MapInfo's 250.
// clang-format off
const LayerFormat kFormats[] = {
    // extension, name, many layers, most columns, values, needs positions, needs facts, styles beside, step, companions, maker
    {"gpkg",    "GeoPackage",       true,  1998,       true,  false, false, false, 0, {"gpkg-shm"}, &MakeGeopackageSink},
    {"fgb",     "FlatGeobuf",       false, 10000,      true,  true,  false, true,  0, {"qml"}, &MakeFlatGeobufSink},
    {"geojson", "GeoJSON",          false, kAnyNumber, true,  false, false, true,  0, {"qml"}, &MakeGeojsonSink},
    {"kml",     "KML",              true,  kAnyNumber, false, true,  false, false, 0, {}, &MakeKmlSink},
    {"kmz",     "KMZ",              true,  kAnyNumber, false, true,  false, false, 0, {}, &MakeKmzSink},
    {"gpx",     "GPX",              true,  kAnyNumber, false, true,  false, false, 0, {}, &MakeGpxSink},
    {"tab",     "MapInfo TAB",      false, 250,        true,  false, true,  true,  kMapInfoStep,
     {"dat", "map", "id", "ind", "fields.csv", "qml"}, &MakeTabSink},
    {"mif",     "MapInfo MIF",      false, 250,        true,  false, true,  true,  kMapInfoStep,
     {"mid", "fields.csv", "qml"}, &MakeMifSink},
    {"shp",     "Shapefile",        false, 255,        true,  false, true,  true,  0,
     {"shx", "dbf", "prj", "cpg", "qix", "sbn", "sbx", "fields.csv", "qml"}, &MakeShapefileSink},
};
// clang-format on

}  // namespace

const LayerFormat* FindLayerFormat(const CString& extension) {
  const auto found = std::ranges::find_if(
      kFormats, [&](const LayerFormat& format) { return extension.CompareNoCase(format.extension) == 0; });
  return found != std::end(kFormats) ? found : nullptr;
}

std::string LayerFormatNames() {
  std::string names;
  for (const LayerFormat& format : kFormats) names += (names.empty() ? "" : ", ") + std::string(format.extension);
  return names;
}

LayerRow WithUtcTexts(std::span<const LayerColumn> columns, LayerRow row) {
  for (std::size_t at = 0; at < row.values.size(); ++at) {
    const auto* const time = std::get_if<double>(&row.values[at]);
    if (columns[at].type != ColumnType::kTime || time == nullptr) continue;
    char text[kUtcTextBytes + 8];
    row.values[at] = std::string(text, PutUtc(*time, text));
  }
  return row;
}

}  // namespace loom
