#include <gtest/gtest.h>

#include <filesystem>

#include "tests/qloom/program.h"
#include "tests/support/temp_folder.h"

namespace loom::test {
namespace {

using nlohmann::json;

class LogTools : public ::testing::Test {
 protected:
  ProgramRun Run(const std::string& arguments) { return RunQloom(folder_.native().string(), arguments); }
  std::string Path(const std::string& name) const { return (folder_.native() / name).string(); }
  // A log with a record at ten o'clock and one `seconds` later.
  void Make(const std::string& name, int seconds, int version = 160, const std::string& kind = "store") {
    std::string lines =
        json{{"kind", kind}, {"version", version}, {"test_type", 1}, {"date", "2024-05-17"}}.dump() + "\n";
    for (const int time : {36'000, 36'000 + seconds}) lines += json{{"kind", 1}, {"time", time}}.dump() + "\n";
    WriteText(Path(name + ".jsonl"), lines);
    const ProgramRun made = Run("log make " + name + ".jsonl " + name + ".log");
    ASSERT_EQ(0, made.exit_code) << made.err;
  }
  json Info(const std::string& log) { return Run("log info " + log + " --json").Json(); }

  testing::TempFolder folder_;
};

TEST_F(LogTools, CombineMergesInTheOrderOfTheDialog) {
  Make("a", 5);
  Make("b", 60);
  const ProgramRun run = Run("combine out.log b.log a.log --json");
  EXPECT_EQ(0, run.exit_code) << run.err;
  const json report = run.Json();
  EXPECT_EQ(1, report["result"]);
  EXPECT_EQ("out.log", report["out"]);
  EXPECT_EQ("合并日志文件 out.log 成功！", report["messages"][0]["text"]);
  EXPECT_EQ(4, Info("out.log")["records"]);
  EXPECT_EQ(600, Info("out.log")["version"]);
  // What is there is replaced only with --yes.
  EXPECT_EQ(1, Run("combine a.log b.log out.log --no").exit_code);
  EXPECT_EQ(2, Info("a.log")["records"]);
}

TEST_F(LogTools, CombineReportsRefusals) {
  Make("a", 5);
  Make("old", 5, 130);
  Make("auto", 5, 160, "auto");
  Make("auto2", 7, 160, "auto");
  const ProgramRun old = Run("combine out.log a.log old.log --json");
  EXPECT_EQ(1, old.exit_code);
  EXPECT_EQ(0, old.Json()["result"]);
  EXPECT_EQ("版本错误", old.Json()["messages"][0]["caption"]);
  Make("b", 5);
  const ProgramRun in_part = Run("combine part.log a.log old.log b.log --json");
  EXPECT_EQ(3, in_part.exit_code);
  EXPECT_EQ(2, in_part.Json()["result"]);
  EXPECT_EQ(4, Info("part.log")["records"]);
  EXPECT_EQ(1, Run("combine out.log auto.log auto2.log").exit_code);
  EXPECT_FALSE(std::filesystem::exists(Path("out.log")));
  EXPECT_EQ(0, Run("combine out.log auto.log auto2.log --kind auto").exit_code);
  EXPECT_EQ("auto", Info("out.log")["kind"]);
  EXPECT_EQ(1, Run("combine out.log a.log missing.log").exit_code);
  EXPECT_EQ(2, Run("combine out.log a.log").exit_code);
}

TEST_F(LogTools, CutTakesWholeSeconds) {
  Make("a", 60);
  const ProgramRun run = Run("cut a.log out --from '2024-05-17 10:00:00' --to '2024-05-17 10:00:59.000' --json");
  EXPECT_EQ(0, run.exit_code) << run.err;
  EXPECT_EQ("日志截取成功！", run.Json()["messages"][0]["text"]);
  EXPECT_EQ(1, Info("out.log")["records"]);
  const ProgramRun beyond = Run("cut a.log b.log --from '2024-05-17 10:00:00' --to '2024-05-17 10:01:01' --json");
  EXPECT_EQ(1, beyond.exit_code);
  EXPECT_EQ(0, beyond.Json()["result"]);
  EXPECT_EQ("error", beyond.Json()["messages"][0]["icon"]);
  EXPECT_EQ(1, Run("cut a.log new/b.log --no --from '2024-05-17 10:00:00' --to '2024-05-17 10:01:00'").exit_code);
  EXPECT_EQ(0, Run("cut a.log new/b.log --from '2024-05-17 10:00:00' --to '2024-05-17 10:01:00'").exit_code);
  EXPECT_EQ(2, Info("new/b.log")["records"]);
  EXPECT_EQ(2, Run("cut a.log b.log --from '2024-05-17 10:00:00.5' --to '2024-05-17 10:01:00'").exit_code);
}

// On this day summer time skips the hour from two o'clock on; the log's clock has it.
TEST_F(LogTools, CutFindsTheHourThatSummerTimeSkips) {
  std::string lines = json{{"kind", "store"}, {"version", 160}, {"test_type", 1}, {"date", "2024-03-31"}}.dump() + "\n";
  for (int minute = 60; minute < 240; ++minute) lines += json{{"kind", 1}, {"time", minute * 60}}.dump() + "\n";
  WriteText(Path("night.jsonl"), lines);
  ASSERT_EQ(0, Run("log make night.jsonl night.log").exit_code);
  const std::string window = "--from '2024-03-31 02:00:00' --to '2024-03-31 02:59:59'";
  const ProgramRun run = RunQloom(folder_.native().string(), "cut night.log cut.log " + window, "TZ=Europe/Berlin ");
  EXPECT_EQ(0, run.exit_code) << run.err;
  EXPECT_EQ("日志截取成功！\n", run.err);
  EXPECT_EQ(60, Info("cut.log")["records"]);
}

TEST_F(LogTools, DialogsAreScripted) {
  Make("a", 60);
  Make("b", 30);
  const auto play = [this](const std::string& command, const std::vector<json>& steps) {
    std::string lines;
    for (const json& step : steps) lines += step.dump() + "\n";
    WriteText(Path("steps.jsonl"), lines);
    return Run("ui " + command + " --script steps.jsonl");
  };
  const ProgramRun combine = play("combine", {{{"press", 9040}},
                                              {{"files", {Path("a.log"), Path("b.log")}}},
                                              {{"press", 9038}},
                                              {{"files", {Path("out.log")}}},
                                              {{"button", "ok"}},
                                              {{"answer", "ok"}},
                                              {{"button", "cancel"}}});
  EXPECT_EQ(0, combine.exit_code) << combine.err << combine.out;
  EXPECT_EQ(4, Info("out.log")["records"]);
  const ProgramRun partition = play("partition", {{{"press", 9128}},
                                                  {{"files", {Path("out.log")}}},
                                                  {{"press", 9129}},
                                                  {{"files", {Path("cut.log")}}},
                                                  {{"time", {9135, "10:00:30"}}},
                                                  {{"button", "ok"}},
                                                  {{"answer", "ok"}}});
  EXPECT_EQ(0, partition.exit_code) << partition.err << partition.out;
  EXPECT_EQ(3, Info("cut.log")["records"]);
}

}  // namespace
}  // namespace loom::test
