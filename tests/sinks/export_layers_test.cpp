#include "host/sinks/export_layers.h"

#include <cmath>

#include "host/sinks/layer_sink.h"
#include "platform/file.h"
#include "platform/number.h"
#include "tests/sinks/layer_fixture.h"
#include "tests/support/file_size_limit.h"

namespace loom::test {
namespace {

using nlohmann::json;

const char* const kHostileName = "a\"b'; DROP TABLE x; --中文/..\\<&>";

// One row of awkward values, as they go in and as they shall come back.
struct AwkwardRow {
  double time_s;
  float longitude, latitude;
  std::int32_t best_rscp;
  float real;
  const char* text;  // UTF-8
};
const AwkwardRow kAwkwardRows[] = {
    {1267777000.25, 116.39713f, 39.916527f, -82, 99.75f, "rrcConnectionRequest"},
    {1267777001.999, -0.000001f, 1e-5f, -255, 0.1f, "中文,逗号\"引号\" 小区"},
    {1267777002, 180, -90, 0, -255, "<tag> & 'quote' \\"},
    {1267777003.001, -180, 90, 32767, 1e-7f, " leading and trailing "},
    {1267777004.037, 121.4737f, 31.2304f, -32768, 3.4028234e38f, "line\nbreak\ttab"},
    {1267777005, 0.5f, -0.25f, 1, 0.33333334f, ""},
};

class EveryValue : public LayerFixture, public ::testing::WithParamInterface<const char*> {
 protected:
  EveryValue() {
    for (const AwkwardRow& awkward : kAwkwardRows) {
      CMemDataRow row = Row(stream_, awkward.longitude, awkward.latitude);
      row.SetRecordTime(awkward.time_s);
      row.QuickAddIE(kBestRscpIe, uniFieldValue::Short(static_cast<std::uint16_t>(awkward.best_rscp)));
      row.QuickAddIE(kRealIe, uniFieldValue(awkward.real));
      row.QuickAddIE(kTextIe, uniFieldValue::Text(row.AddText(Utf8ToGbk(awkward.text).view())));
      Store(stream_, row);
    }
    CMemDataRow bare;  // neither time nor position nor values
    bare.QuickAddIE(kNumberIe, uniFieldValue(7));
    Store(stream_, bare);
  }

  static double Decimal(float value) { return ParseDouble(NumberText(value)).value_or(0); }
  static void ExpectRow(const AwkwardRow& in, const json& feature) {
    const json& values = feature["properties"];
    EXPECT_EQ(json({Decimal(in.longitude), Decimal(in.latitude)}), feature["geometry"]["coordinates"]);
    EXPECT_EQ(in.best_rscp == -255 ? json() : json(in.best_rscp), values.value("Best_PCCPCH_RSCP", json())) << values;
    EXPECT_EQ(in.real == -255 ? json() : json(Decimal(in.real)), values.value("TrCHBLER_Total", json())) << values;
    EXPECT_EQ(*in.text == 0 ? json() : json(in.text), values.value("MsgName", json()));
    const auto ms = std::llround((in.time_s - 1267777000) * 1000);
    const std::string fraction = "." + std::to_string(1000 + ms % 1000).substr(1);
    const std::string time = values["RecordTime"];
    EXPECT_EQ(0u, time.find("2010")) << time;
    EXPECT_NE(std::string::npos, time.find(std::to_string(40 + ms / 1000) + (ms % 1000 == 0 ? "" : fraction))) << time;
  }

  IDataStream& stream_ = MakeStream(kHostileName);
};

TEST_P(EveryValue, ComesBackFromAnyFormatThatHoldsAll) {
  const std::string extension = GetParam();
  if (!HasGdalPrograms() || (NeedsGdalModule(extension) && !HasGdalModule())) GTEST_SKIP();
  const auto files = Export({&stream_}, "x." + extension);
  ASSERT_EQ(1u, files.size());
  EXPECT_EQ(extension == "fgb" ? 6 : 7, files.front().rows);
  const std::vector<json> features = ReadByGdal(GbkPathToNative(files.front().path));
  ASSERT_EQ(7u - notes_.Count("row without a position left out"), features.size());
  for (const json& feature : features) {
    const int number = feature["properties"]["RecordID"];
    if (number < 7) {
      SCOPED_TRACE(number);
      ExpectRow(kAwkwardRows[number - 1], feature);
    } else {
      EXPECT_TRUE(feature["geometry"].is_null()) << feature;
      EXPECT_TRUE(feature["properties"].value("RecordTime", json()).is_null());
    }
  }
}
INSTANTIATE_TEST_SUITE_P(Formats, EveryValue, ::testing::Values("gpkg", "fgb", "geojson"));

// What is lost on the way to formats with narrower fields, and by which note that is told.
TEST_F(EveryValue, WhatANarrowFormatLosesIsNotedWithItsRow) {
  if (!HasGdalModule()) GTEST_SKIP();
  CMemDataRow row = Row(stream_, 1, 1);
  row.QuickAddIE(kTextIe, uniFieldValue::Text(row.AddText(std::string(300, 'x'))));
  Store(stream_, row);
  const struct {
    const char* out;
    std::map<std::string, std::uint64_t> notes;
  } rows[] = {
      {"x.shp", {{"text changed in a layer", 2}, {"number not in a layer", 1}}},
      {"x.tab", {{"text changed in a layer", 2}}},
      {"x.mif", {{"text changed in a layer", 2}}},
  };
  for (const auto& [out, notes] : rows) {
    SCOPED_TRACE(out);
    Export({&stream_}, out);
    for (const auto& [name, count] : notes) EXPECT_EQ(count, notes_.Count(name)) << name;
    EXPECT_EQ(notes.size(), notes_.kinds().size());
    EXPECT_EQ("drive.log", notes_.kinds().front().places.front().file);
    EXPECT_EQ(0u, notes_.kinds().front().places.front().at.find("row ")) << notes_.kinds().front().places.front().at;
  }
}

TEST_F(EveryValue, NarrowFormatsKeepWhatTheyCan) {
  if (!HasGdalPrograms() || !HasGdalModule()) GTEST_SKIP();
  for (const char* const extension : {"shp", "tab", "mif"}) {
    SCOPED_TRACE(extension);
    const auto files = Export({&stream_}, std::string("y.") + extension);
    const std::string path = GbkPathToNative(files.front().path);
    const std::vector<json> features = ReadByGdal(path);
    ASSERT_EQ(7u, features.size());
    const std::string table = ReadText(path.substr(0, path.size() - 3) + "fields.csv");
    const bool is_shape = std::string(extension) == "shp";
    EXPECT_NE(std::string::npos,
              table.find((is_shape ? "TrCHBLER_T" : "TrCHBLER_Total") + std::string(",\"TrCHBLER_Total\",\"%\"")))
        << table;
    const json values = features[1]["properties"];
    const auto at = [&](const json& row, const char* name) {
      return row["properties"][std::string(name).substr(0, is_shape ? 10 : 31)];
    };
    EXPECT_EQ("中文,逗号\"引号\" 小区", values["MsgName"]) << values;
    EXPECT_EQ(is_shape ? json() : json(-255), at(features[1], "Best_PCCPCH_RSCP")) << features[1];
    EXPECT_EQ(0, at(features[2], "Best_PCCPCH_RSCP"));
    EXPECT_EQ(99.75, at(features[0], "TrCHBLER_Total"));
    EXPECT_EQ(is_shape ? json() : json(-255), at(features[2], "TrCHBLER_Total"));
    EXPECT_NEAR(116.39713, features[0]["geometry"]["coordinates"][0], 1e-6);
    const std::string time = values["RecordTime"];
    EXPECT_NE(std::string::npos, time.find("41.999")) << time;
    if (is_shape) {
      EXPECT_EQ("2010-03-05 08:16:41.999", time);
    }
  }
}

class EveryFormat : public LayerFixture, public ::testing::WithParamInterface<const char*> {
 protected:
  void SetUp() override {
    if (NeedsGdalModule(Extension()) && !HasGdalModule()) GTEST_SKIP();
  }
  std::string Extension() const { return GetParam(); }
  std::string Out() const { return "x." + Extension(); }
  bool NeedsPlaces() const { return FindLayerFormat(Extension().c_str())->needs_positions; }
};

TEST_P(EveryFormat, HoldsOnePointAndBothSidesOfTheAntimeridian) {
  IDataStream& one = MakeStream("one");
  StoreWay(one, 1);
  EXPECT_EQ(1, Export({&one}, Out()).front().rows);
  IDataStream& way = MakeStream("way");
  for (const double longitude : {179.5, 179.9, -179.8, -179.5, 179.7}) Store(way, Row(way, longitude, 10));
  EXPECT_EQ(5, Export({&way}, Out()).front().rows);
  EXPECT_EQ(0u, notes_.Count("row without a position left out"));
}

TEST_P(EveryFormat, RowsWithoutPositionsStayOrAreRefused) {
  IDataStream& none = MakeStream("none");
  for (int at = 0; at < 3; ++at) Store(none, Row(none, NAN, NAN));
  const std::string refusal = Refusal({&none}, Out());
  EXPECT_EQ(NeedsPlaces(), !refusal.empty()) << refusal;
  if (NeedsPlaces()) {
    EXPECT_TRUE(FilesThere().empty()) << FilesThere().front();
  }
  Store(none, Row(none, 8, 47));
  EXPECT_EQ(NeedsPlaces() ? 1 : 4, Export({&none}, Out()).front().rows);
  EXPECT_EQ(NeedsPlaces() ? 3u : 0u, notes_.Count("row without a position left out"));
}

TEST_P(EveryFormat, WhatCannotBeWrittenToTheEndLeavesTheOldFile) {
  IDataStream& stream = MakeStream("s");
  StoreWay(stream, 20'000);
  const bool has_many = FindLayerFormat(Extension().c_str())->holds_many_layers;
  const std::string name = has_many ? Out() : "x_s." + Extension();
  WriteText(Path(name), "old");
  {
    const testing::FileSizeLimit full(40'000);
    EXPECT_NE("", Refusal({&stream}, Out()));
  }
  EXPECT_EQ("old", ReadText(Path(name)));
  EXPECT_EQ(1u, FilesThere().size());
  EXPECT_EQ("", Refusal({&stream}, Out()));
  EXPECT_NE("old", ReadText(Path(name)));
}

TEST_P(EveryFormat, ThreeHundredColumnsAreHeldOrRefused) {
  IDataStream& stream = MakeStream("wide");
  CMemDataRow row = Row(stream, 116, 39);
  for (std::int32_t id = 5000; id < 5300; ++id) row.QuickAddIE(id, uniFieldValue(id));
  Store(stream, row);
  const bool is_narrow = Extension() == "shp" || Extension() == "tab" || Extension() == "mif";
  const std::string refusal = Refusal({&stream}, Out());
  EXPECT_EQ(is_narrow, !refusal.empty()) << refusal;
  if (is_narrow) {
    EXPECT_TRUE(FilesThere().empty());
  }
  if (is_narrow || (NeedsPlaces() && Extension() != "fgb") || !HasGdalPrograms()) return;
  const std::string file = Extension() == "gpkg" ? Out() : "x_wide." + Extension();
  const json values = ReadByGdal(Path(file)).at(0)["properties"];
  EXPECT_EQ(302u, values.size());
  int sum = 0;
  for (const auto& [name, value] : values.items()) sum += value.is_number() ? value.get<int>() : 0;
  EXPECT_EQ(1 + 300 * (5000 + 5299) / 2, sum);
}
INSTANTIATE_TEST_SUITE_P(Formats, EveryFormat,
                         ::testing::Values("gpkg", "fgb", "geojson", "kml", "kmz", "gpx", "tab", "mif", "shp"));

class ExportLayersTest : public LayerFixture {};

TEST_F(ExportLayersTest, FormatsOfOneLayerGetAFileForEachStream) {
  IDataStream& first = MakeStream("下行/1");
  IDataStream& second = MakeStream("下行:1");
  StoreWay(first, 2);
  StoreWay(second, 3);
  const auto files = Export({&first, &second}, "out.geojson");
  ASSERT_EQ(2u, files.size());
  EXPECT_EQ((std::vector<std::string>{"out_下行_1.geojson", "out_下行_1_2.geojson"}), FilesThere());
  EXPECT_EQ(3, files[1].rows);
  EXPECT_EQ(1u, Export({&first, &second}, "out.gpkg").size());
}

TEST_F(ExportLayersTest, PartsOfAnEarlierFileGo) {
  if (!HasGdalModule()) GTEST_SKIP();
  IDataStream& stream = MakeStream("s");
  StoreWay(stream, 2);
  for (const char* const name : {"x_s.qix", "x_s.qml", "x_s.dbf"}) WriteText(Path(name), "old");
  Export({&stream}, "x.shp");
  EXPECT_EQ((std::vector<std::string>{"x_s.cpg", "x_s.dbf", "x_s.fields.csv", "x_s.prj", "x_s.shp", "x_s.shx"}),
            FilesThere());
}

TEST_F(ExportLayersTest, WhatIsLostOfEveryRowIsNoted) {
  IDataStream& stream = MakeStream("s");
  CMemDataRow far = Row(stream, 200, 10);
  far.SetFFTReport(std::vector<float>{1, 2, 3});
  Store(stream, far);
  CMemDataRow late = Row(stream, 1, 1);
  late.SetRecordTime(1e15);
  Store(stream, late);
  Export({&stream}, "x.gpkg");
  for (const char* const name :
       {"position outside of the earth", "time outside of the calendar", "spectrum not in a layer"})
    EXPECT_EQ(1u, notes_.Count(name)) << name;
}

TEST_F(ExportLayersTest, AFileThatAnotherProgramHasOpenIsLeftAlone) {
  IDataStream& stream = MakeStream("s");
  StoreWay(stream, 2);
  WriteText(Path("x.gpkg"), "old");
  WriteText(Path("x.gpkg-wal"), "changes");
  EXPECT_NE(std::string::npos, Refusal({&stream}, "x.gpkg").find("x.gpkg-wal"));
  EXPECT_EQ("old", ReadText(Path("x.gpkg")));
  EXPECT_NE(std::string::npos, Refusal({&stream}, "x.doc").find("gpkg, fgb"));
}

}  // namespace
}  // namespace loom::test
