#include <gtest/gtest.h>

#include "tests/qloom/program.h"
#include "tests/support/temp_folder.h"

namespace loom::test {
namespace {

// Words of a shell command, run in a folder with a drive; what it prints is in the files "out" and "err".
class StandardOutput : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(0, RunQloom(Folder(), "log simulate drive.log --minutes 2 --handsets td,gsm").exit_code);
    ASSERT_EQ(0, RunQloom(Folder(), "log simulate other.log --minutes 1").exit_code);
    WriteText(Folder() + "/cells.jsonl", R"({"LAC": 106, "CI": 7000001, "Longitude": 116.5, "Latitude": 39.51})");
    ASSERT_EQ(0, RunQloom(Folder(), "net put tbl_Cell cells.jsonl --project p.qlp").exit_code);
  }
  std::string Folder() const { return folder_.native().string(); }
  int Shell(const std::string& command) const {
    const int status = std::system(
        ("cd '" + Folder() + "' && qloom='" + testing::ProgramPath().string() + "' && { " + command + "; } 2>err").c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  std::string Err() const { return ReadText(Folder() + "/err"); }

  testing::TempFolder folder_;
};

TEST_F(StandardOutput, WhatCannotBeWrittenFailsEveryCommandThatPrints) {
  const std::string stream = " --stream 'drive_RV2230_TD(1)'";
  for (const std::string& command :
       {std::string("--help"), std::string("--version"), std::string("import drive.log"),
        std::string("import drive.log --json"), "rows drive.log" + stream, std::string("project show p.qlp"),
        std::string("net list tbl_Cell --project p.qlp"), std::string("ies"), std::string("navigator tree"),
        std::string("navigator lists --json"), std::string("log info drive.log"), std::string("log dump drive.log"),
        std::string("log simulate new.log --minutes 1"), std::string("log to-intermediate drive.log drive.iml"),
        std::string("combine day.log drive.log other.log"), "export-text drive.log --ie UARFCN --out d.txt" + stream,
        "export-excel drive.log --out d.xlsx" + stream}) {
    EXPECT_EQ(1, Shell("\"$qloom\" " + command + " >/dev/full")) << command;
    EXPECT_NE(std::string::npos, Err().find("standard output: cannot write: No space left")) << command << Err();
  }
  EXPECT_EQ(1, Shell("\"$qloom\" ies >&-"));
  EXPECT_NE(std::string::npos, Err().find("standard output: cannot write"));
}

TEST_F(StandardOutput, AReaderThatStopsEndsTheProgramQuietly) {
  for (const char* command : {"ies", "log dump drive.log", "rows drive.log --stream 'drive_RV2230_TD(1)'"}) {
    Shell("{ \"$qloom\" " + std::string(command) + "; echo $? >code; } | head -n 1 >line");
    EXPECT_EQ("141\n", ReadText(Folder() + "/code")) << command;  // as a shell tells SIGPIPE
    EXPECT_EQ("", Err()) << command;
  }
}

}  // namespace
}  // namespace loom::test
