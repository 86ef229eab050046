#include <cmath>
#include <random>

#include "host/sinks/geopackage/packed_index.h"
#include "host/sinks/geopackage/sqlite_file.h"
#include "tests/sinks/layer_fixture.h"

namespace loom::test {
namespace {

class GeopackageTest : public LayerFixture {
 protected:
  std::string Ask(const std::string& sql, SqliteFile::Use use = SqliteFile::Use::kRead) const {
    SqliteFile file(Path("x.gpkg"), "x.gpkg", use);
    auto query = file.Prepare(sql);
    return query.Step() ? std::string(query.Text(0)) : "no row";
  }
  void Change(const std::string& sql) const {
    if (!HasGdalPrograms()) return;
    const std::string command = "ogrinfo -q -dialect SQLITE '" + Path("x.gpkg") + "' -sql \"" + sql + "\" >/dev/null";
    ASSERT_EQ(0, std::system(command.c_str())) << command;
  }
};

TEST_F(GeopackageTest, PackedIndexesOfAnySizeAreInOrder) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> degrees(-90, 90);
  for (const std::uint32_t rows : {0u, 1u, 51u, 52u, 2601u, 2602u, 9000u}) {
    SCOPED_TRACE(rows);
    std::filesystem::remove(Path("x.gpkg"));
    SqliteFile file(Path("x.gpkg"), "x.gpkg", SqliteFile::Use::kWrite);
    PackedIndex index;
    for (std::uint32_t id = 1; id <= rows; ++id) {
      GeoBox box;
      box.Add({degrees(random), degrees(random)});
      index.Add(id, box);
    }
    index.Write(file, "rtree_a\"b_geom");
    auto check = file.Prepare("SELECT rtreecheck('rtree_a\"b_geom') || count(*) FROM \"rtree_a\"\"b_geom\"");
    ASSERT_TRUE(check.Step());
    EXPECT_EQ("ok" + std::to_string(rows), check.Text(0));
  }
}

TEST_F(GeopackageTest, IndexAndCountStayRightWhenOtherProgramsEdit) {
  IDataStream& stream = MakeStream("it's \"s\"");
  StoreWay(stream, 3000);
  Store(stream, Row(stream, NAN, NAN));
  Export({&stream}, "x.gpkg");
  const std::string check =
      "SELECT rtreecheck('rtree_it''s \"s\"_geom') || ' ' || count(*) || ' ' || "
      "(SELECT feature_count FROM gpkg_ogr_contents) FROM \"rtree_it's \"\"s\"\"_geom\"";
  EXPECT_EQ("ok 3000 3001", Ask(check));
  EXPECT_EQ("9", Ask("SELECT count(*) FROM sqlite_master WHERE type = 'trigger'"));
  if (!HasGdalPrograms()) GTEST_SKIP();
  Change("DELETE FROM \\\"it's \\\"\\\"s\\\"\\\"\\\" WHERE fid = 17");
  EXPECT_EQ("ok 2999 3000", Ask(check));
}

TEST_F(GeopackageTest, ProgramsFindRowsByWindowAndStyleByLayer) {
  IDataStream& stream = MakeStream("s");
  StoreWay(stream, 3000);
  const LayerStyle style{.column = 1, .limits = {10, 20.5}, .colours = {"#ff0000", "#00ff00", "#0000ff"}};
  Export({&stream}, "x.gpkg", &style);
  EXPECT_EQ("s/geom/RecordID/1", Ask("SELECT f_table_name || '/' || f_geometry_column || '/' || styleName || '/' || "
                                     "useAsDefault FROM layer_styles"));
  const std::string qml = Ask("SELECT styleQML FROM layer_styles");
  // The first range that holds a value counts: 20.5 is of the class above it.
  const auto at = [&](const char* text) { return qml.find(text); };
  EXPECT_LT(at("lower=\"20.5\" upper=\"1e30\""), at("lower=\"10\" upper=\"20.5\""));
  EXPECT_LT(at("lower=\"10\" upper=\"20.5\""), at("lower=\"-1e30\" upper=\"10\""));
  EXPECT_NE(std::string::npos, at("k=\"color\" v=\"0,0,255,255\""));
  EXPECT_NE(std::string::npos, Ask("SELECT styleSLD FROM layer_styles").find("PropertyIsLessThan"));
  if (!HasGdalPrograms()) GTEST_SKIP();
  const std::string command =
      "ogrinfo -al -so -spat 116.3 39.9 116.40005 40.0 '" + Path("x.gpkg") + "' s >'" + Path("found") + "'";
  ASSERT_EQ(0, std::system(command.c_str()));
  EXPECT_NE(std::string::npos, ReadText(Path("found")).find("Feature Count: 1001")) << ReadText(Path("found"));
}

TEST_F(GeopackageTest, ColumnsTellUnitAndRangeAndAreNamedOnce) {
  IDataStream& stream = MakeStream("gpkg_contents");
  CMemDataRow row = Row(stream, 1, 2);
  row.QuickAddIE(kRealIe, uniFieldValue(1.5f));
  Store(stream, row);
  Export({&stream, &stream}, "x.gpkg");
  EXPECT_EQ("unit: %; range: 0 to 100",
            Ask("SELECT description FROM gpkg_data_columns WHERE column_name = 'TrCHBLER_Total'"));
  EXPECT_EQ("_gpkg_contents,_gpkg_contents_2",
            Ask("SELECT group_concat(table_name) FROM gpkg_contents WHERE data_type = 'features'"));
  EXPECT_EQ("1.0/2.0", Ask("SELECT min_x || '/' || max_y FROM gpkg_contents WHERE data_type = 'features'"));
}

}  // namespace
}  // namespace loom::test
