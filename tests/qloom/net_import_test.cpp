#include <gtest/gtest.h>

#include <filesystem>

#include "platform/encoding.h"
#include "tests/qloom/program.h"
#include "tests/support/temp_folder.h"
#include "tests/support/xlsx_builder.h"

namespace loom::test {
namespace {

using nlohmann::json;
using testing::XlsxBuilder;
using Rows = std::vector<std::vector<std::string>>;

const Rows kLte{{"MCC", "MNC", "Longitude", "Latitude", "PCI", "EARFCN", "小区名"},
                {"460", "0", "116.5", "39.51", "301", "38950", "东站"}};
const Rows kTdSheet{
    {"MCC", "MNC", "LAC", "CI", "CellName", "SiteName", "Longitude", "Latitude", "UARFCN", "CellParameterID"},
    {"460", "0", "106", "7000001", "a", "b", "116.5", "39.51", "10054", "5"}};

class NetImportCommand : public ::testing::Test {
 protected:
  void Write(const std::string& name, const Rows& rows) { XlsxBuilder().Rows(rows).Write(folder_.File(CString(name))); }
  ProgramRun Run(const std::string& arguments) const { return RunQloom(folder_.native(), arguments); }
  double FieldOfFirstRow(const std::string& arguments, int ie) const {
    const json row = Run("rows " + arguments).Lines().at(0);
    for (const json& field : row["fields"]) {
      if (field[0] == ie) return field[1];
    }
    return -1;
  }
  testing::TempFolder folder_;
};

TEST_F(NetImportCommand, ReportsTheMappingAndWhatWasStored) {
  Write("lte.xlsx", kLte);
  const std::string command =
      "import-net lte.xlsx --protocol lte --data cell --custom 小区名=名称 --project p.qlp --json";
  const ProgramRun first = Run(command);
  ASSERT_EQ(0, first.exit_code) << first.err;
  EXPECT_EQ(3, first.Json()["result"]);
  EXPECT_EQ(json({{"heading", "小区名"}, {"parameter", "名称"}, {"attribute", "free"}}),
            first.Json()["mapping"].back());
  EXPECT_EQ(json({1, 1, 0}), json({first.Json()["rows_read"], first.Json()["new"], first.Json()["replaced"]}));
  EXPECT_EQ(1, Run(command).Json()["replaced"]);
  EXPECT_EQ("东站", Run("net list tbl_Cell_LTE --project p.qlp").Lines().at(0)["名称"]);

  const ProgramRun mapped =
      Run("import-net lte.xlsx --protocol lte --data cell --map 小区名=CellName --map MNC=CI --sheet Sheet1 --json");
  EXPECT_EQ(1, mapped.exit_code);
  EXPECT_EQ("请选择MNC映射参数!", mapped.Json()["messages"][0]["text"]);
  for (const char* const wrong :
       {"--map nowhere=CI", "--map 小区名=nothing", "--custom MCC=x", "--sheet other", "--custom 小区名=a.b"}) {
    const ProgramRun refused =
        Run("import-net lte.xlsx --protocol lte --data cell --project p2.qlp " + std::string(wrong));
    EXPECT_EQ(1, refused.exit_code) << wrong;
    EXPECT_NE("", refused.err) << wrong;
  }
  EXPECT_EQ(2, Run("import-net lte.xlsx --protocol lte --data cell --map CI").exit_code);
  EXPECT_FALSE(std::filesystem::exists(folder_.native() / "p2.qlp"));
}

TEST_F(NetImportCommand, GivesDistancesToTheNextLogImport) {
  Write("td.xlsx", kTdSheet);
  Write("lte.xlsx", kLte);
  ASSERT_EQ(0, Run("import-net td.xlsx --protocol td --data cell --project p.qlp").exit_code);
  ASSERT_EQ(0, Run("import-net lte.xlsx --protocol lte --data cell --project p.qlp").exit_code);
  // At the cells' longitude, 0.01 degrees of latitude south of them.
  const json place{{"kind", 1}, {"time", 36000}, {"longitude", 116.5}, {"latitude", 39.5}};
  json td = place, lte = place;
  td.update({{"device_number", 1}, {"model_code", 7}, {"network_mode", 2}, {"serving_cell", {{"cell_key", 7000001}}}});
  lte.update({{"device_number", 2},
              {"model_code", 14},
              {"lte_measurements", {{"serving", {{"earfcn", 38950}, {"physical_cell_id", 301}}}}}});
  const json header{{"kind", "store"}, {"version", 160}, {"test_type", 1}, {"date", "2024-05-17"}};
  WriteText(folder_.native() / "drive.jsonl", header.dump() + "\n" + td.dump() + "\n" + lte.dump() + "\n");
  ASSERT_EQ(0, Run("log make drive.jsonl drive.log").exit_code);
  std::filesystem::copy_file(folder_.native() / "p.qlp", folder_.native() / "q.qlp");
  EXPECT_NEAR(1110.4, FieldOfFirstRow("drive.log --stream 'drive_RV2230_TD(1)' --project p.qlp", 2387), 1.0);
  EXPECT_NEAR(1110.4, FieldOfFirstRow("drive.log --stream 'drive_TESSARY_TN300_LTE(2)' --project q.qlp", 2382), 1.0);
}

TEST_F(NetImportCommand, AScriptPlaysThePersonInTheWizard) {
  Write("td.xlsx", kTdSheet);
  WriteText(folder_.native() / "steps.jsonl", R"({"choose": [9126, "TD邻区"]}
{"press": 9001}
{"files": ["td.xlsx"]}
{"button": "next"}
{"choose": [9126, "小区"]}
{"button": "next"}
{"select": [9034, [3]]}
{"press": 9015}
{"button": "finish"}
{"press": 9035}
{"select": [9044, ["TD-SCDMA 小区/CI"]]}
{"button": "ok"}
{"button": "finish"}
)");
  const ProgramRun run = Run("ui import-net --script steps.jsonl --project p.qlp");
  ASSERT_EQ(0, run.exit_code) << run.err;
  std::vector<std::string> messages;
  for (const json& state : run.Lines()) {
    for (const json& message : state["messages"]) messages.push_back(message["text"]);
  }
  EXPECT_EQ((std::vector<std::string>{"在导入TD邻区数据前,请先导入TD小区数据!", "请选择CI映射参数！"}), messages);
  EXPECT_EQ(7000001, Run("net list tbl_Cell --project p.qlp").Lines().at(0)["CI"]);
}

}  // namespace
}  // namespace loom::test
