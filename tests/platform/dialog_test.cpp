#include "platform/ui/dialog.h"

#include <gtest/gtest.h>

#include "platform/file.h"
#include "platform/ui/file_dialog.h"
#include "platform/ui/message_box.h"
#include "platform/ui/wait_cursor.h"
#include "resources/handset_type_templates.h"
#include "tests/support/scripted_user_gtest.h"
#include "tests/support/temp_folder.h"

namespace loom::dialog_test {
namespace {

enum Id { kName = 100, kCount, kBox, kTriState, kRed, kGreen, kBlue, kSmall, kList, kFree, kAsk, kNested, kGhost };

// clang-format off
constexpr ControlTemplate kControls[] = {
    {kName,     ControlClass::kEdit,        "",       {}},
    {kCount,    ControlClass::kEdit,        "",       {}, style::kDigitsOnly},
    {kBox,      ControlClass::kCheckBox,    "框",     {}},
    {kTriState, ControlClass::kCheckBox,    "",       {}, style::kThreeState},
    {kRed,      ControlClass::kRadioButton, "",       {}, style::kGroupStart},
    {kGreen,    ControlClass::kRadioButton, "",       {}},
    {kBlue,     ControlClass::kRadioButton, "",       {}},
    {kSmall,    ControlClass::kRadioButton, "",       {}, style::kGroupStart},
    {kList,     ControlClass::kComboBox,    "",       {}, style::kGroupStart},
    {kFree,     ControlClass::kComboBox,    "",       {}, style::kEditable | style::kSorted},
    {kAsk,      ControlClass::kPushButton,  "问(&A)", {}},
    {kNested,   ControlClass::kPushButton,  "",       {}, style::kDisabled},
    {kGhost,    ControlClass::kPushButton,  "",       {}, style::kHidden},
    {kIdOk,     ControlClass::kDefaultButton, "确定", {}},
};
// clang-format on
constexpr DialogTemplate kTemplate{1, "试验", {}, kControls};

class SampleDialog : public CDialog {
 public:
  SampleDialog() : CDialog(kTemplate) {
    OnClicked(kAsk, [this] {
      if (ShowMessageBox("继续？"_gbk, MessageIcon::kQuestion, MessageButtons::kYesNo) == MessageAnswer::kYes)
        GetDlgItem(kNested).EnableWindow(true);
    });
    OnClicked(kNested, [this] { nested_result = SampleDialog().DoModal(); });
    OnClicked(kBox, [this] { ++clicks; });
    OnSelChange(kList, [this] { ++selections; });
    OnChange(kName, [this] { ++changes; });
  }

  CString name = "中"_gbk;
  std::int32_t count = 5;
  std::int32_t box = 1;
  std::int32_t colour = 1;
  CString chosen = "three";
  CString free = "x";
  int nested_result = 0;
  int clicks = 0;
  int selections = 0;
  int changes = 0;

 protected:
  void OnInitDialog() override {
    for (const char* entry : {"one", "Two", "three"}) GetDlgItem<CComboBox>(kList).AddString(entry);
    for (const char* entry : {"b", "C", "a"}) GetDlgItem<CComboBox>(kFree).AddString(entry);
    GetDlgItem<CEdit>(kName).SetLimitText(5);
    CDialog::OnInitDialog();
  }
  void DoDataExchange(CDataExchange& exchange) override {
    exchange.Text(kName, name);
    exchange.Number(kCount, count);
    exchange.Check(kBox, box);
    exchange.Radio(kRed, colour);
    exchange.ComboText(kList, chosen);
    exchange.ComboText(kFree, free);
  }
};

TEST(Dialog, ShowsItsDataAndTakesItBackOnOk) {
  ScriptedUser user;
  user.Expect(1)
      .SeeTitle("试验"_gbk)
      .SeeText(kName, "中"_gbk)
      .SeeText(kCount, "5")
      .SeeChecked(kBox, 1)
      .SeeChecked(kGreen, 1)
      .SeeText(kList, "three")
      .SeeItems(kFree, {"a", "b", "C"})
      .SeeText(kFree, "x")
      .Type(kName, "新名"_gbk)
      .Type(kCount, "42")
      .Check(kBox, false)
      .Press(kBlue)
      .Choose(kList, "Two")
      .Type(kFree, "y")
      .SeeChecked(kGreen, 0)
      .Ok();
  SampleDialog dialog;
  EXPECT_EQ(kIdOk, dialog.DoModal());
  EXPECT_EQ("新名"_gbk, dialog.name);
  EXPECT_EQ(42, dialog.count);
  EXPECT_EQ(0, dialog.box);
  EXPECT_EQ(2, dialog.colour);
  EXPECT_EQ("Two", dialog.chosen);
  EXPECT_EQ("y", dialog.free);
}

TEST(Dialog, OnlyAPersonsActionsNotify) {
  ScriptedUser user;
  SampleDialog dialog;
  user.Expect(1)
      .Do("set from the program",
          [](CDialog& shown) {
            shown.GetDlgItem<CButton>(kBox).SetCheck(0);
            shown.GetDlgItem<CComboBox>(kList).SetCurSel(0);
            shown.GetDlgItem(kName).SetWindowText("z");
          })
      .Do("see no notification", [&](CDialog&) { EXPECT_EQ(0, dialog.clicks + dialog.selections + dialog.changes); })
      .Check(kBox, false)  // is clear already: no click
      .Check(kBox, true)
      .ChooseAt(kList, 2)
      .Type(kName, "q")
      .Cancel();
  EXPECT_EQ(kIdCancel, dialog.DoModal());
  EXPECT_EQ(1, dialog.clicks);
  EXPECT_EQ(1, dialog.selections);
  EXPECT_EQ(1, dialog.changes);
  EXPECT_EQ("中"_gbk, dialog.name);  // cancelled: the data is not taken
}

TEST(Dialog, ARefusedValueShowsItsMessageAndKeepsTheDialogOpen) {
  ScriptedUser user;
  user.Expect(1)
      .Do("clear the number", [](CDialog& shown) { shown.GetDlgItem(kCount).SetWindowText("x1"); })
      .Ok()
      .ExpectMessage("请输入一个整数."_gbk, MessageIcon::kWarning)
      .Do("see the focus", [](CDialog& shown) { EXPECT_EQ(kCount, shown.GetFocusId()); })
      .Type(kCount, "1")
      .Ok();
  SampleDialog dialog;
  EXPECT_EQ(kIdOk, dialog.DoModal());
  EXPECT_EQ(1, dialog.count);
  EXPECT_EQ("Quillon Loom", user.messages().front().caption);
}

TEST(Dialog, MessagesAndDialogsNest) {
  ScriptedUser user;
  user.Expect(1)
      .SeeEnabled(kNested, false)
      .Press(kAsk)
      .ExpectMessage("继续？"_gbk)
      .Answer(MessageAnswer::kNo)
      .SeeEnabled(kNested, false)
      .Press(kAsk)
      .ExpectMessage("继续？"_gbk)
      .SeeEnabled(kNested, true)
      .Press(kNested)
      .Expect(1)
      .Ok()
      .Cancel();
  SampleDialog dialog;
  EXPECT_EQ(kIdCancel, dialog.DoModal());
  EXPECT_EQ(kIdOk, dialog.nested_result);
}

TEST(Dialog, EachRunStartsFromTheTemplate) {
  ScriptedUser user;
  SampleDialog dialog;
  user.Expect(1).Press(kAsk).ExpectMessage("继续？"_gbk).SeeEnabled(kNested, true).Ok();
  user.Expect(1).SeeEnabled(kNested, false).SeeItems(kList, {"one", "Two", "three"}).Cancel();
  EXPECT_EQ(kIdOk, dialog.DoModal());
  EXPECT_EQ(kIdCancel, dialog.DoModal());
}

TEST(Dialog, OneThatEndsItselfWhileItStartsIsNeverShown) {
  class SelfEnding : public CDialog {
   public:
    SelfEnding() : CDialog(kTemplate) {}
    void OnInitDialog() override {
      EndDialog(77);
      EndDialog(kIdOk);  // too late
    }
  };
  ScriptedUser user;
  SelfEnding dialog;
  EXPECT_EQ(77, dialog.DoModal());
  EXPECT_FALSE(dialog.IsRunning());
}

TEST(Dialog, AnExceptionOfAHandlerEndsTheRun) {
  class Throwing : public CDialog {
   public:
    Throwing() : CDialog(kTemplate) {
      OnClicked(kAsk, [] { throw Error("broken"); });
    }
  };
  ScriptedUser user;
  user.Expect(1).Press(kAsk);
  Throwing dialog;
  EXPECT_THROW(dialog.DoModal(), Error);
  EXPECT_FALSE(dialog.IsRunning());
}

TEST(Controls, AnEditTakesWhatCanBeTyped) {
  ScriptedUser user;
  user.Expect(1)
      .Type(kCount, "1a-2中3"_gbk)
      .SeeText(kCount, "123")
      .Type(kName, "中中中"_gbk)
      .SeeText(kName, "中中"_gbk)  // 5 bytes hold no third character
      .Do("make it read-only", [](CDialog& shown) { shown.GetDlgItem<CEdit>(kName).SetReadOnly(true); })
      .Do("type", [](CDialog& shown) { EXPECT_THROW(shown.GetDlgItem<CEdit>(kName).UserType("x"), UiRefused); })
      .Cancel();
  SampleDialog().DoModal();
}

TEST(Controls, CheckBoxesAndRadioGroups) {
  ScriptedUser user;
  user.Expect(1)
      .Press(kTriState)
      .SeeChecked(kTriState, 1)
      .Press(kTriState)
      .SeeChecked(kTriState, 2)
      .Press(kTriState)
      .SeeChecked(kTriState, 0)
      .Press(kSmall)
      .Press(kRed)
      .SeeChecked(kRed, 1)
      .SeeChecked(kGreen, 0)
      .SeeChecked(kSmall, 1)  // another group
      .Cancel();
  SampleDialog().DoModal();
}

TEST(Controls, ComboBoxKeepsItsSelectionWithItsEntry) {
  ScriptedUser user;
  user.Expect(1)
      .Do("edit the list",
          [](CDialog& shown) {
            auto& list = shown.GetDlgItem<CComboBox>(kList);
            list.SetItemData(2, 9);
            list.InsertString(0, "zero");
            EXPECT_EQ("three", list.GetWindowText());
            EXPECT_EQ(9, list.GetItemData(list.GetCurSel()));
            list.DeleteString(1);
            EXPECT_EQ("three", list.GetWindowText());
            list.DeleteString(list.GetCurSel());
            EXPECT_EQ(-1, list.GetCurSel());
            EXPECT_EQ(1, list.FindStringExact(-1, "TWO"));
            EXPECT_EQ(-1, list.FindStringExact(-1, "tw"));
            EXPECT_EQ(1, list.SelectString(1, "tw"));  // starts over at the top
            EXPECT_THROW(list.GetLBText(9), std::out_of_range);
            EXPECT_THROW(list.UserChoose(9), UiRefused);
          })
      .Cancel();
  SampleDialog().DoModal();
}

TEST(Dialog, HandsetTypeTemplateBuilds) {
  CDialog dialog(kHandsetTypeTemplate);
  EXPECT_EQ("修正手机类型"_gbk, dialog.GetTitle());
  EXPECT_EQ("确定"_gbk, dialog.GetDlgItem<CButton>(kIdOk).GetWindowText());
  EXPECT_EQ(0, dialog.GetDlgItem<CComboBox>(kComboHandsetType).GetCount());
  EXPECT_THROW(dialog.GetDlgItem<CEdit>(kComboHandsetType), std::logic_error);
}

// Collects failures instead of passing them to the test runner.
class FailureList {
 public:
  FailureList() {
    previous_ = ScriptedUser::SetFailureHandler([this](const std::string& text) { texts.push_back(text); });
  }
  ~FailureList() { ScriptedUser::SetFailureHandler(previous_); }
  bool Has(const std::string& part) const { return texts.size() == 1 && texts[0].find(part) != std::string::npos; }
  std::vector<std::string> texts;

 private:
  ScriptedUser::FailureHandler previous_;
};

TEST(ScriptedUser, ReportsWhatTheScriptDoesNotHave) {
  struct Case {
    void (*script)(ScriptedUser&);
    const char* failure;
  };
  const Case cases[] = {
      {[](ScriptedUser&) {}, "unexpected dialog 1 '试验', next in the script: the end"},
      {[](ScriptedUser& user) {
         user.Expect(2).Ok();
         user.Expect(1).Ok();
       },
       "unexpected dialog 1"},
      {[](ScriptedUser& user) { user.Expect(1).Type(kName, "x"); }, "is left open, next in the script: the end"},
      {[](ScriptedUser& user) { user.Expect(1).ExpectMessage("m"); }, "is left open, next in the script: message 'm'"},
      {[](ScriptedUser& user) { user.Expect(1).Press(kAsk).Cancel(); },
       "unexpected message '继续？' (question, yesno)"},
      {[](ScriptedUser& user) { user.Expect(1).Press(kAsk).ExpectMessage("继续？"_gbk, MessageIcon::kError).Cancel(); },
       "unexpected message"},
      {[](ScriptedUser& user) {
         user.Expect(1).Press(kAsk).ExpectMessage("继续？"_gbk).Answer(MessageAnswer::kOk).Cancel();
       },
       "does not offer the answer ok"},
      {[](ScriptedUser& user) { user.Expect(1).Press(kNested).Cancel(); }, "is disabled"},
      {[](ScriptedUser& user) { user.Expect(1).Press(kGhost).Cancel(); }, "is hidden"},
      {[](ScriptedUser& user) { user.Expect(1).Choose(kList, "four").Cancel(); }, "no entry 'four'"},
      {[](ScriptedUser& user) { user.Expect(1).Type(kList, "four").Cancel(); }, "a list to choose from"},
      {[](ScriptedUser& user) { user.Expect(1).Press(999).Cancel(); }, "no control 999"},
      {[](ScriptedUser& user) { user.Expect(1).SeeText(kName, "文"_gbk).Cancel(); }, "is '中', not '文'"},
      {[](ScriptedUser& user) { user.Expect(1).Cancel().Press(kAsk); }, "1 steps are left over, the first: press 110"},
      {[](ScriptedUser& user) { user.CancelProgressAt(5).Expect(1).Cancel(); }, "progress window 0 was not cancelled"},
  };
  for (const Case& c : cases) {
    FailureList failures;
    ScriptedUser user;
    c.script(user);
    SampleDialog().DoModal();
    if (failures.texts.empty()) {
      user.Finish();
    } else {
      const std::vector<std::string> first = {failures.texts.front()};
      user.Finish();  // steps that could not be played any more
      failures.texts = first;
    }
    EXPECT_TRUE(failures.Has(c.failure)) << c.failure << "\nbut: " << ::testing::PrintToString(failures.texts);
  }
}

TEST(ScriptedUser, ThrowsWithoutAHandlerAndGivesTheFrontEndBack) {
  const auto previous = ScriptedUser::SetFailureHandler(nullptr);
  FrontEnd* const standing = &CurrentFrontEnd();
  {
    ScriptedUser user;
    EXPECT_EQ(&user, &CurrentFrontEnd());
    EXPECT_THROW(ShowMessageBox("m"), std::runtime_error);
  }
  EXPECT_EQ(standing, &CurrentFrontEnd());
  ScriptedUser::SetFailureHandler(previous);
}

TEST(ScriptedUser, RecordsProgressAndCancelsTheWindowThatWasNamed) {
  ScriptedUser user;
  user.CancelProgressAt(50, 1).CancelProgressAtPump(2, 2);
  for (int window = 0; window < 4; ++window) {
    const auto view = CurrentFrontEnd().ShowProgress({.title = "进度"_gbk, .can_cancel = window != 3});
    view->SetText("t");
    view->SetRange(0, 100);
    for (int position = 0; position <= 100 && !view->Cancelled(); position += 25) {
      view->SetPos(position);
      view->Pump();
    }
  }
  ASSERT_EQ(4u, user.progress().size());
  EXPECT_EQ((std::vector<int>{0, 25, 50, 75, 100}), user.progress()[0].positions);
  EXPECT_EQ((std::vector<int>{0, 25, 50}), user.progress()[1].positions);
  EXPECT_EQ((std::vector<int>{0, 25}), user.progress()[2].positions);
  EXPECT_FALSE(user.progress()[3].cancelled);
  EXPECT_TRUE(user.progress()[2].cancelled && user.progress()[2].closed);
  EXPECT_EQ("进度"_gbk, user.progress()[0].title);
  {
    const CWaitCursor outer;
    const CWaitCursor inner;
    EXPECT_EQ(2, user.wait_cursor_depth());
  }
  EXPECT_EQ(0, user.wait_cursor_depth());
}

TEST(FrontEnd, WithoutAnyoneMessagesAreDeclinedAndDialogsCancelled) {
  SampleDialog dialog;
  EXPECT_EQ(kIdCancel, dialog.DoModal());
  EXPECT_EQ(MessageAnswer::kNo, ShowMessageBox("m", MessageIcon::kQuestion, MessageButtons::kYesNo));
  EXPECT_EQ(MessageAnswer::kOk, ShowMessageBox("m"));
}

class LogFileDialog : public CFileDialog {
 public:
  LogFileDialog() : CFileDialog(true, "log", "", kAllowMultiSelect | kFileMustExist, "Log(*.log)|*.log;*.loc||") {
    SetExtraButton(9063, "导入设置(&I)"_gbk);
  }
  int presses = 0;

 private:
  void OnExtraButton() override { ++presses; }
};

TEST(FileDialog, PicksFilesWithinTheNameBuffer) {
  const testing::TempFolder folder;
  const CString a = folder.File("a.log");
  const CString b = folder.File("b.log");
  WriteWholeFile(a, "");
  WriteWholeFile(b, "");
  ScriptedUser user;
  user.PressInFiles(9063).PickFiles({a, b}).PickFiles({a, b}).PickFiles({a}).CancelFiles();
  LogFileDialog dialog;
  // The folder without its separator, both names and the empty one, each with a terminator.
  const auto needed = static_cast<std::size_t>(folder.Folder().GetLength() + 6 + 6 + 1);
  dialog.SetNameBufferSize(needed);
  EXPECT_EQ(kIdOk, dialog.DoModal());
  EXPECT_EQ((std::vector<CString>{a, b}), dialog.GetPathList());
  EXPECT_EQ(1, dialog.presses);
  dialog.SetNameBufferSize(needed - 1);
  EXPECT_EQ(kIdCancel, dialog.DoModal());
  EXPECT_TRUE(dialog.IsNameBufferTooSmall());
  EXPECT_TRUE(dialog.GetPathList().empty());
  EXPECT_EQ(kIdOk, dialog.DoModal());  // one path alone needs no folder entry
  EXPECT_FALSE(dialog.IsNameBufferTooSmall());
  EXPECT_EQ(kIdCancel, dialog.DoModal());
  EXPECT_FALSE(dialog.IsNameBufferTooSmall());
  const std::vector<FileFilter>& filters = user.file_dialogs()[0].filters;
  ASSERT_EQ(1u, filters.size());
  EXPECT_EQ((std::vector<CString>{"*.log", "*.loc"}), filters[0].patterns);
}

TEST(FileDialog, RefusesWhatTheSystemsDialogRefuses) {
  FailureList failures;
  ScriptedUser user;
  user.PickFiles({"/no/such/file.log"});
  EXPECT_EQ(kIdCancel, LogFileDialog().DoModal());
  EXPECT_TRUE(failures.Has("/no/such/file.log: does not exist"));
}

TEST(FileDialog, AddsTheDefaultExtensionToABareName) {
  const testing::TempFolder folder;
  WriteWholeFile(folder.File("bare"), "");
  ScriptedUser user;
  user.PickFiles({folder.File("new")}).PickFiles({folder.File("new.x")}).PickFiles({folder.File("bare")});
  CFileDialog save(false, "imcf", "", CFileDialog::kOverwritePrompt, "ImportConf(*.imcf)|*.imcf||");
  save.DoModal();
  EXPECT_EQ(folder.File("new.imcf"), save.GetPathName());
  save.DoModal();
  EXPECT_EQ(folder.File("new.x"), save.GetPathName());
  CFileDialog open(true, "*.TXT", "", CFileDialog::kFileMustExist, "TXT file (*.TXT)|*.TXT||");
  open.DoModal();
  EXPECT_EQ(folder.File("bare"), open.GetPathName());
}

}  // namespace
}  // namespace loom::dialog_test
