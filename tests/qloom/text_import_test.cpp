#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>

#include "tests/qloom/program.h"
#include "tests/support/temp_folder.h"

namespace loom::test {
namespace {

using nlohmann::json;

constexpr const char* kDrive =
    "RecordTime,Longitude,Latitude,RxLev,Foo\n"
    "2010-03-05 08:15:30.250,116.5,39.5,-80,x\n"
    "never,116.5,39.5,abc,x\n"
    "2010-03-05 08:15:31.000,116.75\n";
constexpr const char* kAsDrive = " --separator comma --time-format 'yyyy-mm-dd hh:nn:ss.ms'";

class TextImportCommandTest : public ::testing::Test {
 protected:
  ProgramRun Qloom(const std::string& arguments) const { return RunQloom(folder_.native(), arguments); }
  void Write(const std::string& name, const std::string& text) const { WriteText(folder_.native() / name, text); }
  static std::set<std::string> NotesOf(const json& document) {
    std::set<std::string> notes;
    for (const json& note : document["notes"])
      notes.insert(note["at"].get<std::string>() + ": " + note["what"].get<std::string>());
    return notes;
  }

  testing::TempFolder folder_;
};

TEST_F(TextImportCommandTest, TheStreamAndEverythingThatWasDefaultedAreReported) {
  Write("drive.txt", kDrive);
  const ProgramRun run = Qloom("import-text drive.txt --json" + std::string(kAsDrive));
  ASSERT_EQ(0, run.exit_code) << run.err;
  const json document = run.Json();
  EXPECT_EQ(1, document["result"]);
  EXPECT_EQ("drive_UnknownDevice", document["stream"]["name"]);
  EXPECT_EQ("GSM", document["stream"]["protocol"]);
  EXPECT_EQ(3, document["stream"]["rows"]);
  EXPECT_EQ((json{1267776930.25, 1267776931.0}), document["stream"]["time"]);
  EXPECT_EQ(
      (std::set<std::string>{
          "line 3: row without a valid time: 'never' does not fit yyyy-mm-dd hh:nn:ss.ms",
          "line 3: no number: RxLev is 'abc', stored as 0",
          "line 4: columns missing in the line: 2 of the 4 mapped columns; the line has 2 cells, its row defaults"}),
      NotesOf(document));
}

TEST_F(TextImportCommandTest, RowsAndKeyRowsOfATextFile) {
  Write("drive.csv", kDrive);
  const auto rows =
      Qloom("rows drive.csv --stream drive_A --stream-name A --map 0=RecordTime --map 3=RxLev" + std::string(kAsDrive))
          .Lines();
  ASSERT_EQ(3u, rows.size());
  EXPECT_EQ(json::parse(R"({"row":1,"time":1267776930.25,"sync":1,"fields":[[31703,-80]]})"), rows[0]);
  EXPECT_TRUE(rows[1]["time"].is_null());
  EXPECT_EQ(json::parse("[[31703,-255]]"), rows[2]["fields"]);
  EXPECT_EQ(1u, Qloom("rows drive.csv --stream drive_UnknownDevice --key-rows" + std::string(kAsDrive)).Lines().size());
}

TEST_F(TextImportCommandTest, AProjectOpensItsTextFilesAgain) {
  Write("drive.txt", kDrive);
  ASSERT_EQ(0, Qloom("import-text drive.txt --project p.qlp --stream-type up --save-imcf saved" + std::string(kAsDrive))
                   .exit_code);
  EXPECT_EQ(1, Qloom("import-text drive.txt --json --imcf saved.imcf").Json()["stream"]["stream_type"]);
  const json opened = Qloom("open p.qlp --json").Json();
  EXPECT_EQ(1, opened["texts"][0]["result"]);
  EXPECT_EQ(6, Qloom("open-text drive.txt --project p.qlp --json").Json()["stream"]["stream_type"]);

  Write("drive.txt", "RecordTime\n");
  const json asked = Qloom("open-text drive.txt --project p.qlp --json --no").Json();
  EXPECT_EQ(0, asked["result"]);
  EXPECT_EQ("cancel", asked["messages"][0]["answer"]);
  const ProgramRun again = Qloom("open-text drive.txt --project p.qlp --json" + std::string(kAsDrive));
  EXPECT_EQ(0, again.exit_code);
  EXPECT_EQ(0, again.Json()["stream"]["rows"]);
}

TEST_F(TextImportCommandTest, WhatTheWizardRefusesIsRefusedHere) {
  Write("drive.txt", kDrive);
  Write("empty.txt", "");
  Write("quoted.txt", "\"RecordTime\",\"RxLev\"\n");
  Write("marked.txt", "\xEF\xBB\xBFRecordTime,Foo\n100000,-80\n");
  const struct {
    const char* arguments;
    int exit_code;
    const char* text;  // on the standard error output
  } cases[] = {
      {"import-text missing.txt", 1, "no such file"},
      {"import-text empty.txt", 1, "数据错误，请重试！"},
      {"import-text drive.txt --separator a", 1, "请输入一个符号"},
      {"import-text drive.txt --separator comma --map 3=RxLev", 1, "请导入时间(RecordTime)。"},
      {"import-text drive.txt --separator comma --map 3=RxLev --map 4=RxLev", 1, "该参数已经被第4列映射!"},
      {"import-text drive.txt --separator comma --map 9=RxLev", 1,
       "--map 9=RxLev, counted from 0: the first 4 lines have 5 columns with separator comma"},
      {"import-text drive.txt --map 1=RxLev", 1, "the first 4 lines have 1 column with separator tab"},
      {"import-text drive.txt --separator comma --map 3=RxLev --map 03=C1", 2, "column 3 is mapped twice"},
      {"import-text drive.txt --separator comma --map 3=Nonsense", 1, "Nonsense"},
      {"import-text drive.txt --separator ';'", 1, "the first line holds no title that the catalogue knows"},
      {"import-text quoted.txt --separator comma", 1, "the titles of the first line are quoted"},
      {"import-text marked.txt --separator comma", 1, "the file starts with a byte order mark"},
      {"import-text marked.txt --separator comma", 1, "marked.txt, line 1: the file is in Unicode"},
      {"import-text marked.txt --separator comma --map 1=RxLev", 1, "marked.txt, line 1: the file is in Unicode"},
      {"import-text drive.txt --separator comma --save-imcf missing/x", 1, "配置文件保存失败！"},
      {"import-text drive.txt --separator comma --cancel-at 0", 130, ""},
      {"import-text drive.txt --map RxLev", 2, "RxLev"},
      {"open-text drive.txt", 1, "records no text file"},
  };
  for (const auto& [arguments, exit_code, text] : cases) {
    const ProgramRun run = Qloom(arguments);
    EXPECT_EQ(exit_code, run.exit_code) << arguments;
    EXPECT_NE(std::string::npos, run.err.find(text)) << arguments << ": " << run.err;
  }
}

TEST_F(TextImportCommandTest, ATimeOfDayIsShownAsItWasInEveryTimeZone) {
  Write("day.txt", "RecordTime,RxLev\n00:00:00.5,-80\n08:15:30.25,-80\n23:59:59.999,-80\n");
  for (const char* zone : {"Asia/Shanghai", "America/New_York", "Africa/Monrovia"}) {
    const std::string zone_setting = std::string("TZ=") + zone + " ";
    const ProgramRun run =
        RunQloom(folder_.native(), "import-text day.txt --separator comma --time-format hh:nn:ss.ms", zone_setting);
    EXPECT_NE(std::string::npos, run.out.find("1970-01-01 00:00:00.500 to 1970-01-01 23:59:59.999")) << zone << run.out;
  }
}

TEST_F(TextImportCommandTest, AScriptPlaysTheWizard) {
  Write("drive.txt", kDrive);
  Write("steps.jsonl",
        R"({"press": 9001}
{"files": ["drive.txt"]}
{"button": "next"}
{"type": [9004, "UE1"]}
{"press": 9008}
{"button": "next"}
{"select": [9013, [3]]}
{"button": "finish"}
)");
  const ProgramRun run = Qloom("ui import-txt --script steps.jsonl");
  EXPECT_EQ(0, run.exit_code) << run.err;
  const auto states = run.Lines();
  ASSERT_FALSE(states.empty());
  bool third_page_shown = false;
  for (const json& state : states) {
    third_page_shown |= state["window"].is_object() && state["window"]["template"] == 9002;
  }
  EXPECT_TRUE(third_page_shown);
}

// What real exports of measuring tools contain: every file is imported with the titles mapped by hand to its first
// column, whatever that holds.
TEST_F(TextImportCommandTest, RealFilesAreImportedRowByRow) {
  if (testing::SharedSamples().empty()) GTEST_SKIP() << "the collection of real files is not here";
  for (const auto& entry : std::filesystem::directory_iterator(testing::SharedSamples() / "text")) {
    const std::string text = ReadText(entry.path());
    const std::string separator = text.substr(0, text.find('\n')).find('\t') != std::string::npos ? "tab" : "comma";
    const ProgramRun run =
        Qloom("import-text '" + entry.path().string() + "' --json --map 0=RecordTime --separator " + separator);
    ASSERT_EQ(0, run.exit_code) << entry.path() << run.err;
    const auto lines = std::count(text.begin(), text.end(), '\n') + (text.back() == '\n' ? 0 : 1);
    EXPECT_EQ(lines - 1, run.Json()["stream"]["rows"]) << entry.path();
  }
}

}  // namespace
}  // namespace loom::test
