#include <gdal.h>
#include <ogr_api.h>
#include <ogr_srs_api.h>

#include <cmath>

#include "components/note_kinds.h"
#include "host/sinks/gdal/gdal_check.h"
#include "host/sinks/gdal/gdal_errors.h"
#include "host/sinks/gdal/gdal_rules.h"
#include "host/sinks/gdal/gdal_time.h"
#include "host/sinks/gdal_module.h"
#include "platform/encoding.h"
#include "platform/error.h"
#include "platform/file.h"
#include "platform/number.h"
#include "platform/path.h"

namespace loom {
namespace {

// A list of options as libgdal takes it.
class OptionList {
 public:
  explicit OptionList(std::vector<const char*> options) : options_(std::move(options)) { options_.push_back(nullptr); }
  char** get() { return const_cast<char**>(options_.data()); }

 private:
  std::vector<const char*> options_;
};

struct OgrType {
  OGRFieldType type;
  OGRFieldSubType subtype;
};

OgrType TypeOf(ColumnType type, const GdalRules& rules) {
  switch (type) {
    case ColumnType::kBool:
      return {OFTInteger, rules.has_nulls && !rules.has_widths ? OFSTBoolean : OFSTNone};
    case ColumnType::kShort:
    case ColumnType::kInt:
      return {OFTInteger, OFSTNone};
    case ColumnType::kLong:
      return {rules.has_nulls ? OFTInteger64 : OFTReal, OFSTNone};
    case ColumnType::kReal:
      return {OFTReal, OFSTNone};
    case ColumnType::kTime:
      return {rules.has_times ? OFTDateTime : OFTString, OFSTNone};
    default:
      return {OFTString, OFSTNone};
  }
}

class GdalSink final : public ILayerSink {
 public:
  GdalSink(GdalFormat format, const SinkTarget& target)
      : rules_(RulesOf(format)), target_(target), time_(rules_.has_zone) {
    GDALAllRegister();
  }

  ~GdalSink() override { Release(); }

  void Begin(const LayerSchema& schema) override {
    schema_ = schema;
    fields_ = FieldsOf(schema, rules_);
    GdalErrors errors(target_.path);
    OpenDataset(errors);
    MakeLayer(errors);
    for (std::size_t at = 0; at < fields_.size(); ++at) MakeField(at, errors);
    feature_ = OGR_F_Create(OGR_L_GetLayerDefn(layer_));
    errors.ThrowIfFailed();
    if (rules_.most_name_bytes > 0) WriteFieldTable();
  }

  void Write(const RowBlock& block) override {
    GdalErrors errors(target_.path);
    for (std::size_t row = 0; row < block.rows; ++row) WriteRow(block, row, errors);
  }

  void End() override {
    if (rules_.first_id < 0 && rows_ == 0)
      throw Error(schema_.name + ": no row has a position, " + rules_.driver + " holds nothing else");
    if (*rules_.extent_command != '\0') MendExtent();
  }

  void Close() override {
    GdalErrors errors(target_.path);
    Release();
    errors.ThrowIfFailed();
  }

  LayerReadBack ReadBack(std::size_t, std::span<const std::int64_t> rows, std::span<const LayerRow> expected) override {
    GdalErrors errors(target_.path);
    return ReadGdalLayer({.native_path = target_.native_path, .rules = rules_, .columns = schema_.columns}, rows,
                         expected, errors);
  }

  std::string FieldName(std::size_t column) const override { return fields_[column].name; }

  LayerRow AsHeld(std::size_t, LayerRow row) const override {
    for (std::size_t at = 0; at < row.values.size(); ++at) {
      auto& value = row.values[at];
      if (auto* const text = std::get_if<std::string>(&value)) {
        FitText(rules_, fields_[at], *text);
        if (text->empty()) value = std::monostate();
      } else if (auto* const number = std::get_if<double>(&value)) {
        if (schema_.columns[at].type == ColumnType::kTime) {
          value = GdalTime(rules_.has_zone).Text(*number);
          continue;
        }
        FitNumber(rules_, fields_[at], *number);
        if (std::isnan(*number)) value = std::monostate();
      }
    }
    return row;
  }

 private:
  void MendExtent() {
    GdalErrors errors(target_.path);
    const std::string command = std::string(rules_.extent_command) + OGR_L_GetName(layer_);
    const OGRLayerH nothing = GDALDatasetExecuteSQL(dataset_, command.c_str(), nullptr, nullptr);
    if (nothing != nullptr) GDALDatasetReleaseResultSet(dataset_, nothing);
    errors.ThrowIfFailed();
  }

  void Release() {
    if (feature_ != nullptr) OGR_F_Destroy(feature_);
    feature_ = nullptr;
    if (dataset_ != nullptr) GDALClose(dataset_);
    dataset_ = nullptr;
  }

  void OpenDataset(GdalErrors& errors) {
    const GDALDriverH driver = GDALGetDriverByName(rules_.driver);
    if (driver == nullptr) throw Error(std::string("libgdal has no driver ") + rules_.driver);
    OptionList options(rules_.dataset_options);
    dataset_ = GDALCreate(driver, target_.native_path.c_str(), 0, 0, 0, GDT_Unknown, options.get());
    if (dataset_ == nullptr) errors.Throw("cannot be created");
  }

  void MakeLayer(GdalErrors& errors) {
    const OGRSpatialReferenceH reference = OSRNewSpatialReference(nullptr);
    OSRImportFromEPSG(reference, 4326);
    OSRSetAxisMappingStrategy(reference, OAMS_TRADITIONAL_GIS_ORDER);
    const bool is_point = schema_.shape == LayerShape::kPoint;
    const std::string name = rules_.most_name_bytes > 0 ? GbkToUtf8(TitleOf(target_.path)) : schema_.name;
    layer_ = GDALDatasetCreateLayer(dataset_, name.c_str(), reference, is_point ? wkbPoint : wkbPolygon,
                                    OptionList(rules_.layer_options).get());
    OSRRelease(reference);
    if (layer_ == nullptr) errors.Throw("the layer cannot be created");
  }

  void MakeField(std::size_t at, GdalErrors& errors) {
    const OgrType type = TypeOf(schema_.columns[at].type, rules_);
    const OGRFieldDefnH field = OGR_Fld_Create(fields_[at].name.c_str(), type.type);
    OGR_Fld_SetSubType(field, type.subtype);
    OGR_Fld_SetWidth(field, fields_[at].width);
    OGR_Fld_SetPrecision(field, fields_[at].decimals);
    const OGRErr result = OGR_L_CreateField(layer_, field, FALSE);
    OGR_Fld_Destroy(field);
    if (result != OGRERR_NONE) errors.Throw("the field " + fields_[at].name + " cannot be created");
  }

  void WriteFieldTable() const {
    const std::string title = target_.native_path.substr(0, target_.native_path.rfind('.'));
    WriteWholeFile(NativePathToGbk(title + ".fields.csv"), FieldTable(schema_, fields_));
  }

  void WriteRow(const RowBlock& block, std::size_t row, GdalErrors& errors) {
    row_ = block.first_row + static_cast<std::int64_t>(row);
    if (rules_.first_id < 0 && !HasPlace(block, row)) return;
    ++rows_;
    OGR_F_SetFID(feature_, OGRNullFID);
    SetGeometry(block, row);
    for (std::size_t at = 0; at < block.columns.size(); ++at) SetValue(block.columns[at], row, at);
    if (OGR_L_CreateFeature(layer_, feature_) != OGRERR_NONE) errors.Throw("row " + std::to_string(row_));
    errors.ThrowIfFailed();
  }

  // The driver of FlatGeobuf leaves out a row without a place, and says nothing.
  bool HasPlace(const RowBlock& block, std::size_t row) const {
    if (block.points[row].IsThere() || !block.rings[row].empty()) return true;
    CurrentNotes().Add("row without a position left out"_note, schema_.source, "row " + std::to_string(row_),
                       std::string(rules_.driver) + " holds places only");
    return false;
  }

  void SetGeometry(const RowBlock& block, std::size_t row) {
    if (block.points[row].IsThere()) {
      OGRGeometryH point = OGR_F_GetGeometryRef(feature_);
      if (point == nullptr) OGR_F_SetGeometryDirectly(feature_, point = OGR_G_CreateGeometry(wkbPoint));
      OGR_G_SetPoint_2D(point, 0, block.points[row].longitude, block.points[row].latitude);
    } else if (!block.rings[row].empty()) {
      const OGRGeometryH ring = OGR_G_CreateGeometry(wkbLinearRing);
      for (const GeoPoint& point : block.rings[row]) OGR_G_AddPoint_2D(ring, point.longitude, point.latitude);
      const OGRGeometryH polygon = OGR_G_CreateGeometry(wkbPolygon);
      OGR_G_AddGeometryDirectly(polygon, ring);
      OGR_F_SetGeometryDirectly(feature_, polygon);
    } else {
      OGR_F_SetGeometryDirectly(feature_, nullptr);
    }
  }

  void SetValue(const RowBlock::Column& column, std::size_t row, std::size_t at) {
    const int field = static_cast<int>(at);
    const ColumnType type = schema_.columns[at].type;
    if (type == ColumnType::kText) return SetText(column.texts[row], at);
    double number = column.numbers[row];
    if (type == ColumnType::kTime) return SetTime(number, field);
    if (!std::isnan(number) && rules_.has_widths) NoteLoss(number, at);
    if (std::isnan(number)) return SetMissing(type, field);
    if (type == ColumnType::kReal || (type == ColumnType::kLong && !rules_.has_nulls))
      OGR_F_SetFieldDouble(feature_, field, number);
    else if (type == ColumnType::kLong)
      OGR_F_SetFieldInteger64(feature_, field, static_cast<GIntBig>(number));
    else
      OGR_F_SetFieldInteger(feature_, field, static_cast<int>(number));
  }

  void SetMissing(ColumnType type, int field) {
    if (rules_.has_nulls)
      OGR_F_SetFieldNull(feature_, field);
    else if (type == ColumnType::kReal || type == ColumnType::kLong)
      OGR_F_SetFieldDouble(feature_, field, kMissingNumber);
    else
      OGR_F_SetFieldInteger(feature_, field, static_cast<int>(kMissingNumber));
  }

  void SetTime(double time_s, int field) {
    if (std::isnan(time_s))
      OGR_F_SetFieldNull(feature_, field);
    else if (!rules_.has_times)
      OGR_F_SetFieldString(feature_, field, time_.Text(time_s).c_str());
    else if (!time_.Set(feature_, field, time_s))
      OGR_F_SetFieldNull(feature_, field);
  }

  void SetText(std::string_view text, std::size_t at) {
    const int field = static_cast<int>(at);
    if (text.empty()) return OGR_F_SetFieldNull(feature_, field);
    text_.assign(text);
    const TextChange change = FitText(rules_, fields_[at], text_);
    if (change == TextChange::kCharacters)
      CurrentNotes().Add("character replaced in a layer"_note, schema_.source, Place(at), text);
    else if (change == TextChange::kShape)
      CurrentNotes().Add(
          "text changed in a layer"_note, schema_.source, Place(at),
          text.size() > text_.size() + 2 ? "cut to " + std::to_string(text_.size()) + " bytes" : "blanks");
    OGR_F_SetFieldString(feature_, field, text_.c_str());
  }

  void NoteLoss(double& number, std::size_t at) const {
    const double before = number;
    if (!FitNumber(rules_, fields_[at], number)) return;
    if (std::isnan(number))
      CurrentNotes().Add("number not in a layer"_note, schema_.source, Place(at), NumberText(before));
    else
      CurrentNotes().Add("number rounded in a layer"_note, schema_.source, Place(at), NumberText(before));
  }

  std::string Place(std::size_t at) const { return "row " + std::to_string(row_) + ", " + schema_.columns[at].name; }

  const GdalRules& rules_;
  SinkTarget target_;
  LayerSchema schema_;
  std::vector<GdalField> fields_;
  GDALDatasetH dataset_ = nullptr;
  OGRLayerH layer_ = nullptr;
  OGRFeatureH feature_ = nullptr;
  GdalTime time_;
  std::int64_t row_ = 0;   // the one that is written
  std::int64_t rows_ = 0;  // that were written
  std::string text_;
};

}  // namespace
}  // namespace loom

extern "C" __attribute__((visibility("default"))) loom::ILayerSink* QloomMakeGdalSink(loom::GdalFormat format,
                                                                                      const loom::SinkTarget& target) {
  return new loom::GdalSink(format, target);
}
