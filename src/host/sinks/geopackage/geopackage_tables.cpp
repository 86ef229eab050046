#include "host/sinks/geopackage/geopackage_tables.h"

namespace loom {
namespace {

// GeoPackage 1.3 (OGC 12-128r17), with the extensions of schema and index; the styles as QGIS looks for them.
constexpr const char* kPackageTables = R"sql(
PRAGMA application_id = 1196444487;
PRAGMA user_version = 10300;
BEGIN;
CREATE TABLE gpkg_spatial_ref_sys (
  srs_name TEXT NOT NULL, srs_id INTEGER NOT NULL PRIMARY KEY, organization TEXT NOT NULL,
  organization_coordsys_id INTEGER NOT NULL, definition TEXT NOT NULL, description TEXT);
INSERT INTO gpkg_spatial_ref_sys VALUES
  ('Undefined cartesian SRS', -1, 'NONE', -1, 'undefined', 'undefined cartesian coordinate reference system'),
  ('Undefined geographic SRS', 0, 'NONE', 0, 'undefined', 'undefined geographic coordinate reference system'),
  ('WGS 84 geodetic', 4326, 'EPSG', 4326,
   'GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563,AUTHORITY["EPSG","7030"]],AUTHORITY["EPSG","6326"]],PRIMEM["Greenwich",0,AUTHORITY["EPSG","8901"]],UNIT["degree",0.0174532925199433,AUTHORITY["EPSG","9122"]],AXIS["Latitude",NORTH],AXIS["Longitude",EAST],AUTHORITY["EPSG","4326"]]',
   'longitude/latitude coordinates in decimal degrees on the WGS 84 spheroid');
CREATE TABLE gpkg_contents (
  table_name TEXT NOT NULL PRIMARY KEY, data_type TEXT NOT NULL, identifier TEXT UNIQUE, description TEXT DEFAULT '',
  last_change DATETIME NOT NULL DEFAULT (strftime('%Y-%m-%dT%H:%M:%fZ','now')),
  min_x DOUBLE, min_y DOUBLE, max_x DOUBLE, max_y DOUBLE, srs_id INTEGER,
  CONSTRAINT fk_gc_r_srs_id FOREIGN KEY (srs_id) REFERENCES gpkg_spatial_ref_sys(srs_id));
CREATE TABLE gpkg_ogr_contents (table_name TEXT NOT NULL PRIMARY KEY, feature_count INTEGER DEFAULT NULL);
CREATE TABLE gpkg_geometry_columns (
  table_name TEXT NOT NULL, column_name TEXT NOT NULL, geometry_type_name TEXT NOT NULL, srs_id INTEGER NOT NULL,
  z TINYINT NOT NULL, m TINYINT NOT NULL, CONSTRAINT pk_geom_cols PRIMARY KEY (table_name, column_name),
  CONSTRAINT uk_gc_table_name UNIQUE (table_name),
  CONSTRAINT fk_gc_tn FOREIGN KEY (table_name) REFERENCES gpkg_contents(table_name),
  CONSTRAINT fk_gc_srs FOREIGN KEY (srs_id) REFERENCES gpkg_spatial_ref_sys(srs_id));
CREATE TABLE gpkg_extensions (
  table_name TEXT, column_name TEXT, extension_name TEXT NOT NULL, definition TEXT NOT NULL, scope TEXT NOT NULL,
  CONSTRAINT ge_tce UNIQUE (table_name, column_name, extension_name));
CREATE TABLE gpkg_data_columns (
  table_name TEXT NOT NULL, column_name TEXT NOT NULL, name TEXT, title TEXT, description TEXT, mime_type TEXT,
  constraint_name TEXT, CONSTRAINT pk_gdc PRIMARY KEY (table_name, column_name),
  CONSTRAINT gdc_tn UNIQUE (table_name, name));
CREATE TABLE gpkg_data_column_constraints (
  constraint_name TEXT NOT NULL, constraint_type TEXT NOT NULL, value TEXT, min NUMERIC, min_is_inclusive BOOLEAN,
  max NUMERIC, max_is_inclusive BOOLEAN, description TEXT,
  CONSTRAINT gdcc_ntv UNIQUE (constraint_name, constraint_type, value));
INSERT INTO gpkg_extensions VALUES
  ('gpkg_data_columns', NULL, 'gpkg_schema', 'http://www.geopackage.org/spec121/#extension_schema', 'read-write'),
  ('gpkg_data_column_constraints', NULL, 'gpkg_schema', 'http://www.geopackage.org/spec121/#extension_schema',
   'read-write');
CREATE TABLE layer_styles (
  id INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL, f_table_catalog TEXT(256), f_table_schema TEXT(256),
  f_table_name TEXT(256), f_geometry_column TEXT(256), styleName TEXT(30), styleQML TEXT, styleSLD TEXT,
  useAsDefault BOOLEAN, description TEXT, owner TEXT(30), ui TEXT(30),
  update_time DATETIME DEFAULT (strftime('%Y-%m-%dT%H:%M:%fZ','now')));
INSERT INTO gpkg_contents (table_name, data_type, identifier) VALUES ('layer_styles', 'attributes', 'layer_styles');
)sql";

// Of the index (extension gpkg_rtree_index, Annex F.3) and of the count. T: table, R: index, C: geometry, I: row id.
constexpr const char* kTriggers[] = {
    R"sql(CREATE TRIGGER "R_insert" AFTER INSERT ON "T" WHEN (NEW."C" NOT NULL AND NOT ST_IsEmpty(NEW."C"))
BEGIN INSERT OR REPLACE INTO "R" VALUES (NEW."I", ST_MinX(NEW."C"), ST_MaxX(NEW."C"), ST_MinY(NEW."C"), ST_MaxY(NEW."C")); END)sql",
    R"sql(CREATE TRIGGER "R_update2" AFTER UPDATE ON "T" WHEN OLD."I" = NEW."I" AND (NEW."C" IS NULL OR ST_IsEmpty(NEW."C"))
BEGIN DELETE FROM "R" WHERE id = OLD."I"; END)sql",
    R"sql(CREATE TRIGGER "R_update4" AFTER UPDATE ON "T" WHEN OLD."I" != NEW."I" AND (NEW."C" IS NULL OR ST_IsEmpty(NEW."C"))
BEGIN DELETE FROM "R" WHERE id IN (OLD."I", NEW."I"); END)sql",
    R"sql(CREATE TRIGGER "R_update5" AFTER UPDATE ON "T" WHEN OLD."I" != NEW."I" AND (NEW."C" NOT NULL AND NOT ST_IsEmpty(NEW."C"))
BEGIN DELETE FROM "R" WHERE id = OLD."I";
INSERT OR REPLACE INTO "R" VALUES (NEW."I", ST_MinX(NEW."C"), ST_MaxX(NEW."C"), ST_MinY(NEW."C"), ST_MaxY(NEW."C")); END)sql",
    R"sql(CREATE TRIGGER "R_update6" AFTER UPDATE OF "C" ON "T" WHEN OLD."I" = NEW."I" AND
(NEW."C" NOT NULL AND NOT ST_IsEmpty(NEW."C")) AND (OLD."C" NOT NULL AND NOT ST_IsEmpty(OLD."C"))
BEGIN UPDATE "R" SET minx = ST_MinX(NEW."C"), maxx = ST_MaxX(NEW."C"), miny = ST_MinY(NEW."C"), maxy = ST_MaxY(NEW."C")
WHERE id = NEW."I"; END)sql",
    R"sql(CREATE TRIGGER "R_update7" AFTER UPDATE OF "C" ON "T" WHEN OLD."I" = NEW."I" AND
(NEW."C" NOT NULL AND NOT ST_IsEmpty(NEW."C")) AND (OLD."C" IS NULL OR ST_IsEmpty(OLD."C"))
BEGIN INSERT INTO "R" VALUES (NEW."I", ST_MinX(NEW."C"), ST_MaxX(NEW."C"), ST_MinY(NEW."C"), ST_MaxY(NEW."C")); END)sql",
    R"sql(CREATE TRIGGER "R_delete" AFTER DELETE ON "T" WHEN OLD."C" NOT NULL
BEGIN DELETE FROM "R" WHERE id = OLD."I"; END)sql",
    R"sql(CREATE TRIGGER "trigger_insert_feature_count_T" AFTER INSERT ON "T"
BEGIN UPDATE gpkg_ogr_contents SET feature_count = feature_count + 1 WHERE lower(table_name) = lower('T'); END)sql",
    R"sql(CREATE TRIGGER "trigger_delete_feature_count_T" AFTER DELETE ON "T"
BEGIN UPDATE gpkg_ogr_contents SET feature_count = feature_count - 1 WHERE lower(table_name) = lower('T'); END)sql",
};

// Names stand for their letters between quotes of either kind, also as a part: "R_insert".
std::string WithNames(std::string_view sql, const std::string& table) {
  std::string out;
  char quote = 0;
  for (std::size_t at = 0; at < sql.size(); ++at) {
    const char c = sql[at];
    if (c == '"' || c == '\'') quote = quote == 0 ? c : quote == c ? '\0' : quote;
    const bool is_whole =
        quote != 0 && (sql[at - 1] == quote || sql[at - 1] == '_') && (sql[at + 1] == quote || sql[at + 1] == '_');
    const std::string name = c == 'T' ? table : c == 'R' ? IndexName(table) : c == 'C' ? kGeometryColumn : kRowIdColumn;
    const bool is_letter = c == 'T' || c == 'R' || c == 'C' || c == 'I';
    if (!is_whole || !is_letter) {
      out += c;
      continue;
    }
    const std::string quoted = quote == '"' ? SqlName(name) : SqlText(name);
    out.append(quoted, 1, quoted.size() - 2);
  }
  return out;
}

}  // namespace

void MakeGeopackageTables(SqliteFile& file) { file.Execute(kPackageTables); }

std::string IndexName(const std::string& table) { return "rtree_" + table + "_" + kGeometryColumn; }

void MakeTriggers(SqliteFile& file, const std::string& table) {
  for (const char* const trigger : kTriggers) file.Execute(WithNames(trigger, table));
}

}  // namespace loom
