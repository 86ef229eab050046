#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "tests/qloom/program.h"
#include "tests/support/temp_folder.h"

namespace loom::test {
namespace {

using nlohmann::json;

class ExportLayerCommand : public ::testing::Test {
 protected:
  ProgramRun Qloom(const std::string& arguments) const { return RunQloom(folder_.native().string(), arguments); }
  void MakeDrive() const { ASSERT_EQ(0, Qloom("log simulate drive.log --minutes 1 --handsets td,lte").exit_code); }
  std::string Path(const std::string& name) const { return (folder_.native() / name).string(); }

  testing::TempFolder folder_;
};

const char* const kStream = "--stream 'drive_RV2230_TD(1)' ";

TEST_F(ExportLayerCommand, ColumnsOfGeojsonAreTheElementsNamedWithTheirRows) {
  MakeDrive();
  const ProgramRun run =
      Qloom("export-layer drive.log --json --out d.geojson --ie PCCPCH_RSCP MsgName Longitude " + std::string(kStream));
  ASSERT_EQ(0, run.exit_code) << run.err;
  EXPECT_EQ(1, run.Json()["result"]);
  const json file = run.Json()["out"].at(0);
  EXPECT_EQ(Path("d_drive_RV2230_TD(1).geojson"), file["path"]);
  const json layer = json::parse(ReadText(file["path"]));
  const std::vector<json> rows = Qloom("rows drive.log " + std::string(kStream)).Lines();
  ASSERT_EQ(rows.size(), layer["features"].size());
  EXPECT_EQ(rows.size(), file["rows"]);
  EXPECT_EQ("drive_RV2230_TD(1)", layer["name"]);
  std::size_t with_level = 0;
  for (std::size_t at = 0; at < rows.size(); ++at) {
    const json& feature = layer["features"][at];
    std::map<int, json> fields;
    for (const json& field : rows[at]["fields"]) fields.emplace(field[0], field[1]);
    const bool has_level = fields.contains(499) && fields[499] != -255;
    EXPECT_EQ(has_level ? fields[499] : json(), feature["properties"].value("PCCPCH_RSCP", json())) << at;
    with_level += has_level ? 1 : 0;
    const bool has_place = fields.contains(2379) && fields[2379] != -255;
    EXPECT_EQ(has_place ? json({fields[2379], fields[2380]}) : json(),
              has_place ? feature["geometry"]["coordinates"] : feature["geometry"]);
    EXPECT_EQ(has_place ? fields[2379] : json(), feature["properties"].value("Longitude", json()));
  }
  EXPECT_LT(20u, with_level);
}

TEST_F(ExportLayerCommand, CellsOfAProjectAreSectorsOrPoints) {
  WriteText(
      Path("cells.jsonl"),
      "{\"CI\": 11, \"LAC\": 7, \"CellName\": \"西单\", \"Longitude\": 116.5, \"Latitude\": 39.9, \"Azimuth\": 90}\n"
      "{\"CI\": 12, \"LAC\": 7, \"我的列\": \"x\"}\n");
  ASSERT_EQ(0, Qloom("net put tbl_Cell cells.jsonl --project p.qlp").exit_code);
  ASSERT_EQ(0, Qloom("export-layer --net tbl_Cell --project p.qlp --radius 500 --out c.geojson").exit_code);
  json cells = json::parse(ReadText(Path("c_tbl_Cell.geojson")))["features"];
  ASSERT_EQ(2u, cells.size());
  EXPECT_EQ("Polygon", cells[0]["geometry"]["type"]);
  EXPECT_EQ(json({116.5, 39.9}), cells[0]["geometry"]["coordinates"][0][0]);
  EXPECT_EQ("西单", cells[0]["properties"]["CellName"]);
  EXPECT_EQ(11, cells[0]["properties"]["CI"]);
  EXPECT_TRUE(cells[1]["geometry"].is_null());
  EXPECT_EQ("x", cells[1]["properties"]["我的列"]);
  ASSERT_EQ(0, Qloom("export-layer --net tbl_Cell --ie ci --cells points --project p.qlp --out c.geojson").exit_code);
  cells = json::parse(ReadText(Path("c_tbl_Cell.geojson")))["features"];
  EXPECT_EQ("Point", cells[0]["geometry"]["type"]);
  EXPECT_EQ((json{{"CI", 11}}), cells[0]["properties"]);
  ASSERT_EQ(0, Qloom("export-layer --net tbl_Cell --project p.qlp --out c.gpx").exit_code);
  EXPECT_NE(std::string::npos, ReadText(Path("c.gpx")).find("<q:CellName>西单</q:CellName>"));
  EXPECT_EQ(1, Qloom("export-layer --net tbl_Cell --ie Nothing --project p.qlp --out c.gpx").exit_code);
}

TEST_F(ExportLayerCommand, LayersAreColouredByTheClassesOfAnElement) {
  MakeDrive();
  WriteText(Path("mine.tsv"), "UARFCN\t10000\t#112233 #445566\n");
  const struct {
    const char* options;
    const char* element;
    const char* colour;
  } rows[] = {{"", "PCCPCH_RSCP", "140,13,37,255"},
              {"--ie UARFCN Best_PCCPCH_RSCP ", "Best_PCCPCH_RSCP", "140,13,37,255"},
              {"--classes mine.tsv ", "UARFCN", "68,85,102,255"}};
  for (const auto& [options, element, colour] : rows) {
    ASSERT_EQ(0, Qloom("export-layer drive.log --out d.geojson " + std::string(options) + kStream).exit_code);
    const std::string style = ReadText(Path("d_drive_RV2230_TD(1).qml"));
    EXPECT_NE(std::string::npos, style.find("&quot;" + std::string(element) + "&quot;")) << style;
    EXPECT_NE(std::string::npos, style.find(colour)) << style;
  }
  EXPECT_EQ(1, Qloom("export-layer drive.log --classes none.tsv --out d.gpkg " + std::string(kStream)).exit_code);
}

TEST_F(ExportLayerCommand, ATrackHasTimesAndValuesOnRequestOnly) {
  MakeDrive();
  ASSERT_EQ(0, Qloom("export-layer drive.log --out d.gpx " + std::string(kStream)).exit_code);
  EXPECT_EQ(std::string::npos, ReadText(Path("d.gpx")).find("extensions"));
  EXPECT_NE(std::string::npos, ReadText(Path("d.gpx")).find("<time>2024-05-17T09:30:00.000Z</time></trkpt>"));
  ASSERT_EQ(0, Qloom("export-layer drive.log --ie PCCPCH_RSCP --out d.gpx " + std::string(kStream)).exit_code);
  EXPECT_NE(std::string::npos, ReadText(Path("d.gpx")).find("<extensions><q:PCCPCH_RSCP>"));
}

TEST_F(ExportLayerCommand, WhatCannotBeExportedIsSaidAndLeavesNoFile) {
  MakeDrive();
  const struct {
    std::string arguments;
    int exit_code;
    const char* said;
  } rows[] = {
      {"drive.log --stream nowhere --out x.gpkg", 1, "drive_RV2230_TD(1)"},
      {"drive.log --ie Nonsense --out x.gpkg " + std::string(kStream), 1, "Nonsense"},
      {"drive.log --out x.doc " + std::string(kStream), 1, "gpkg, fgb, geojson"},
      {"drive.log --out missing/x.gpkg " + std::string(kStream), 1, "missing"},
      {"drive.log --out x.gpkg", 2, "--stream"},
      {"--out x.gpkg " + std::string(kStream), 2, "SOURCE"},
  };
  for (const auto& [arguments, exit_code, said] : rows) {
    const ProgramRun run = Qloom("export-layer " + arguments);
    EXPECT_EQ(exit_code, run.exit_code) << arguments;
    EXPECT_NE(std::string::npos, run.err.find(said)) << arguments << run.err;
  }
  EXPECT_FALSE(std::filesystem::exists(Path("x.gpkg")));
  WriteText(Path("x.gpkg"), "old");
  EXPECT_EQ(1, Qloom("export-layer drive.log --no --out x.gpkg " + std::string(kStream)).exit_code);
  EXPECT_EQ("old", ReadText(Path("x.gpkg")));
}

}  // namespace
}  // namespace loom::test
