#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

#include "tests/qloom/program.h"
#include "tests/support/temp_folder.h"
#include "tests/support/workbook_reading.h"

namespace loom::test {
namespace {

using nlohmann::json;

class ExportExcelCommand : public ::testing::Test {
 protected:
  ExportExcelCommand() {
    EXPECT_EQ(0, Qloom("log simulate drive.log --minutes 1 --handsets td,gsm --scanner").exit_code);
  }
  ProgramRun Qloom(const std::string& arguments) const { return RunQloom(folder_.native().string(), arguments); }
  ProgramRun Export(const std::string& arguments) const {
    return Qloom("export-excel drive.log --json --out out.xlsx " + arguments);
  }
  json Book() const { return testing::ReadWorkbook(folder_.File("out.xlsx")); }
  bool HasBook() const { return std::filesystem::exists(folder_.native() / "out.xlsx"); }

  testing::TempFolder folder_;
};

const char* const kTd = "drive_RV2230_TD(1)";
const char* const kGsm = "drive_RV2210_GSM(2)";

std::vector<std::string> Names(const json& book) {
  std::vector<std::string> names;
  for (const json& sheet : book["sheets"]) names.push_back(sheet["name"]);
  return names;
}

// The text of a field in a line of `rows`; empty when the row lacks it.
std::string FieldText(const json& row, int id) {
  for (const json& field : row["fields"]) {
    if (field[0] == id) return field[1] == -255 ? "" : field[1].dump();
  }
  return "";
}

TEST_F(ExportExcelCommand, AWorkbookThatIsThereIsReplacedOnlyWithYes) {
  WriteText((folder_.native() / "out.xlsx").string(), "old");
  const ProgramRun kept = Export("--no --stream '" + std::string(kTd) + "'");
  EXPECT_EQ(1, kept.exit_code);
  EXPECT_EQ(0, kept.Json()["result"]);
  EXPECT_EQ("old", ReadText((folder_.native() / "out.xlsx").string()));
  EXPECT_NE(std::string::npos, kept.err.find("the file stays as it is")) << kept.err;
}

TEST_F(ExportExcelCommand, AStreamBecomesASheetOfItsRows) {
  const ProgramRun run = Export("--stream '" + std::string(kTd) + "' --ie RecordTime UARFCN MsgName");
  ASSERT_EQ(0, run.exit_code) << run.err;
  EXPECT_EQ(1, run.Json()["result"]);
  EXPECT_EQ((folder_.native() / "out.xlsx").string(), run.Json()["out"]);
  const std::vector<json> rows = Qloom("rows drive.log --stream '" + std::string(kTd) + "'").Lines();
  ASSERT_LT(50u, rows.size());
  const json sheet = Book()["sheets"][0];
  EXPECT_EQ("导出数据", sheet["name"]);
  EXPECT_EQ(rows.size() + 1, sheet["rows"].size());
  std::size_t with_uarfcn = 0;
  for (std::size_t at = 0; at < rows.size(); ++at) {
    const std::string number = std::to_string(at + 2);
    const bool is_there = sheet["cells"].contains("B" + number);
    const std::string text = FieldText(rows[at], 147);
    EXPECT_EQ(text.empty() ? json() : json::parse(text), is_there ? sheet["cells"]["B" + number] : json()) << number;
    with_uarfcn += is_there ? 1 : 0;
  }
  EXPECT_LT(0u, with_uarfcn);
  const double first = sheet["cells"]["A2"];
  EXPECT_LT(40000, first) << "a day";
  EXPECT_NEAR(9.5 / 24, first - std::floor(first), 1e-9);
}

TEST_F(ExportExcelCommand, SeveralStreamsAndReadyTablesGiveTheSameSheets) {
  const std::string streams = "--stream '" + std::string(kTd) + "' --stream '" + kGsm + "'";
  ASSERT_EQ(0, Export(streams).exit_code);
  const json subjects = Book();
  EXPECT_EQ((std::vector<std::string>{kTd, kGsm, "Sheet3"}), Names(subjects));
  ASSERT_EQ(0, Export(streams + " --tables").exit_code);
  EXPECT_EQ(subjects, Book());
  ASSERT_EQ(0, Export(streams + " --sheet 'a/b' 下行").exit_code);
  const ProgramRun named = Export(streams + " --sheet 'a/b' 下行");
  EXPECT_EQ((std::vector<std::string>{"a_b", "下行", "Sheet3"}), Names(Book()));
  ASSERT_EQ(1u, named.Json()["notes"].size());
  EXPECT_NE(std::string::npos, named.Json()["notes"][0]["what"].get<std::string>().find("\"a/b\""));
}

TEST_F(ExportExcelCommand, NetworkElementTablesBecomeSheets) {
  WriteText((folder_.native() / "cells.jsonl").string(),
            "{\"CI\": 11, \"LAC\": 7, \"CellName\": \"西单\", \"Longitude\": 116.5}\n{\"CI\": 12, \"LAC\": 7}\n");
  const ProgramRun put = Qloom("net put tbl_Cell cells.jsonl --project p.qlp");
  ASSERT_EQ(0, put.exit_code) << put.err;
  const ProgramRun run = Qloom("export-excel --net tbl_Cell --ie CI cellname Longitude --project p.qlp --out out.xlsx");
  ASSERT_EQ(0, run.exit_code) << run.err;
  EXPECT_EQ((json{{"A1", "CI"},
                  {"B1", "cellname"},
                  {"C1", "Longitude"},
                  {"A2", 11},
                  {"B2", "西单"},
                  {"C2", 116.5},
                  {"A3", 12}}),
            Book()["sheets"][0]["cells"]);
  EXPECT_EQ(1, Qloom("export-excel --net tbl_Nothing --project p.qlp --out none.xlsx").exit_code);
}

TEST_F(ExportExcelCommand, WhatCannotBeExportedIsSaidAndLeavesNoFile) {
  const std::string stream = "--stream '" + std::string(kTd) + "'";
  const ProgramRun no_stream = Export("--stream nowhere");
  EXPECT_EQ(1, no_stream.exit_code);
  EXPECT_NE(std::string::npos, no_stream.err.find(kGsm)) << no_stream.err;
  const ProgramRun no_element = Export(stream + " --ie Nonsense");
  EXPECT_EQ(1, no_element.exit_code);
  EXPECT_NE(std::string::npos, no_element.err.find("Nonsense")) << no_element.err;
  EXPECT_EQ(1, Export("--stream '" + std::string(kTd) + "' --tables --ie Nonsense").exit_code);
  EXPECT_EQ(2, Export("").exit_code);
  EXPECT_EQ(2, Export(stream + " --sheet a b").exit_code);
  EXPECT_FALSE(HasBook());
  const ProgramRun no_folder = Qloom("export-excel drive.log --json --out missing/out.xlsx " + stream);
  EXPECT_EQ(1, no_folder.exit_code);
  EXPECT_EQ(0, no_folder.Json()["result"]);
  EXPECT_EQ("不能打开Excel,请检查是否安装正确！", no_folder.Json()["messages"][0]["text"]);
}

}  // namespace
}  // namespace loom::test
