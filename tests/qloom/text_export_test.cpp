#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <map>

#include "tests/qloom/program.h"
#include "tests/support/temp_folder.h"

namespace loom::test {
namespace {

using nlohmann::json;

class TextExportCommand : public ::testing::Test {
 protected:
  // Three records of one TD-SCDMA handset, the second without IE 7.
  TextExportCommand() {
    std::string lines =
        json{{"kind", "store"}, {"version", 160}, {"test_type", 1}, {"date", "2024-05-17"}}.dump() + "\n";
    for (int number = 0; number < 3; ++number) {
      json record{{"kind", 1},         {"device_number", 1},       {"model_code", 7},
                  {"network_mode", 2}, {"time", 36000.5 + number}, {"longitude", 116.5},
                  {"latitude", 39.25}, {"time_stamp", 70 + number}};
      record["serving_cell"] = {{"uarfcn", 10054 + number}, {"cell_parameter_id", 12}};
      if (number != 1) record["ie7"] = 5 + number;
      lines += record.dump() + "\n";
    }
    WriteText(Path("drive.jsonl"), lines);
    const ProgramRun made = Run("log make drive.jsonl drive.log");
    EXPECT_EQ(0, made.exit_code) << made.err;
  }

  ProgramRun Run(const std::string& arguments) { return RunQloom(folder_.native().string(), arguments); }
  ProgramRun Export(const std::string& options) {
    return Run("export-text drive.log --stream 'drive_RV2230_TD(1)' --out out.txt " + options);
  }
  std::string Path(const std::string& name) const { return (folder_.native() / name).string(); }

  testing::TempFolder folder_;
};

TEST_F(TextExportCommand, WritesTheChosenParameters) {
  const ProgramRun run = Export("--ie UARFCN IE_7 --json");
  ASSERT_EQ(0, run.exit_code) << run.err;
  EXPECT_EQ(1, run.Json()["result"]);
  EXPECT_EQ(Path("out.txt"), run.Json()["out"]);
  EXPECT_EQ("导出文本文件成功!", run.Json()["messages"][0]["text"]);
  EXPECT_EQ(
      "RecordTime\tLongitude\tLatitude\tUARFCN\tIE_7\tDistance\tTimeStamp\r\n"
      "2024-05-17 10:00:00.500\t116.5\t39.25\t10054\t5\t0\t70\r\n"
      "2024-05-17 10:00:01.500\t116.5\t39.25\t10055\t \t0\t71\r\n"
      "2024-05-17 10:00:02.500\t116.5\t39.25\t10056\t7\t0\t72\r\n",
      ReadText(Path("out.txt")));
}

TEST_F(TextExportCommand, OptionsFillTheWizard) {
  struct {
    const char* options;
    std::string second_line;
  } const cases[] = {
      {"--ie IE_7 --separator comma --units --fill", "2024-05-17 10:00:00.500,116.5,39.25,5,0,70"},
      {"--ie IE_7 --separator : --no-header", "2024-05-17 10:00:01.500: 116.5: 39.25:  : 0: 71"},
      {"--ie IE_7 --separator semicolon --binned --no-header --fill", "2024-05-17 10:00:01.500;116.5;39.25;5;0;71"},
      {"--ie UARFCN --separator '#' --limit UARFCN=10056: --no-header",
       "2024-05-17 10:00:01.500#116.5#39.25#-255#0#71"},
  };
  for (const auto& [options, second_line] : cases) {
    const ProgramRun run = Export(options);
    ASSERT_EQ(0, run.exit_code) << options << run.err;
    const bool is_binned = std::string_view(options).find("--binned") != std::string_view::npos;
    EXPECT_EQ(is_binned, run.err.find("merged and averaged data") != std::string::npos) << run.err;
    std::istringstream lines(ReadText(Path("out.txt")));
    std::string line;
    std::getline(lines, line);
    std::getline(lines, line);
    EXPECT_EQ(second_line + "\r", line) << options;
  }
}

TEST_F(TextExportCommand, WhatTheWizardRefusesIsNotWritten) {
  struct {
    const char* options;
    const char* said;
  } const cases[] = {
      {"--ie UARFCN --limit UARFCN=20:10", "门限值设置错误，请重设！"},
      {"--ie UARFCN --limit UARFCN=-5:10", "门限值设置错误，请重设！"},
      {"--ie UARFCN --limit LAC=1:10", "LAC"},
      {"--ie NetworkMode --limit NetworkMode=1:2", "NetworkMode"},
      {"--ie NoSuchElement", "NoSuchElement"},
      {"--ie RxLev", "RxLev"},
      {"--ie RecordText", "RecordText"},
      {"--ie UARFCN --separator x", "请输入一个符号"},
      {"--ie UARFCN --out folder.txt", "导出文本文件失败!"},
      {"--ie UARFCN --out no/folder/out.txt", "导出文本文件失败!"},
      {"--ie UARFCN --stream nothing", "drive_RV2230_TD(1)"},
  };
  WriteText(Path("out.txt"), "old");
  std::filesystem::create_directory(Path("folder.txt"));
  for (const auto& [options, said] : cases) {
    const std::string all = options;
    const std::string stream = all.find("--stream") == std::string::npos ? " --stream 'drive_RV2230_TD(1)'" : "";
    const std::string out = all.find("--out") == std::string::npos ? " --out out.txt" : "";
    const ProgramRun run = Run("export-text drive.log --project p.qlp " + all + stream + out);
    EXPECT_EQ(1, run.exit_code) << options;
    EXPECT_NE(std::string::npos, run.err.find(said)) << options << '\n' << run.err;
  }
  EXPECT_EQ(1, Export("--ie UARFCN --no").exit_code) << "the file is there and may not be overwritten";
  EXPECT_EQ("old", ReadText(Path("out.txt")));
  EXPECT_FALSE(std::filesystem::exists(Path("p.qlp")));
  for (const char* wrong : {"--ie UARFCN --limit UARFCN", "--ie UARFCN --separator xy", ""}) {
    EXPECT_EQ(2, Export(wrong).exit_code) << wrong;
  }
}

TEST_F(TextExportCommand, ATextFileCanBeTheSource) {
  ASSERT_EQ(0, Export("--ie UARFCN CellParameterID --units --separator comma").exit_code);
  const ProgramRun run =
      Run("export-text out.txt --source-separator comma --time-format 'yyyy-mm-dd hh:nn:ss.ms' --stream-name x "
          "--stream out_x --ie UARFCN CellParameterID --units --separator comma --out again.txt");
  EXPECT_EQ(0, run.exit_code) << run.err;
  EXPECT_EQ(ReadText(Path("out.txt")), ReadText(Path("again.txt")));
}

TEST_F(TextExportCommand, AScriptPlaysTheWizard) {
  const json steps[] = {
      {{"select", {9044, {"日志文件/drive.log/drive_RV2230_TD(1)"}}}},
      {{"button", "next"}},
      {{"select", {9044, {"drive_RV2230_TD(1)/TD-SCDMA/Downlink_Measurements/Serving_Cell/UARFCN"}}}},
      {{"press", 9040}},
      {{"button", "next"}},
      {{"press", 9038}},
      {{"files", {Path("out.txt")}}},
      {{"press", 9055}},
      {{"button", "finish"}},
  };
  std::string lines;
  for (const json& step : steps) lines += step.dump() + "\n";
  WriteText(Path("steps.jsonl"), lines);
  const ProgramRun run = Run("ui export-txt drive.log --script steps.jsonl");
  ASSERT_EQ(0, run.exit_code) << run.err;
  EXPECT_EQ(9020, run.Lines().front()["window"]["template"]);
  EXPECT_EQ("导出文本文件成功!", run.Lines().back()["messages"][0]["text"]);
  EXPECT_EQ(0u, ReadText(Path("out.txt")).find("RecordTime,Longitude,Latitude,UARFCN,Distance,TimeStamp\r\n"));
}

// The values of the elements that are exported, row by row, whatever the order.
std::vector<std::map<int, json>> ValuesOf(const ProgramRun& run) {
  std::vector<std::map<int, json>> rows;
  for (const json& line : run.Lines()) {
    auto& row = rows.emplace_back();
    for (const json& field : line["fields"]) row.emplace(field[0].get<int>(), field[1]);
    row[2] = std::llround(line["time"].get<double>() * 1000);
  }
  return rows;
}

TEST_F(TextExportCommand, ADriveComesBackUnchanged) {
  ASSERT_EQ(0, Run("log simulate sim.log --minutes 1 --handsets td,gsm,lte --scanner").exit_code);
  struct {
    const char* stream;
    const char* protocol;
    const char* separators;
    const char* source_separator;
  } const cases[] = {
      {"sim_RV2230_TD(1)", "TD-SCDMA", "--separator comma --units", "--separator comma"},
      {"sim_RV2210_GSM(2)", "GSM", "", ""},
      {"sim_TESSARY_TN300_LTE(3)", "LTE", "--separator : --units", "--separator :"},
      {"sim_Tavin扫频仪", "TD-SCDMA", "--separator '|'", "--separator '|'"},
  };
  for (const auto& [stream, protocol, separator, source_separator] : cases) {
    const std::string name = std::string(" --stream '") + stream + "'";
    const ProgramRun made =
        Run("export-text sim.log --out out.txt --ie " + std::string(protocol) + name + " " + separator);
    ASSERT_EQ(0, made.exit_code) << made.err;
    const std::vector<std::map<int, json>> before = ValuesOf(Run("rows sim.log" + name));
    const std::string layout = " --time-format 'yyyy-mm-dd hh:nn:ss.ms' --stream-name x ";
    const ProgramRun back = Run("rows out.txt --stream out_x" + layout + source_separator);
    const std::vector<std::map<int, json>> after = ValuesOf(back);
    ASSERT_EQ(before.size(), after.size()) << stream << back.err;
    std::size_t values = 0;
    for (std::size_t at = 0; at < after.size(); ++at) {
      for (const auto& [id, value] : after[at]) {
        ASSERT_TRUE(before[at].contains(id)) << stream << " row " << at + 1 << " IE " << id;
        ASSERT_EQ(before[at].at(id), value) << stream << " row " << at + 1 << " IE " << id;
        ++values;
      }
    }
    EXPECT_GT(values, after.size() * 15) << stream;
  }
}

}  // namespace
}  // namespace loom::test
