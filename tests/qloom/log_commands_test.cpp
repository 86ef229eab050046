#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <sstream>

#include "tests/qloom/program.h"
#include "tests/support/temp_folder.h"

namespace loom::test {
namespace {

using nlohmann::json;

const std::string kHeader = R"({"kind":"store","version":160,"test_type":1,"date":"2024-05-17"})";

json Handset(double time_s, int device, int model, int mode, int uarfcn) {
  return {
      {"kind", 1},           {"device_number", device},
      {"model_code", model}, {"network_mode", mode},
      {"time", time_s},      {"longitude", 116.5},
      {"latitude", 39.5},    {"serving_cell", {{"uarfcn", uarfcn}, {"cell_parameter_id", 12}, {"cell_key", 7000001}}}};
}

class LogCommands : public ::testing::Test {
 protected:
  ProgramRun Run(const std::string& arguments) { return RunQloom(folder_.native().string(), arguments); }
  std::string Path(const std::string& name) const { return (folder_.native() / name).string(); }
  // Makes NAME.log of a header and records.
  void Make(const std::string& name, const std::vector<json>& records, const std::string& header = kHeader) {
    std::string lines = header + "\n";
    for (const json& record : records) lines += record.dump() + "\n";
    WriteText(Path(name + ".jsonl"), lines);
    const ProgramRun made = Run("log make " + name + ".jsonl " + name + ".log");
    ASSERT_EQ(0, made.exit_code) << made.err;
  }

  testing::TempFolder folder_;
};

TEST_F(LogCommands, ADualModeHandsetGivesTwoStreamsAndAMergedThird) {
  Make("drive", {Handset(36000, 2, 7, 2, 10054), Handset(36001, 2, 7, 3, 10054), Handset(36002, 2, 7, 2, 10063)});
  const json report = Run("import drive.log --json").Json();
  EXPECT_EQ(1, report["result"]);
  const json& log = report["logs"][0];
  EXPECT_EQ(3, log["rows"]);
  EXPECT_EQ(3, log["merged_rows"]);
  std::map<std::string, json> streams;
  for (const json& stream : log["streams"]) streams[stream["name"]] = stream;
  ASSERT_EQ(3u, streams.size());
  EXPECT_EQ("TD-SCDMA", streams["drive_RV2230_TD(2)"]["protocol"]);
  EXPECT_EQ(2, streams["drive_RV2230_TD(2)"]["rows"]);
  EXPECT_EQ("GSM", streams["drive_RV2230_GSM(2)"]["protocol"]);
  EXPECT_EQ("DOUBLEPROTOCOL", streams["drive_RV2230(2)"]["protocol"]);
  EXPECT_EQ(3, streams["drive_RV2230(2)"]["rows"]);
  EXPECT_EQ(json({116.5, 116.5}), log["bounds"]["longitude"]);

  const auto merged = Run("rows drive.log --stream 'drive_RV2230(2)'").Lines();
  ASSERT_EQ(3u, merged.size());
  EXPECT_EQ(json({1, 0}), merged[0]["merged"]);
  EXPECT_EQ(json({0, 1}), merged[1]["merged"]);
  EXPECT_EQ(json({2, 0}), merged[2]["merged"]);
  // 2024-05-17 10:00:00 in the zone of the program, which the test sets to UTC.
  EXPECT_EQ(1715940000.0, merged[0]["time"]);
}

TEST_F(LogCommands, RowsShowTheFieldsOfARecordByTheCataloguesTypes) {
  Make("drive", {Handset(36000, 1, 7, 2, 10054)});
  const auto rows = Run("rows drive.log --stream 'drive_RV2230_TD(1)' --show Longitude --show UARFCN").Lines();
  ASSERT_EQ(1u, rows.size());
  EXPECT_EQ(1, rows[0]["row"]);
  EXPECT_EQ(1, rows[0]["sync"]);
  // The serving cell appears again through the device's last known serving cell.
  EXPECT_EQ(json({{2379, 116.5}, {147, 10054}, {147, 10054}}), rows[0]["fields"]);

  const ProgramRun unknown = Run("rows drive.log --stream nowhere");
  EXPECT_EQ(1, unknown.exit_code);
  EXPECT_NE(std::string::npos, unknown.err.find("drive_RV2230_TD(1)")) << unknown.err;
}

TEST_F(LogCommands, AHandsetWithoutAModelIsNamedByTheAnswerToOneQuestion) {
  Make("drive", {Handset(36000, 1, 0, 2, 10054), Handset(36001, 1, 0, 2, 10054)});
  const ProgramRun asked = Run("import drive.log --json --trace-ui --handset 'KM 4430'");
  EXPECT_EQ("drive_KM4430_TD(1)", asked.Json()["logs"][0]["streams"][0]["name"]);
  std::size_t questions = 0;
  for (std::size_t at = 0; (at = asked.err.find("\"window\":9010", at)) != std::string::npos; ++at) ++questions;
  EXPECT_EQ(1u, questions);
  EXPECT_EQ("drive_RV2230_TD(1)", Run("import drive.log --json").Json()["logs"][0]["streams"][0]["name"]);
  EXPECT_EQ(2, Run("import drive.log --handset 'Some phone'").exit_code);
}

TEST_F(LogCommands, WhatIsRefusedSaysWhyAndTheExitCodeTells) {
  const ProgramRun missing = Run("import nothing.log --json");
  EXPECT_EQ(1, missing.exit_code);
  const std::string said = missing.Json()["messages"][0]["text"];
  EXPECT_EQ(0u, said.find("无法找到日志文件:")) << said;

  WriteText(Path("text.log"), "this is no log");
  const json foreign = Run("import text.log --json").Json();
  EXPECT_EQ("无法获取日志文件：text.log 的版本及类型信息！", foreign["messages"][0]["text"]);
  EXPECT_EQ("error", foreign["messages"][0]["icon"]);
  EXPECT_EQ("Quillon Loom", foreign["messages"][0]["caption"]);
  EXPECT_FALSE(foreign["notes"].empty());

  Make("indoor", {Handset(1, 1, 7, 2, 1)}, R"({"kind":"store","version":160,"test_type":2,"date":"2024-05-17"})");
  EXPECT_EQ("室外日志节点下不能导入室内日志:indoor.log.",
            Run("import indoor.log --json").Json()["messages"][0]["text"]);
  const json indoor = Run("import indoor.log --node indoor --json").Json();
  EXPECT_EQ(true, indoor["logs"][0]["indoor"]);
  EXPECT_EQ(2, Run("import").exit_code);
}

TEST_F(LogCommands, EveryNamedFileIsListedAndTheExitCodeTellsWhetherAllWereImported) {
  Make("a", {Handset(36000, 1, 7, 2, 1)});
  Make("b", {Handset(36000, 1, 7, 2, 1)});
  WriteText(Path("text.log"), "this is no log");
  const struct {
    std::string logs;
    int exit_code;
    std::vector<int> results;
  } cases[] = {{"a.log b.log", 0, {1, 1}},
               {"a.log text.log b.log", 3, {1, 0, 1}},
               {"a.log nothing.log b.log", 3, {1, 0, -3}},
               {"nothing.log a.log b.log", 1, {0, -3, -3}},
               {"a.log b.log a.log", 3, {1, 1, -2}},
               {"text.log", 1, {0}}};
  for (const auto& named : cases) {
    const ProgramRun run = Run("import --json " + named.logs);
    EXPECT_EQ(named.exit_code, run.exit_code) << named.logs;
    std::vector<int> results;
    const json report = run.Json();
    for (const json& log : report["logs"]) results.push_back(log["result"]);
    EXPECT_EQ(named.results, results) << named.logs;
  }
  EXPECT_NE(std::string::npos, Run("import nothing.log a.log").out.find("a.log: not attempted\n"));
}

// The answer is for all logs unless it is told otherwise; each batch asks anew.
TEST_F(LogCommands, TheHandsetQuestionIsAskedOncePerBatchWhileItsAnswerIsKeptForAllLogs) {
  for (const char* log : {"a", "b", "c"}) Make(log, {Handset(36000, 1, 0, 2, 1)});
  for (const auto& [keep, expected] : {std::pair{"", 1}, {"--no-keep-log", 1}, {"--no-keep-all", 3}}) {
    const ProgramRun run = Run("import a.log b.log c.log --json --trace-ui --handset 'KM 4430' " + std::string(keep));
    int questions = 0;
    for (std::size_t at = 0; (at = run.err.find("\"window\":9010", at)) != std::string::npos; ++at) ++questions;
    EXPECT_EQ(expected, questions) << keep;
    const json report = run.Json();
    ASSERT_EQ(3u, report["logs"].size());
    for (const json& log : report["logs"])
      EXPECT_NE(std::string::npos, log["streams"][0]["name"].get<std::string>().find("_KM4430_TD(1)"));
  }
}

TEST_F(LogCommands, SkippedRecordsAreCountedByReasonWithTheirPlaces) {
  json broken = Handset(36001, 1, 7, 2, 1);
  broken["fails"] = "decode";
  Make("drive", {Handset(36000, 1, 7, 2, 1), broken, {{"kind", 3}, {"time", 36002}}, Handset(36003, 0, 7, 2, 1)});
  const json report = Run("import drive.log --json").Json();
  EXPECT_EQ(json({{"not decoded", 1}, {"unknown kind", 1}, {"no stream", 1}}), report["logs"][0]["skipped"]);
  for (const json& note : report["notes"]) EXPECT_EQ(0u, note["at"].get<std::string>().find("byte ")) << note;
  EXPECT_EQ(1, report["logs"][0]["rows"]);
}

TEST_F(LogCommands, ACancelledImportLeavesNothingInTheProject) {
  ASSERT_EQ(0, Run("log simulate drive.log --minutes 2").exit_code);
  Make("short", {Handset(36000, 1, 7, 2, 1)});
  const ProgramRun cancelled = Run("import drive.log --project p.qlp --cancel-at 30 --trace-ui");
  EXPECT_EQ(130, cancelled.exit_code) << cancelled.err;
  EXPECT_NE(std::string::npos, cancelled.err.find("\"position\":30")) << cancelled.err;
  EXPECT_EQ(std::string::npos, cancelled.err.find("\"position\":33"));
  EXPECT_FALSE(std::filesystem::exists(Path("p.qlp")));

  ASSERT_EQ(0, Run("import short.log --project p.qlp").exit_code);
  const json project = Run("project show p.qlp --json").Json();
  EXPECT_FALSE(project.contains("modified"));
  ASSERT_EQ(1u, project["logs"].size());
  EXPECT_EQ("short_RV2230_TD(1)", project["logs"][0]["streams"][0]["name"]);
  EXPECT_EQ(7, project["logs"][0]["handset_type"]);
  EXPECT_EQ("short.log", std::filesystem::path(project["recent_log"].get<std::string>()).filename());
}

TEST_F(LogCommands, CellsOfTheProjectGiveTheDistanceToTheServingCell) {
  Make("drive", {Handset(36000, 1, 7, 2, 10054)});
  // Same longitude, 0.01 degrees of latitude north: 1110.4 m on the ellipsoid at this latitude.
  WriteText(Path("cells.jsonl"), R"({"LAC": 106, "CI": 7000001, "Longitude": 116.5, "Latitude": 39.51})");
  ASSERT_EQ(0, Run("net put tbl_Cell cells.jsonl --project p.qlp").exit_code);
  EXPECT_EQ(7000001, Run("net list tbl_Cell --project p.qlp").Lines()[0]["CI"]);
  const auto rows = Run("rows drive.log --stream 'drive_RV2230_TD(1)' --project p.qlp").Lines();
  double distance_m = 0;
  for (const json& field : rows[0]["fields"]) {
    if (field[0] == 2387) distance_m = field[1];
  }
  EXPECT_NEAR(1110.4, distance_m, 1.0);
}

TEST_F(LogCommands, LogInfoTellsWhatIsInTheFile) {
  Make("drive", {Handset(36000, 1, 7, 2, 1), Handset(36060.5, 1, 7, 2, 1), {{"kind", 6}, {"time", 36061}}});
  const json info = Run("log info drive.log --json").Json();
  EXPECT_EQ("store", info["kind"]);
  EXPECT_EQ(160, info["version"]);
  EXPECT_EQ("2024-05-17", info["date"]);
  EXPECT_EQ(3, info["records"]);
  EXPECT_EQ(json({{"1", 2}, {"6", 1}}), info["by_kind"]);
  EXPECT_EQ(1715940000.0, info["start"]);
  EXPECT_EQ(1715940061.0, info["end"]);
}

// The phones of a public drive test, converted record by record.
TEST_F(LogCommands, RealDriveTestTextComesThroughTheMainJob) {
  const std::string text = testing::SharedSamples() / "text/gnettrack_orange_log.txt";
  if (!std::filesystem::exists(text)) GTEST_SKIP() << "no sample files";
  const std::string script = testing::SourceFolder() / "tools/tab_drive_log_to_jsonl.py";
  ASSERT_EQ(0, std::system(("python3 " + script + " '" + text + "' > " + Path("phone.jsonl")).c_str()));
  ASSERT_EQ(0, Run("log make phone.jsonl phone.log").exit_code);
  const json log = Run("import phone.log --json").Json()["logs"][0];
  EXPECT_EQ(1, log["result"]);
  EXPECT_EQ(2625, log["rows"]);

  // Every LTE line of the text: position, level, quality and physical cell id stand in its row.
  const auto rows = Run("rows phone.log --stream 'phone_TESSARY_TN300_LTE(1)'").Lines();
  std::size_t compared = 0;
  std::istringstream lines(ReadText(text));
  for (std::string line; std::getline(lines, line);) {
    std::vector<std::string> cells;
    std::istringstream cut(line);
    for (std::string cell; std::getline(cut, cell, '\t');) cells.push_back(cell);
    if (cells.size() < 17 || cells[9] != "4G") continue;
    ASSERT_LT(compared, rows.size());
    std::map<int, json> fields;
    for (const json& field : rows[compared]["fields"]) fields[field[0]] = field[1];
    EXPECT_FLOAT_EQ(std::stof(cells[1]), fields[2379].get<float>()) << line;
    EXPECT_FLOAT_EQ(std::stof(cells[2]), fields[2380].get<float>()) << line;
    // What no phone can measure is left out.
    const auto expect = [&](int id, const std::string& cell, int lowest, int highest) {
      const bool plausible = cell != "-" && std::stoi(cell) >= lowest && std::stoi(cell) <= highest;
      EXPECT_EQ(plausible ? json(std::stoi(cell)) : json(), fields[id]) << line;
    };
    expect(33364, cells[10], -141, -44);
    expect(33365, cells[11], -20, -3);
    expect(33362, cells[16], 0, 503);
    ++compared;
  }
  EXPECT_EQ(rows.size(), compared);
}

}  // namespace
}  // namespace loom::test
