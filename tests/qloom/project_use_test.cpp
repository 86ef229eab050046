#include <gtest/gtest.h>

#include <filesystem>

#include "tests/qloom/program.h"
#include "tests/support/temp_folder.h"

namespace loom::test {
namespace {

using nlohmann::json;

// Several runs of the program around one project, and what they leave in it.
class ProjectUse : public ::testing::Test {
 protected:
  ProgramRun Run(const std::string& arguments) { return RunQloom(folder_.native().string(), arguments); }
  // A shell script in the folder, in which $Q is the program. Gives its exit code.
  int Shell(const std::string& script) {
    WriteText(Path("script"),
              "cd '" + folder_.native().string() + "'\nQ='" + testing::ProgramPath().string() + "'\n" + script);
    const int status = std::system(("bash '" + Path("script") + "'").c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  std::string Path(const std::string& name) const { return (folder_.native() / name).string(); }
  json Logs() { return Run("project show p.qlp --json").Json()["logs"]; }
  void Simulate(const std::string& log, int minutes) {
    ASSERT_EQ(0, Run("log simulate " + log + " --minutes " + std::to_string(minutes)).exit_code);
  }

  testing::TempFolder folder_;
};

TEST_F(ProjectUse, ImportsAtTheSameTimeFollowOneAnother) {
  Simulate("0.log", 1);
  EXPECT_EQ(0,
            Shell("for i in 1 2 3 4 5 6 7 8; do cp 0.log $i.log; done\n"
                  "for i in 1 2 3 4 5 6 7 8; do $Q import $i.log --project p.qlp >/dev/null 2>&1 & P+=\" $!\"; done\n"
                  "for p in $P; do wait $p || exit 1; done"));
  EXPECT_EQ(8u, Logs().size());
  EXPECT_FALSE(std::filesystem::exists(Path("p.qlp.lock")));
}

TEST_F(ProjectUse, AProjectInUseIsReadAndNotChanged) {
  Simulate("long.log", 60);
  Simulate("short.log", 1);
  ASSERT_EQ(0, Run("import short.log --project p.qlp").exit_code);
  // The holder is stopped while it reads its log.
  ASSERT_EQ(0, Shell("$Q import long.log --project p.qlp --trace-ui >/dev/null 2>trace & P=$!\n"
                     "until grep -qs position trace; do sleep 0.01; done\n"
                     "kill -STOP $P\n"
                     "$Q import short.log --project p.qlp --wait 0 --json >refused 2>said\n"
                     "echo $? >code\n"
                     "$Q project show p.qlp --json >shown\n"
                     "kill -CONT $P; wait $P"));
  EXPECT_EQ("1\n", ReadText(Path("code")));
  const json refused = json::parse(ReadText(Path("refused")));
  EXPECT_NE(std::string::npos, refused["error"].get<std::string>().find("in use by qloom (process ")) << refused;
  EXPECT_NE(std::string::npos, ReadText(Path("said")).find("in use by"));
  EXPECT_EQ(1u, json::parse(ReadText(Path("shown")))["logs"].size());
  EXPECT_EQ(2u, Logs().size());
}

TEST_F(ProjectUse, AnOpeningThatIsCancelledSavesNothing) {
  Simulate("long.log", 60);
  WriteText(Path("t.csv"), "RecordTime,RxLev\n2024-05-17 10:00:00.000,-70\n");
  ASSERT_EQ(0, Run("import long.log --project p.qlp").exit_code);
  const std::string import_text = "import-text t.csv --separator comma --time-format 'yyyy-mm-dd hh:nn:ss.ms' ";
  ASSERT_EQ(0, Run(import_text + "--project p.qlp").exit_code);
  const std::string saved = ReadText(Path("p.qlp"));

  EXPECT_EQ(130, Shell("$Q open p.qlp --save --json --trace-ui >out 2>trace & P=$!\n"
                       "until grep -qs position trace; do sleep 0.01; done\n"
                       "kill -INT $P; wait $P"));
  const json interrupted = json::parse(ReadText(Path("out")));
  // A fast machine may be done with the log when the signal comes.
  if (interrupted["logs"][0]["result"] == 1) {
    EXPECT_EQ(-1, interrupted["texts"][0]["result"]) << interrupted;
  } else {
    EXPECT_EQ(-1, interrupted["logs"][0]["result"]);
    EXPECT_EQ(-3, interrupted["texts"][0]["result"]) << "not begun";
  }
  EXPECT_EQ(saved, ReadText(Path("p.qlp")));

  const ProgramRun cancelled = Run("open p.qlp --save --json --cancel-at 40");
  EXPECT_NE(0, cancelled.exit_code);
  EXPECT_TRUE(cancelled.Json().contains("error"));
  EXPECT_EQ(saved, ReadText(Path("p.qlp")));
}

TEST_F(ProjectUse, WhateverFailsThereIsADocument) {
  Simulate("a.log", 1);
  // A disk on which the project has no room: known when it is saved.
  EXPECT_EQ(1, Shell("ulimit -f 40; $Q import a.log --project new.qlp --json >out 2>said"));
  const json unsaved = json::parse(ReadText(Path("out")));
  EXPECT_NE(std::string::npos, unsaved["error"].get<std::string>().find("cannot write")) << unsaved;
  EXPECT_EQ(1, unsaved["logs"][0]["result"]);
  EXPECT_FALSE(std::filesystem::exists(Path("new.qlp")));
  // A project that may not be written: known before anything is imported.
  ASSERT_EQ(0, Run("import a.log --project p.qlp").exit_code);
  std::filesystem::permissions(Path("p.qlp"), std::filesystem::perms{0444});
  const ProgramRun refused = Run("import a.log --project p.qlp --json --trace-ui");
  EXPECT_EQ(1, refused.exit_code);
  EXPECT_NE(std::string::npos, refused.Json()["error"].get<std::string>().find("write-protected"));
  EXPECT_EQ(std::string::npos, refused.err.find("progress"));
  struct Case {
    const char* arguments;
    int exit_code;
  };
  const Case cases[] = {{"open none.qlp --json", 1},
                        {"import a.log --json --config nowhere", 1},
                        {"import a.log --json --project no/folder/p.qlp", 1},
                        {"rows a.log --json --stream none", 1},
                        {"log dump none.log --json", 1},
                        {"import --json", 2},
                        {"import a.log --json --wait x", 2}};
  for (const Case& c : cases) {
    const ProgramRun run = Run(c.arguments);
    EXPECT_EQ(c.exit_code, run.exit_code) << c.arguments;
    EXPECT_TRUE(json::accept(run.out) && run.Json().contains("error")) << c.arguments << ": " << run.out;
  }
}

TEST_F(ProjectUse, AScriptsRelativePathsAreTheProjectsAbsoluteOnes) {
  Simulate("a.log", 1);
  WriteText(Path("steps.jsonl"), R"({"files": ["a.log"]})");
  const ProgramRun run = Run("ui import-log --script steps.jsonl --project p.qlp --trace-ui");
  ASSERT_EQ(0, run.exit_code) << run.err;
  EXPECT_EQ(Path("a.log"), Logs().at(0)["path"]);
  EXPECT_NE(std::string::npos, run.err.find(R"({"window":"files")")) << run.err;
  EXPECT_NE(std::string::npos, run.err.find(R"({"progress":"position")")) << run.err;

  EXPECT_EQ(130, Run("ui import-log --script steps.jsonl --project q.qlp --cancel-at 30").exit_code);
  EXPECT_FALSE(std::filesystem::exists(Path("q.qlp")));
}

TEST_F(ProjectUse, AScriptTellsMessagesBehindItsLastStepAndEndsWithAnInterrupt) {
  Simulate("a.log", 30);
  WriteText(Path("none.log"), "no log");
  WriteText(Path("steps.jsonl"), R"({"files": ["none.log"]})");
  const ProgramRun failed = Run("ui import-log --script steps.jsonl");
  EXPECT_EQ(1, failed.exit_code);
  EXPECT_FALSE(failed.Lines().back()["messages"].empty()) << failed.out;

  WriteText(Path("steps.jsonl"), R"({"files": ["a.log"]})"
                                 "\n"
                                 R"({"press": 1})");
  EXPECT_EQ(130, Shell("$Q ui import-log --script steps.jsonl --project p.qlp --trace-ui >out 2>trace & P=$!\n"
                       "until grep -qs position trace; do sleep 0.01; done\n"
                       "kill -INT $P; wait $P"));
  EXPECT_EQ(std::string::npos, ReadText(Path("trace")).find("left over"));
  EXPECT_FALSE(std::filesystem::exists(Path("p.qlp")));
}

}  // namespace
}  // namespace loom::test
