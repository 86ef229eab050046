#include "host/sinks/geopackage/geopackage_sink.h"

#include <cmath>
#include <cstring>
#include <optional>

#include "host/sinks/geopackage/geometry_blob.h"
#include "host/sinks/geopackage/geopackage_check.h"
#include "host/sinks/geopackage/geopackage_tables.h"
#include "host/sinks/geopackage/packed_index.h"
#include "host/sinks/layer_names.h"
#include "host/sinks/layer_style.h"
#include "host/sinks/layer_time.h"
#include "platform/number.h"

namespace loom {
namespace {

const char* TypeName(ColumnType type) {
  switch (type) {
    case ColumnType::kBool:
      return "BOOLEAN";
    case ColumnType::kShort:
      return "SMALLINT";
    case ColumnType::kInt:
      return "MEDIUMINT";
    case ColumnType::kLong:
      return "INTEGER";
    case ColumnType::kReal:
      return "REAL";
    case ColumnType::kTime:
      return "DATETIME";
    default:
      return "TEXT";
  }
}

// Tables that the format has itself begin like this, and a table named by a part of the tables is one too many.
std::string TableName(const std::string& layer) {
  for (const char* const own : {"gpkg_", "rtree_", "sqlite_", "layer_styles"})
    if (layer.size() >= std::strlen(own) && strncasecmp(layer.c_str(), own, std::strlen(own)) == 0) return "_" + layer;
  return layer;
}

std::string DescriptionOf(const LayerColumn& column) {
  std::string text = column.unit.empty() ? "" : "unit: " + column.unit;
  if (column.has_range)
    text += (text.empty() ? "" : "; ") + std::string("range: ") + NumberText(column.minimum) + " to " +
            NumberText(column.maximum);
  return text;
}

// The layer that is being written.
struct OpenLayer {
  LayerSchema schema;
  std::string table;
  std::vector<std::string> fields;
  std::optional<SqliteStatement> insert;
  PackedIndex index;
  GeoBox extent;
  std::int64_t rows = 0;
};

class GeopackageSink final : public ILayerSink {
 public:
  explicit GeopackageSink(const SinkTarget& target) : target_(target) {}

  void Begin(const LayerSchema& schema) override {
    if (!file_) {
      file_.emplace(target_.native_path, target_.path, SqliteFile::Use::kWrite);
      MakeGeopackageTables(*file_);
    }
    layer_.emplace();
    layer_->schema = schema;
    names_.push_back(TableName(schema.name));
    layer_->table = UniqueNames(names_, {}).back();
    NameFields();
    MakeTable();
    tables_.push_back({layer_->table, layer_->fields, schema.columns});
  }

  void Write(const RowBlock& block) override {
    for (std::size_t row = 0; row < block.rows; ++row) WriteRow(block, row);
  }

  void End() override {
    layer_->insert.reset();
    Describe();
    layer_->index.Write(*file_, IndexName(layer_->table));
    MakeTriggers(*file_, layer_->table);
    if (layer_->schema.style) AddStyle();
    layer_.reset();
  }

  void Close() override {
    file_->Execute("COMMIT");
    file_->Close();
    file_.reset();
  }

  LayerReadBack ReadBack(std::size_t layer, std::span<const std::int64_t> rows, std::span<const LayerRow>) override {
    SqliteFile file(target_.native_path, target_.path, SqliteFile::Use::kRead);
    return ReadGeopackageLayer(file, tables_[layer], rows);
  }

  LayerRow AsHeld(std::size_t layer, LayerRow row) const override {
    return WithUtcTexts(tables_[layer].columns, std::move(row));
  }

 private:
  void NameFields() {
    std::vector<std::string> names;
    for (const LayerColumn& column : layer_->schema.columns) names.push_back(column.name);
    const std::string_view taken[] = {kRowIdColumn, kGeometryColumn};
    layer_->fields = UniqueNames(names, {.taken = taken});
  }

  void MakeTable() {
    const std::vector<std::string>& fields = layer_->fields;
    std::string sql = "CREATE TABLE " + SqlName(layer_->table) + "(" + kRowIdColumn +
                      " INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL, " + kGeometryColumn + " " + ShapeName();
    std::string insert = "INSERT INTO " + SqlName(layer_->table) + " VALUES(?,?";
    for (std::size_t at = 0; at < fields.size(); ++at) {
      sql += ", " + SqlName(fields[at]) + " " + TypeName(layer_->schema.columns[at].type);
      insert += ",?";
    }
    file_->Execute(sql + ")");
    layer_->insert.emplace(file_->Prepare(insert + ")"));
  }

  const char* ShapeName() const { return layer_->schema.shape == LayerShape::kPoint ? "POINT" : "POLYGON"; }

  void WriteRow(const RowBlock& block, std::size_t row) {
    SqliteStatement& insert = *layer_->insert;
    const std::int64_t id = ++layer_->rows;
    insert.BindInt(1, id);
    BindGeometry(block, row, id);
    for (std::size_t at = 0; at < block.columns.size(); ++at) BindValue(block.columns[at], row, at);
    insert.Run();
  }

  void BindGeometry(const RowBlock& block, std::size_t row, std::int64_t id) {
    GeoBox box;
    ForEachPoint(block, row, [&](const GeoPoint& point) { box.Add(point); });
    if (box.IsEmpty()) return layer_->insert->BindNull(2);
    layer_->extent.Add({box.west, box.south});
    layer_->extent.Add({box.east, box.north});
    layer_->index.Add(static_cast<std::uint32_t>(id), box);
    layer_->insert->BindBlob(
        2, block.rings[row].empty() ? geometry_.Point(block.points[row]) : geometry_.Polygon(block.rings[row], box));
  }

  void BindValue(const RowBlock::Column& column, std::size_t row, std::size_t at) {
    SqliteStatement& insert = *layer_->insert;
    const int parameter = static_cast<int>(at) + 3;
    const ColumnType type = layer_->schema.columns[at].type;
    if (type == ColumnType::kText) {
      const std::string_view text = column.texts[row];
      return text.empty() ? insert.BindNull(parameter) : insert.BindText(parameter, text);
    }
    const double number = column.numbers[row];
    if (std::isnan(number)) return insert.BindNull(parameter);
    if (type == ColumnType::kReal) return insert.BindReal(parameter, number);
    if (type != ColumnType::kTime) return insert.BindInt(parameter, static_cast<std::int64_t>(number));
    const char* const end = PutUtc(number, time_);
    insert.BindText(parameter, {time_, end});
  }

  void Describe() {
    auto contents = file_->Prepare(
        "INSERT INTO gpkg_contents(table_name, data_type, identifier, description, min_x, min_y, max_x, max_y, srs_id) "
        "VALUES(?1, 'features', ?1, ?2, ?3, ?4, ?5, ?6, 4326)");
    contents.BindText(1, layer_->table);
    contents.BindText(2, layer_->schema.description);
    const GeoBox& box = layer_->extent;
    if (!box.IsEmpty()) {
      contents.BindReal(3, box.west);
      contents.BindReal(4, box.south);
      contents.BindReal(5, box.east);
      contents.BindReal(6, box.north);
    }
    contents.Run();
    const std::string table = SqlText(layer_->table);
    const std::string geometry = SqlText(kGeometryColumn);
    file_->Execute("INSERT INTO gpkg_geometry_columns VALUES(" + table + "," + geometry + ",'" + ShapeName() +
                   "',4326,0,0);"
                   "INSERT INTO gpkg_ogr_contents VALUES(" +
                   table + "," + std::to_string(layer_->rows) +
                   ");"
                   "INSERT INTO gpkg_extensions VALUES(" +
                   table + "," + geometry +
                   ",'gpkg_rtree_index','http://www.geopackage.org/spec120/#extension_rtree','write-only')");
    DescribeFields();
  }

  void DescribeFields() {
    auto insert = file_->Prepare(
        "INSERT INTO gpkg_data_columns(table_name, column_name, name, title, description) VALUES(?1, ?2, ?2, ?3, ?4)");
    for (std::size_t at = 0; at < layer_->fields.size(); ++at) {
      const std::string description = DescriptionOf(layer_->schema.columns[at]);
      insert.BindText(1, layer_->table);
      insert.BindText(2, layer_->fields[at]);
      insert.BindText(3, layer_->schema.columns[at].name);
      insert.BindText(4, description);
      insert.Run();
    }
  }

  void AddStyle() {
    const std::string& field = layer_->fields[layer_->schema.style->column];
    const std::string qml = QmlOf(layer_->schema, field);
    const std::string sld = SldOf(layer_->schema, field);
    auto insert = file_->Prepare(
        "INSERT INTO layer_styles(f_table_catalog, f_table_schema, f_table_name, f_geometry_column, styleName, "
        "styleQML, styleSLD, useAsDefault, description, owner) VALUES('', '', ?1, ?2, ?3, ?4, ?5, 1, ?3, '')");
    insert.BindText(1, layer_->table);
    insert.BindText(2, kGeometryColumn);
    insert.BindText(3, field);
    insert.BindText(4, qml);
    insert.BindText(5, sld);
    insert.Run();
  }

  SinkTarget target_;
  std::optional<SqliteFile> file_;
  std::optional<OpenLayer> layer_;
  std::vector<std::string> names_;  // of all layers, as they would be tables
  std::vector<GeopackageTable> tables_;
  GeometryBlob geometry_;
  char time_[kUtcTextBytes + 8];
};

}  // namespace

std::unique_ptr<ILayerSink> MakeGeopackageSink(const SinkTarget& target) {
  return std::make_unique<GeopackageSink>(target);
}

}  // namespace loom
