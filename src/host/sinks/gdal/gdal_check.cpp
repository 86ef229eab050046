#include "host/sinks/gdal/gdal_check.h"

#include <gdal.h>
#include <ogr_api.h>

#include <memory>

#include "host/sinks/gdal/gdal_time.h"

namespace loom {
namespace {

struct CloseDataset {
  void operator()(void* dataset) const { GDALClose(dataset); }
};
struct DestroyFeature {
  void operator()(void* feature) const { OGR_F_Destroy(static_cast<OGRFeatureH>(feature)); }
};
using Feature = std::unique_ptr<void, DestroyFeature>;

OGRFeatureH Raw(const Feature& feature) { return static_cast<OGRFeatureH>(feature.get()); }

GeoPoint FirstPoint(OGRGeometryH geometry) {
  if (geometry == nullptr || OGR_G_IsEmpty(geometry)) return {};
  if (OGR_G_GetGeometryCount(geometry) > 0) geometry = OGR_G_GetGeometryRef(geometry, 0);
  return {OGR_G_GetX(geometry, 0), OGR_G_GetY(geometry, 0)};
}

class GdalReader {
 public:
  GdalReader(const GdalFile& file, OGRLayerH layer) : file_(file), layer_(layer), time_(file.rules.has_zone) {}

  LayerRow Read(OGRFeatureH feature) const {
    LayerRow row{.point = FirstPoint(OGR_F_GetGeometryRef(feature)), .values = {}};
    for (std::size_t at = 0; at < file_.columns.size(); ++at) AddValue(feature, at, row);
    return row;
  }

  void ByNumber(std::span<const std::int64_t> rows, LayerReadBack& found) const {
    for (const std::int64_t row : rows) {
      const Feature feature(OGR_L_GetFeature(layer_, row - 1 + file_.rules.first_id));
      if (feature) found.samples.push_back(Read(Raw(feature)));
    }
  }

  // One at the place that is equal, or else the last one there.
  void ByPlace(std::span<const LayerRow> expected, LayerReadBack& found) const {
    for (const LayerRow& row : expected) {
      OGR_L_SetSpatialFilterRect(layer_, row.point.longitude, row.point.latitude, row.point.longitude,
                                 row.point.latitude);
      OGR_L_ResetReading(layer_);
      std::optional<LayerRow> there;
      while (const Feature feature{OGR_L_GetNextFeature(layer_)}) {
        there = Read(Raw(feature));
        if (there->point == row.point && there->values == row.values) break;
      }
      if (there) found.samples.push_back(*there);
    }
  }

 private:
  void AddValue(OGRFeatureH feature, std::size_t at, LayerRow& row) const {
    const int field = static_cast<int>(at);
    const ColumnType type = file_.columns[at].type;
    if (!OGR_F_IsFieldSetAndNotNull(feature, field)) {
      row.values.emplace_back();
    } else if (type == ColumnType::kTime && file_.rules.has_times) {
      row.values.emplace_back(time_.Get(feature, field));
    } else if (type == ColumnType::kTime || type == ColumnType::kText) {
      const std::string text = OGR_F_GetFieldAsString(feature, field);
      if (text.empty())
        row.values.emplace_back();
      else
        row.values.emplace_back(text);
    } else {
      const double number = OGR_F_GetFieldAsDouble(feature, field);
      if (!file_.rules.has_nulls && number == kMissingNumber)
        row.values.emplace_back();
      else
        row.values.emplace_back(number);
    }
  }

  const GdalFile& file_;
  OGRLayerH layer_;
  GdalTime time_;
};

// A file without places may tell zeros as its extent.
bool HasPlaceAtZero(OGRLayerH layer) {
  OGR_L_SetSpatialFilterRect(layer, -1, -1, 1, 1);
  OGR_L_ResetReading(layer);
  const Feature feature(OGR_L_GetNextFeature(layer));
  OGR_L_SetSpatialFilter(layer, nullptr);
  OGR_L_ResetReading(layer);
  return feature != nullptr;
}

GeoBox ExtentOf(OGRLayerH layer) {
  GeoBox box;
  OGREnvelope envelope;
  if (OGR_L_GetExtent(layer, &envelope, TRUE) != OGRERR_NONE) return box;
  const bool is_zero = envelope.MinX == 0 && envelope.MaxX == 0 && envelope.MinY == 0 && envelope.MaxY == 0;
  if (is_zero && !HasPlaceAtZero(layer)) return box;
  box.Add({envelope.MinX, envelope.MinY});
  box.Add({envelope.MaxX, envelope.MaxY});
  return box;
}

}  // namespace

LayerReadBack ReadGdalLayer(const GdalFile& file, std::span<const std::int64_t> rows,
                            std::span<const LayerRow> expected, GdalErrors& errors) {
  const char* const drivers[] = {file.rules.driver, nullptr};
  const std::unique_ptr<void, CloseDataset> dataset(
      GDALOpenEx(file.native_path.c_str(), GDAL_OF_VECTOR | GDAL_OF_READONLY, drivers, nullptr, nullptr));
  if (!dataset) errors.Throw("cannot be read back");
  const OGRLayerH layer = GDALDatasetGetLayer(dataset.get(), 0);
  if (layer == nullptr) errors.Throw("has no layer when it is read back");
  LayerReadBack found;
  found.rows = OGR_L_GetFeatureCount(layer, TRUE);
  found.extent = ExtentOf(layer);
  const GdalReader reader(file, layer);
  if (file.rules.first_id >= 0)
    reader.ByNumber(rows, found);
  else
    reader.ByPlace(expected, found);
  errors.ThrowIfFailed();
  return found;
}

}  // namespace loom
