#include <gtest/gtest.h>

#include <filesystem>

#include "tests/qloom/program.h"
#include "tests/support/temp_folder.h"

namespace loom::test {
namespace {

using nlohmann::json;

// A file name, as it is spelled where only characters of GBK have a place.
struct Name {
  std::string native;
  std::string spelled;
};
const Name kNames[] = {{"日志", "日志"},
                       {"Köln", "K\\xC3\\xB6ln"},
                       {"지도", "\\xEC\\xA7\\x80\\xEB\\x8F\\x84"},
                       {"😀", "\\xF0\\x9F\\x98\\x80"},
                       {"b\xFF"
                        "d",
                        "b\\xFFd"}};

class FileNames : public ::testing::Test {
 protected:
  ProgramRun Run(const std::string& arguments) { return RunQloom(folder_.native().string(), arguments); }
  void SetUp() override { ASSERT_EQ(0, Run("log simulate drive.log --minutes 1").exit_code); }

  testing::TempFolder folder_;
};

TEST_F(FileNames, AreShownAsTheyAreAndNamedInBothSpellings) {
  for (const auto& [native, spelled] : kNames) {
    std::filesystem::copy_file(folder_.native() / "drive.log", folder_.native() / (native + ".log"));
    const std::string stream = spelled + "_RV2230_TD(1)";
    const json log = Run("import '" + native + ".log' --json").Json()["logs"][0];
    EXPECT_EQ((folder_.native() / "").string() + spelled + ".log", log["path"]);
    EXPECT_EQ(stream, log["streams"][0]["name"]);

    const ProgramRun human = Run("import '" + spelled + ".log' --project '" + spelled + ".qlp'");
    EXPECT_EQ(0, human.exit_code) << human.err;
    EXPECT_NE(std::string::npos, human.out.find("/" + native + ".log: imported")) << human.out;
    EXPECT_NE(std::string::npos, human.out.find(stream)) << human.out;
    EXPECT_NE(std::string::npos, Run("project show '" + native + ".qlp'").out.find("/" + native + ".log\n"));
    EXPECT_EQ(1, Run("open '" + native + ".qlp' --json").Json()["result"]);

    for (const std::string& name : {native + "_RV2230_TD(1)", stream}) {
      const std::string chosen = " --stream '" + name + "'";
      EXPECT_EQ(2u, Run("rows '" + native + ".log' --count 2" + chosen).Lines().size()) << name;
      const ProgramRun text = Run("export-text '" + native + ".log' --ie UARFCN --out '" + spelled + ".txt'" + chosen);
      EXPECT_EQ(0, text.exit_code) << text.err;
      EXPECT_NE(std::string::npos, text.out.find("/" + native + ".txt\n")) << text.out;
      EXPECT_EQ(0, Run("export-excel '" + native + ".log' --out t.xlsx" + chosen).exit_code);
    }
    const ProgramRun cut = Run("cut '" + native + ".log' '" + spelled +
                               "/x.log' --no --from '2024-05-17 10:00:00' --to '2024-05-17 10:00:01'");
    EXPECT_EQ(1, cut.exit_code);
    EXPECT_NE(std::string::npos, cut.err.find("/" + native + "/")) << cut.err;
  }
  const ProgramRun missing = Run("log info '지도2.log'");
  EXPECT_EQ(0u, missing.err.find("qloom: 지도2.log: ")) << missing.err;
}

TEST_F(FileNames, AnUnknownCommandIsNamedWithNearOnes) {
  for (const auto& [words, near] : {std::pair{"improt", "import"},
                                    {"logs", "near it: log"},
                                    {"info x.log", "log info"},
                                    {"log simulat", "log simulate"},
                                    {"xyzzyx", "\"xyzzyx\""}}) {
    const ProgramRun run = Run(words);
    EXPECT_EQ(2, run.exit_code) << words;
    EXPECT_EQ(0u, run.err.find("qloom: there is no command \"")) << run.err;
    EXPECT_NE(std::string::npos, run.err.find(near)) << run.err;
  }
}

}  // namespace
}  // namespace loom::test
