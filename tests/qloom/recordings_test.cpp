#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "tests/qloom/program.h"
#include "tests/support/temp_folder.h"

namespace loom::test {
namespace {

using nlohmann::json;

class Recordings : public ::testing::Test {
 protected:
  Recordings() {
    for (const char* const name : {"handset_drive.qmdl", "handset_drive.gpx"})
      std::filesystem::copy_file(testing::SourceFolder() / "samples" / name, folder_.native() / name);
  }
  ProgramRun Run(const std::string& arguments) { return RunQloom(folder_.native().string(), arguments); }
  std::string Path(const std::string& name) const { return (folder_.native() / name).string(); }
  bool Exists(const std::string& name) const { return std::filesystem::exists(folder_.native() / name); }

  testing::TempFolder folder_;
};

TEST_F(Recordings, FromARecordingToAWorkbookAndATextInThreeCommands) {
  const ProgramRun made =
      Run("log from-modem handset_drive.qmdl --track handset_drive.gpx --utc-offset +08:00 --out drive.log --json");
  ASSERT_EQ(0, made.exit_code) << made.err;
  const json report = made.Json();
  EXPECT_EQ(1, report["result"]);
  EXPECT_EQ("drive.log", report["out"]);
  EXPECT_EQ(358, report["packets"]["B193"]["1"]);
  EXPECT_EQ(465, report["records"]["1"]);
  EXPECT_EQ(1, report["skipped"]["frame with a wrong checksum"]);
  const std::string stream = " --stream 'drive_TESSARY_TN300_LTE(1)' ";
  EXPECT_EQ(0, Run("export-excel drive.log" + stream + "--out drive.xlsx").exit_code);
  EXPECT_TRUE(Exists("drive.xlsx"));
  const ProgramRun text = Run("export-text drive.log" + stream + "--ie LTE_PCI PBCH_RSRP PBCH_RSRQ --out drive.txt");
  EXPECT_EQ(0, text.exit_code) << text.err;
  const std::string lines = ReadText(Path("drive.txt"));
  EXPECT_EQ(475, std::count(lines.begin(), lines.end(), '\n'));  // a title, the records and the events
}

TEST_F(Recordings, AnImportMakesTheLogBesideTheProject) {
  const std::string command = "import handset_drive.qmdl --track handset_drive.gpx --project work.qlp --json";
  const ProgramRun first = Run(command);
  ASSERT_EQ(0, first.exit_code) << first.err;
  const json report = first.Json();
  EXPECT_EQ(Path("handset_drive.log"), report["recordings"][0]["out"]);
  EXPECT_EQ(Path("handset_drive.log"), report["logs"][0]["path"]);
  EXPECT_EQ(474, report["logs"][0]["rows"]);
  EXPECT_NEAR(116.3, report["logs"][0]["bounds"]["longitude"][0].get<double>(), 1e-3);
  EXPECT_EQ(Path("handset_drive_2.log"), Run(command).Json()["recordings"][0]["out"]);
  EXPECT_TRUE(Exists("handset_drive_2.log"));
  EXPECT_EQ(2, Run("import other.log --track handset_drive.gpx").exit_code);
}

TEST_F(Recordings, WhatIsNoRecordingIsRefused) {
  WriteText(Path("text.txt"), "nothing of the kind\n");
  const ProgramRun in_part = Run("log from-modem text.txt handset_drive.qmdl --out a.log --json");
  EXPECT_EQ(3, in_part.exit_code);
  EXPECT_EQ(2, in_part.Json()["result"]);
  EXPECT_EQ(0, in_part.Json()["files"][0]["result"]);
  const ProgramRun nothing = Run("log from-modem text.txt missing.qmdl --out b.log --json");
  EXPECT_EQ(1, nothing.exit_code);
  EXPECT_EQ(0, nothing.Json()["result"]);
  EXPECT_FALSE(Exists("b.log"));
  EXPECT_EQ(1, Run("log from-modem handset_drive.qmdl --track text.txt --out b.log").exit_code);
  EXPECT_EQ(2, Run("log from-modem handset_drive.qmdl --out b.log --utc-offset 8").exit_code);
  EXPECT_EQ(2, Run("log from-modem handset_drive.qmdl --out b.log --from yesterday").exit_code);
  EXPECT_FALSE(Exists("b.log"));
}

}  // namespace
}  // namespace loom::test
