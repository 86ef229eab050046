#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include "platform/encoding.h"
#include "platform/ui/list_ctrl.h"
#include "resources/log_tools_templates.h"
#include "tests/logtools/log_tool_test.h"

namespace loom::testing {
namespace {

using Row = std::vector<CString>;

const CString kNoMerge = "合并过程出现错误！请重试。"_gbk;

class Combine : public LogToolTest {
 protected:
  // The cells of a row that shows a log of the 17th of May.
  Row RowOf(int order, const CString& name, const CString& type, const CString& start, const CString& end) const {
    return {Format("%d", order), name, File(name), type, "2024.05.17 " + start, "2024.05.17 " + end};
  }
  Row OutdoorRow(int order, const CString& name, const CString& start, const CString& end) const {
    return RowOf(order, name, "室外测试日志"_gbk, start, end);
  }
  // The order of the listed files.
  ScriptedUser& SeeOrder(ScriptedUser& user, const std::vector<CString>& names, int list = kListLteLogs) const {
    return user.Do("see the order", [=](CDialog& dialog) {
      auto& rows = dialog.GetDlgItem<CListCtrl>(list);
      std::vector<CString> seen;
      for (int row = 0; row < rows.GetItemCount(); ++row) {
        EXPECT_EQ(Format("%d", row + 1), rows.GetItemText(row, 0));
        seen.push_back(rows.GetItemText(row, 1));
      }
      EXPECT_EQ(names, seen);
    });
  }
  ScriptedUser& Add(ScriptedUser& user, const std::vector<CString>& paths) const {
    return user.Press(kButtonAddLogs).PickFiles(paths);
  }
};

TEST_F(Combine, ListsLogsByStartAndMergesThem) {
  const CString late = Write("late.log", {kTen + 5.0, kTen + 70.5});
  const CString early = Write("early.log", {kTen, kTen + 60.0}, {.version = 600});
  ScriptedUser user;
  user.Expect(kDialogCombine)
      .SeeTitle("合并日志文件"_gbk)
      .SeeItems(kComboCombineKind, {"LTE日志"_gbk, "自动路测日志"_gbk})
      .SeeVisible(kListAutoTestLogs, false)
      .SeeEnabled(kIdOk, false);
  Add(user, {late, early})
      .SeeRows(kListLteLogs, {RowOf(1, "early.log", "合并过的室外测试日志"_gbk, "10:00:00.000", "10:01:00.000"),
                              OutdoorRow(2, "late.log", "10:00:05.000", "10:01:10.500")})
      .SeeEnabled(kIdOk, false)
      .Press(kButtonCombineTarget)
      .PickFiles({File("merged")})
      .SeeText(kEditCombineTarget, File("merged.log"))
      .SeeEnabled(kIdOk, true)
      .Ok()
      .ExpectMessage("合并日志文件 merged.log 成功！"_gbk, MessageIcon::kNone)
      .SeeRows(kListLteLogs, {})
      .SeeText(kEditCombineTarget, "")
      .SeeEnabled(kIdOk, false)
      .Cancel();
  manager_.CombineLogFile();
  EXPECT_EQ((std::vector<double>{0.0, 5.0, 60.0, 70.5}), Times("merged.log"));
  ASSERT_EQ(2u, user.file_dialogs().size());
  EXPECT_EQ("选择日志文件"_gbk, user.file_dialogs()[0].title);
  EXPECT_TRUE(user.file_dialogs()[0].multi_select && user.file_dialogs()[0].must_exist);
  EXPECT_EQ("新建日志文件"_gbk, user.file_dialogs()[1].title);
  EXPECT_TRUE(user.file_dialogs()[1].save && user.file_dialogs()[1].overwrite_prompt);
  EXPECT_EQ(0, user.wait_cursor_depth());
}

TEST_F(Combine, RefusesLogsThatDoNotFit) {
  const CString good = Write("good.log");
  const CString autos = Write("auto.log", {kTen}, {.kind = LogKind::kAuto});
  const CString type3 = Write("type3.log", {kTen}, {.test_type = 3});
  const CString foreign = File("foreign.log");
  WriteWholeFile(foreign, "no log");
  const CString v130 = Write("v130.log", {kTen}, {.version = 130});
  const CString v131 = Write("v131.log", {kTen + 1.0}, {.version = 131});
  const CString indoor = Write("indoor.log", {kTen}, {.test_type = 2});
  ScriptedUser user;
  user.Expect(kDialogCombine);
  const auto refused = [&](const CString& path, const char* text) {
    user.ExpectMessage(Format(Utf8ToGbk(text), path), MessageIcon::kWarning);
  };
  Add(user, {good, autos, type3, foreign, v130, v131, indoor, good});
  refused(autos, "%s日志文件类型与选择类型不符!");
  refused(type3, "%s日志文件类型错误!");
  refused(foreign, "%s日志文件类型错误!");
  refused(v130, "%s日志文件版本过低，不能合并!");
  refused(indoor, "%s日志文件类型与前面文件类型不一致，不能合并!");
  SeeOrder(user, {"good.log", "v131.log"}).ChooseAt(kComboCombineKind, 1);
  Add(user, {good, autos});
  refused(good, "%s日志文件类型与选择类型不符!");
  SeeOrder(user, {"auto.log"}, kListAutoTestLogs).SeeVisible(kListLteLogs, false).ChooseAt(kComboCombineKind, 0);
  // Cleared, the list takes indoor logs.
  user.Press(kButtonClearLogs);
  Add(user, {indoor})
      .SeeRows(kListLteLogs, {RowOf(1, "indoor.log", "室内测试日志"_gbk, "10:00:00.000", "10:00:00.000")});
  user.Cancel();
  manager_.CombineLogFile();
  const std::vector<MessageBoxRequest>& messages = user.messages();
  ASSERT_EQ(6u, messages.size());
  EXPECT_EQ("类型错误"_gbk, messages[0].caption);
  EXPECT_EQ("版本错误"_gbk, messages[3].caption);
  EXPECT_NE(nullptr, messages[0].owner);
}

// Without statistics the times come from a second look at the file, for which no descriptor is left.
TEST_F(Combine, ALogThatCannotBeOpenedTakesThoseBeforeItAlong) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizers' own checks need descriptors";
#endif
  const CString first = Write("first.log");
  const CString torn = Write("torn.log");
  const CString last = Write("last.log");
  const std::string bytes = ReadWholeText(torn);
  WriteWholeFile(torn, bytes.substr(0, bytes.size() - 4));
  rlimit old{};
  getrlimit(RLIMIT_NOFILE, &old);
  ScriptedUser user;
  user.Expect(kDialogCombine).Do("leave one descriptor", [&](CDialog&) {
    const int next = dup(0);
    close(next);
    const rlimit one_more{static_cast<rlim_t>(next) + 1, old.rlim_max};
    setrlimit(RLIMIT_NOFILE, &one_more);
  });
  Add(user, {first, torn, last}).ExpectMessage(Format("%s日志文件打开异常!"_gbk, torn), MessageIcon::kWarning);
  SeeOrder(user, {"last.log"}).Cancel();
  manager_.CombineLogFile();
  setrlimit(RLIMIT_NOFILE, &old);
}

TEST_F(Combine, MovesRowsAndRespectsTheirOrder) {
  const std::vector<CString> names{"a.log", "b.log", "c.log", "d.log"};
  std::vector<CString> paths;
  for (int i = 0; i < 4; ++i) paths.push_back(Write(names[static_cast<std::size_t>(i)], {kTen + i * 10.0}));
  const CString between = Write("e.log", {kTen + 15.0});
  ScriptedUser user;
  Add(user.Expect(kDialogCombine), paths);
  user.SelectRows(kListLteLogs, {0, 2}).Press(kButtonMoveUp);
  SeeOrder(user, names).SelectRows(kListLteLogs, {1, 2}).Press(kButtonMoveUp);
  SeeOrder(user, {"b.log", "c.log", "a.log", "d.log"})
      .SeeSelectedRows(kListLteLogs, {0, 1})
      .SeeFocus(kListLteLogs)
      .Press(kButtonMoveDown);
  SeeOrder(user, names).SelectRows(kListLteLogs, {2, 3}).Press(kButtonMoveDown);
  SeeOrder(user, names).SelectRows(kListLteLogs, {0}).Press(kButtonMoveDown).Press(kButtonMoveDown);
  SeeOrder(user, {"b.log", "c.log", "a.log", "d.log"});
  // Behind the last row that starts earlier.
  SeeOrder(Add(user, {between}), {"b.log", "c.log", "a.log", "e.log", "d.log"});
  user.SelectRows(kListLteLogs, {1, 4})
      .Press(kButtonRemoveLogs)
      .ExpectMessage("是否从列表中删除选中的日志文件？"_gbk)
      .Answer(MessageAnswer::kNo)
      .Press(kButtonRemoveLogs)
      .ExpectMessage("是否从列表中删除选中的日志文件？"_gbk)
      .Answer(MessageAnswer::kYes);
  SeeOrder(user, {"b.log", "a.log", "e.log"});
  // The removed ones can be added again.
  SeeOrder(Add(user, {paths[2]}), {"b.log", "a.log", "e.log", "c.log"}).Cancel();
  manager_.CombineLogFile();
}

TEST_F(Combine, MergeButtonNeedsATargetAndTwoLogs) {
  const CString a = Write("a.log");
  const CString b = Write("b.log");
  const CString indoor = Write("indoor.log", {kTen}, {.test_type = 2});
  ScriptedUser user;
  user.Expect(kDialogCombine).Press(kButtonCombineTarget).PickFiles({File("out.log")}).SeeEnabled(kIdOk, false);
  Add(user, {a}).SeeEnabled(kIdOk, false);
  Add(user, {b}).SeeEnabled(kIdOk, true);
  // The other kind does not touch the button, but has no logs.
  user.ChooseAt(kComboCombineKind, 1)
      .SeeEnabled(kIdOk, true)
      .Ok()
      .ExpectMessage("请选择多个日志文件进行合并！"_gbk, MessageIcon::kWarning)
      .ChooseAt(kComboCombineKind, 0);
  user.SelectRows(kListLteLogs, {0}).Press(kButtonRemoveLogs).ExpectMessage("是否从列表中删除选中的日志文件？"_gbk);
  user.SeeEnabled(kIdOk, false);
  user.SelectRows(kListLteLogs, {0}).Press(kButtonRemoveLogs).ExpectMessage("是否从列表中删除选中的日志文件？"_gbk);
  // An empty list takes logs of any test type again.
  SeeOrder(Add(user, {indoor}), {"indoor.log"}).Cancel();
  manager_.CombineLogFile();
}

TEST_F(Combine, TooManyNamesAreRefusedAndAskedForAgain) {
  const CString a = Write("a.log");
  const std::vector<CString> many(12'000, a);
  ScriptedUser user;
  user.Expect(kDialogCombine).Press(kButtonAddLogs).PickFiles(many);
  user.ExpectMessage("选择文件个数过多，请减少文件个数后重试!"_gbk, MessageIcon::kWarning).PickFiles({a});
  SeeOrder(user, {"a.log"}).Cancel();
  manager_.CombineLogFile();
}

TEST_F(Combine, FailedMergesSayWhyAndKeepTheList) {
  const CString a = Write("a.log");
  const CString b = Write("b.log", {kTen + 1.0});
  UnluckyUser user;
  Add(user.Expect(kDialogCombine), {a, b});
  const auto target = [&](const CString& path) { user.Press(kButtonCombineTarget).PickFiles({path}); };
  target(File("missing/out.log"));
  user.Ok().ExpectMessage(kNoMerge, MessageIcon::kError);
  target(a);
  user.Ok().ExpectMessage("文件异常，无法合并！"_gbk, MessageIcon::kError);
  target(File("out.log"));
  user.Do("bad luck", [&](CDialog&) { user.fails = true; }).Ok();
  user.ExpectMessage("合并过程中出现异常！请重试。"_gbk, MessageIcon::kError);
  user.Do("luck", [&](CDialog&) {
    user.fails = false;
    Write("b.log", {kTen + 1.0}, {.version = 120});  // an old one in its place
  });
  user.Ok().ExpectMessage("部分文件版本过旧，未能参与合并。"_gbk).Answer(MessageAnswer::kNo);
  SeeOrder(user, {"a.log", "b.log"}).SeeText(kEditCombineTarget, File("out.log")).SeeEnabled(kIdOk, true).Cancel();
  manager_.CombineLogFile();
  EXPECT_EQ(2u, Times("a.log").size());
  EXPECT_EQ(MessageButtons::kYesNo, user.messages().back().buttons);
}

TEST_F(Combine, AutomaticTestLogs) {
  const CString a = Write("a.log", {kTen, kTen + 90.0}, {.kind = LogKind::kAuto});
  const CString b = Write("b.log", {kTen - 60.25}, {.version = 110, .test_type = 2, .kind = LogKind::kAuto});
  const CString type = "室外测试日志"_gbk;
  ScriptedUser user;
  user.Expect(kDialogCombine).ChooseAt(kComboCombineKind, 1);
  Add(user, {a, b})
      .SeeRows(kListAutoTestLogs, {{"1", "b.log", b, type, "2024-05-17 09:58:59.750", "2024-05-17 09:58:59.750"},
                                   {"2", "a.log", a, type, "2024-05-17 10:00:00.000", "2024-05-17 10:01:30.000"}})
      .Press(kButtonCombineTarget)
      .PickFiles({File("out.log")})
      .Ok()
      .ExpectMessage("文件异常，无法合并！"_gbk)  // indoor and outdoor
      .Do("outdoor", [&](CDialog&) { Write("b.log", {kTen - 60.25}, {.version = 110, .kind = LogKind::kAuto}); })
      .Ok()
      .ExpectMessage("合并日志文件 out.log 成功！"_gbk)
      .Cancel();
  manager_.CombineLogFile();
  EXPECT_EQ((std::vector<double>{-60.25, 0.0, 90.0}), Times("out.log"));
}

}  // namespace
}  // namespace loom::testing
