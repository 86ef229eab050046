#include "resources/log_tools_templates.h"
#include "tests/logtools/log_tool_test.h"

namespace loom::testing {
namespace {

constexpr CalendarDay kDay{2024, 5, 17};
const CString kBeyondSource = "目标文件截取时间不能超过源文件的起止时间！请重新设置。"_gbk;
const CString kEndNotLater = "目标文件截取设置中结束时间必须大于起始时间！请重新设置。"_gbk;
const CString kDone = "日志截取成功！"_gbk;
const CString kFailed = "日志截取失败！"_gbk;

class Partition : public LogToolTest {
 protected:
  static ScriptedUser& Source(ScriptedUser& user, const CString& path) {
    return user.Press(kButtonPartitionSource).PickFiles({path});
  }
  static ScriptedUser& Target(ScriptedUser& user, const CString& path) {
    return user.Press(kButtonPartitionTarget).PickFiles({path});
  }
  // Seconds behind ten o'clock.
  static ScriptedUser& Window(ScriptedUser& user, int from_s, int to_s) {
    const auto pick = [&user](int id, int second) {
      user.PickTime(id, 10 + (second < 0 ? -1 : 0), (second + 3600) / 60 % 60, (second + 3600) % 60);
    };
    pick(kPickerStartTime, from_s);
    pick(kPickerEndTime, to_s);
    return user;
  }
};

TEST_F(Partition, ShowsTheRangeAndCutsTheWholeOfIt) {
  const CString log = Write("a.log", {kTen + 0.9996, kTen + 20.0, kTen + 60.9});
  ScriptedUser user;
  user.Expect(kDialogPartition).SeeTitle("截取日志文件"_gbk);
  Source(user, log)
      .SeeText(kEditPartitionSource, log)
      .SeeText(kStaticSourceStart, "2024-05-17 10:00:00")
      .SeeText(kStaticSourceEnd, "2024-05-17 10:01:00")
      .SeeText(kPickerStartDate, "2024-05-17")
      .SeeText(kPickerStartTime, "10:00:00")
      .SeeText(kPickerEndDate, "2024-05-17")
      .SeeText(kPickerEndTime, "10:01:00");
  Target(user, File("cut.log")).Ok().ExpectMessage(kDone, MessageIcon::kNone);
  manager_.PartitionLogfile();
  EXPECT_EQ(Times("a.log"), Times("cut.log"));
}

TEST_F(Partition, ChecksTheWindow) {
  const CString log = Write("a.log", {kTen, kTen + 10.0, kTen + 60.0});
  ScriptedUser user;
  user.Expect(kDialogPartition);
  Source(user, log);
  Target(user, File("cut.log"));
  Window(user, 5, 5).Ok().ExpectMessage(kEndNotLater, MessageIcon::kError);
  Window(user, 6, 5).Ok().ExpectMessage(kEndNotLater, MessageIcon::kError);
  Window(user, -1, 60).Ok().ExpectMessage(kBeyondSource, MessageIcon::kError);
  Window(user, 0, 61).Ok().ExpectMessage(kBeyondSource, MessageIcon::kError);
  Window(user, 0, 60).PickDate(kPickerStartDate, {2024, 5, 16}).Ok().ExpectMessage(kBeyondSource);
  user.PickDate(kPickerStartDate, kDay);
  Window(user, 9, 10).Ok().ExpectMessage(kDone);
  manager_.PartitionLogfile();
  EXPECT_EQ((std::vector<double>{10.0}), Times("cut.log"));
}

TEST_F(Partition, AsksForPathsFirst) {
  const CString log = Write("a.log");
  ScriptedUser user;
  user.Expect(kDialogPartition).Ok().ExpectMessage("源文件路径为空！请选择要截取的源文件。"_gbk, MessageIcon::kError);
  Source(user, log).Ok().ExpectMessage("目标文件路径为空！请输入目标文件路径。"_gbk, MessageIcon::kError);
  user.SeeText(kEditPartitionTarget, "").Cancel();
  manager_.PartitionLogfile();
}

TEST_F(Partition, TargetsEndInLog) {
  const CString log = Write("a.log");
  for (const auto& [chosen, written] : {std::pair{"cut", "cut.log"}, {"b.log", "b.log"}, {"c.LOG", "c.LOG.log"}}) {
    ScriptedUser user;
    Source(user.Expect(kDialogPartition), log);
    Target(user, File(chosen)).Ok().ExpectMessage(kDone);
    manager_.PartitionLogfile();
    EXPECT_EQ(2u, Times(written).size()) << written;
  }
}

TEST_F(Partition, TheNameWithItsExtensionIsAskedForAgain) {
  const CString log = Write("a.log");
  Write("cut.log", {kTen});
  const CString question = Format("%s 已存在。要替换它吗？"_gbk, File("cut.log"));
  ScriptedUser user;
  Source(user.Expect(kDialogPartition), log);
  Target(user, File("cut")).Ok().ExpectMessage(question, MessageIcon::kWarning).Answer(MessageAnswer::kNo);
  user.Ok().ExpectMessage(question, MessageIcon::kWarning).Answer(MessageAnswer::kNo).Cancel();
  manager_.PartitionLogfile();
  EXPECT_EQ(1u, Times("cut.log").size());

  ScriptedUser willing;
  Source(willing.Expect(kDialogPartition), log);
  Target(willing, File("cut")).Ok().ExpectMessage(question, MessageIcon::kWarning).Answer(MessageAnswer::kYes);
  willing.ExpectMessage(kDone);
  manager_.PartitionLogfile();
  EXPECT_EQ(2u, Times("cut.log").size());
}

TEST_F(Partition, MissingFolderIsMadeOnRequest) {
  const CString log = Write("a.log");
  const CString question = Format("文件夹\"%s\"不存在，是否创建？"_gbk, File("new/"));
  ScriptedUser user;
  Source(user.Expect(kDialogPartition), log);
  Target(user, File("new/cut.log")).Ok().ExpectMessage(question).Answer(MessageAnswer::kNo);
  user.ExpectMessage("目标文件路径不存在！请选择有效的目标文件。"_gbk, MessageIcon::kError);
  Target(user, File("new/deep/cut.log"))
      .Ok()
      .ExpectMessage(Format("文件夹\"%s\"不存在，是否创建？"_gbk, File("new/deep/")))
      .Answer(MessageAnswer::kYes)
      .ExpectMessage("目标文件夹创建失败！请确认路径是否有效。"_gbk, MessageIcon::kError);
  Target(user, File("new/cut.log")).Ok().ExpectMessage(question).Answer(MessageAnswer::kYes).ExpectMessage(kDone);
  manager_.PartitionLogfile();
  EXPECT_EQ(2u, Times("new/cut.log").size());
}

TEST_F(Partition, RefusedSourceLeavesTheEarlierOne) {
  const CString log = Write("a.log", {kTen, kTen + 60.0}, {.kind = LogKind::kAuto});
  const CString foreign = File("foreign.log");
  WriteWholeFile(foreign, "no log");
  ScriptedUser user;
  Source(user.Expect(kDialogPartition), log);
  Source(user, foreign)
      .ExpectMessage("源文件已损坏或格式无法识别！请选择有效的日志。"_gbk, MessageIcon::kWarning)
      .SeeText(kEditPartitionSource, log)
      .SeeText(kStaticSourceEnd, "2024-05-17 10:01:00");
  Window(Target(user, File("cut.log")), 30, 60).Ok().ExpectMessage(kDone);
  manager_.PartitionLogfile();
  EXPECT_EQ((std::vector<double>{60.0}), Times("cut.log"));
  EXPECT_EQ(LogKind::kAuto, PeekLogHeader(File("cut.log"))->kind);
}

// The end's time of day comes on the log's own day, before the start.
TEST_F(Partition, LogOverMidnightHasNoWindow) {
  const CString log = Write("a.log", {kTen, 86'400.0 + 600.0});
  ScriptedUser user;
  Source(user.Expect(kDialogPartition), log)
      .SeeText(kStaticSourceStart, "2024-05-17 10:00:00")
      .SeeText(kStaticSourceEnd, "2024-05-17 00:10:00");
  Target(user, File("cut.log")).Ok().ExpectMessage(kEndNotLater);
  Window(user, 0, 60).Ok().ExpectMessage(kBeyondSource);
  user.Cancel();
  manager_.PartitionLogfile();
}

TEST_F(Partition, AutomaticTestLogOverMidnightIsCut) {
  const CString log = Write("a.log", {kTen, 86'400.0 + 600.0}, {.kind = LogKind::kAuto});
  ScriptedUser user;
  Source(user.Expect(kDialogPartition), log)
      .SeeText(kStaticSourceEnd, "2024-05-18 00:10:00")
      .PickTime(kPickerStartTime, 10, 0, 1);
  Target(user, File("cut.log")).Ok().ExpectMessage(kDone);
  manager_.PartitionLogfile();
  EXPECT_EQ((std::vector<double>{86'400.0 + 600.0 - kTen}), Times("cut.log"));
}

TEST_F(Partition, FailuresKeepTheDialogOpen) {
  const CString log = Write("a.log");
  UnluckyUser user;
  Source(user.Expect(kDialogPartition), log);
  Target(user, log).Ok().ExpectMessage(kFailed, MessageIcon::kInformation);
  Target(user, File("cut.log"));
  user.Do("bad luck", [&](CDialog&) { user.fails = true; }).Ok();
  user.ExpectMessage("日志截取过程出现异常！请确认日志是否有效。"_gbk, MessageIcon::kError);
  user.Do("luck", [&](CDialog&) { user.fails = false; }).Cancel();
  manager_.PartitionLogfile();
  EXPECT_EQ(2u, Times("a.log").size());
  EXPECT_FALSE(FileExists(File("cut.log")));
}

}  // namespace
}  // namespace loom::testing
