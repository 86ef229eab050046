#include "host/sinks/geopackage/geopackage_check.h"

#include "host/sinks/geopackage/geometry_blob.h"
#include "host/sinks/geopackage/geopackage_tables.h"
#include "platform/error.h"

namespace loom {
namespace {

std::int64_t CountRows(SqliteFile& file, const std::string& table) {
  auto count = file.Prepare("SELECT count(*) FROM " + SqlName(table));
  count.Step();
  return count.Int(0);
}

GeoBox ExtentOf(SqliteFile& file, const std::string& table) {
  auto query = file.Prepare("SELECT min_x, min_y, max_x, max_y FROM gpkg_contents WHERE table_name = ?");
  query.BindText(1, table);
  GeoBox box;
  if (!query.Step() || query.IsNull(0)) return box;
  box.Add({query.Real(0), query.Real(1)});
  box.Add({query.Real(2), query.Real(3)});
  return box;
}

// The rows at two edges are found through the index.
void CheckIndex(SqliteFile& file, const std::string& table, const GeoBox& extent) {
  struct Edge {
    const char* condition;
    double at;
  };
  for (const auto& [condition, at] :
       {Edge{"minx <= ?1 AND maxx >= ?1", extent.west}, {"miny <= ?1 AND maxy >= ?1", extent.north}}) {
    auto query = file.Prepare("SELECT id FROM " + SqlName(IndexName(table)) + " WHERE " + condition + " LIMIT 1");
    query.BindReal(1, at);
    if (query.Step() == extent.IsEmpty()) throw Error("the index of " + table + " does not find its rows");
  }
}

LayerRow ReadRow(const SqliteStatement& query, const GeopackageTable& table) {
  LayerRow row{.point = GeometryBlob::FirstPoint(query.Text(0)), .values = {}};
  for (std::size_t at = 0; at < table.columns.size(); ++at) {
    const int column = static_cast<int>(at) + 1;
    if (query.IsNull(column))
      row.values.emplace_back();
    else if (query.IsText(column))
      row.values.emplace_back(std::string(query.Text(column)));
    else
      row.values.emplace_back(query.Real(column));
  }
  return row;
}

}  // namespace

LayerReadBack ReadGeopackageLayer(SqliteFile& file, const GeopackageTable& table, std::span<const std::int64_t> rows) {
  LayerReadBack found{.rows = CountRows(file, table.name), .extent = ExtentOf(file, table.name), .samples = {}};
  CheckIndex(file, table.name, found.extent);
  std::string sql = std::string("SELECT ") + kGeometryColumn;
  for (const std::string& field : table.fields) sql += ", " + SqlName(field);
  auto query = file.Prepare(sql + " FROM " + SqlName(table.name) + " WHERE " + kRowIdColumn + " = ?");
  for (const std::int64_t row : rows) {
    query.BindInt(1, row);
    while (query.Step()) found.samples.push_back(ReadRow(query, table));
  }
  return found;
}

}  // namespace loom
