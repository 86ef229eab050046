#pragma once

#include <string>

#include "host/sinks/geopackage/sqlite_file.h"

// What a GeoPackage holds beside the rows of its layers.
namespace loom {

inline constexpr const char* kGeometryColumn = "geom";
inline constexpr const char* kRowIdColumn = "fid";

void MakeGeopackageTables(SqliteFile& file);

std::string IndexName(const std::string& table);
// Keep the index and the count of rows up to date when other programs edit the layer.
void MakeTriggers(SqliteFile& file, const std::string& table);

}  // namespace loom
