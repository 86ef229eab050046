#include <gtest/gtest.h>

#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/ui/file_dialog.h"
#include "platform/ui/message_box.h"
#include "platform/ui/property_sheet.h"
#include "resources/binning_templates.h"
#include "resources/log_import_templates.h"
#include "tests/support/scripted_user_gtest.h"
#include "tests/support/temp_folder.h"

namespace loom::ui_sheet_test {
namespace {

enum Id { kPage1 = 1, kPage2, kPage3, kName = 100, kGo };

constexpr ControlTemplate kControls[] = {
    {kName, ControlClass::kEdit, "", {}},
    {kGo, ControlClass::kPushButton, "走(&G)", {}},
};
constexpr DialogTemplate kTemplates[] = {
    {kPage1, "第一步", {}, kControls}, {kPage2, "第二步", {}, kControls}, {kPage3, "", {}, kControls}};

// Writes down what happens to it.
class Page : public CPropertyPage {
 public:
  explicit Page(int number) : CPropertyPage(kTemplates[number - 1]) {}

  CString name;
  CString calls;
  std::function<bool()> set_active = [] { return true; };
  std::function<int()> next = [] { return kWizardGoOn; };
  std::function<void()> init = [] {};
  bool may_leave = true;
  bool may_apply = true;
  bool may_finish = true;
  bool may_cancel = true;
  void OnGo(std::function<void()> handler) { OnClicked(kGo, std::move(handler)); }

 protected:
  void OnInitDialog() override {
    calls += "I";
    CPropertyPage::OnInitDialog();
    init();
  }
  bool OnSetActive() override {
    calls += "S";
    return set_active() && CPropertyPage::OnSetActive();
  }
  bool OnKillActive() override {
    calls += "K";
    return may_leave && CPropertyPage::OnKillActive();
  }
  bool OnApply() override {
    calls += "A";
    return may_apply && CPropertyPage::OnApply();
  }
  int OnWizardNext() override {
    calls += "N";
    return next();
  }
  bool OnWizardFinish() override {
    calls += "F";
    return may_finish;
  }
  bool OnQueryCancel() override { return may_cancel; }
  void OnOK() override { calls += "O"; }
  void DoDataExchange(CDataExchange& exchange) override { exchange.Text(kName, name); }
};

struct Sheet : CPropertySheet {
  Sheet() : CPropertySheet("页"_gbk) {
    for (Page* const page : {&one, &two, &three}) AddPage(*page);
  }
  Page one{1}, two{2}, three{3};
};

struct Wizard : Sheet {
  Wizard() { SetWizardMode(); }
};

TEST(PropertySheet, OkTakesTheDataOfTheShownPages) {
  Sheet sheet;
  sheet.one.name = "1";
  sheet.three.name = "kept";
  ScriptedUser user;
  user.Expect(kPage1)
      .SeeButtons("ok cancel")
      .SeeText(kName, "1")
      .Type(kName, "eins")
      .SheetPage(kPage2)
      .SeePage(kPage2)
      .Type(kName, "zwei")
      .SheetPage(kPage1)
      .SeeText(kName, "eins")
      .Ok();
  EXPECT_EQ(kIdOk, sheet.DoModal());
  EXPECT_EQ("eins", sheet.one.name);
  EXPECT_EQ("zwei", sheet.two.name);
  EXPECT_EQ("kept", sheet.three.name);
  EXPECT_EQ("ISKSKAO", sheet.one.calls);
  EXPECT_EQ("ISKAO", sheet.two.calls);
  EXPECT_EQ("", sheet.three.calls);  // never shown
  EXPECT_EQ(nullptr, sheet.one.GetSheet());
}

TEST(PropertySheet, PagesRefuseToBeLeftAppliedOrCancelled) {
  Sheet sheet;
  sheet.one.may_leave = sheet.one.may_cancel = false;
  ScriptedUser user;
  user.Expect(kPage1)
      .SheetPage(kPage2)
      .SeePage(kPage1)
      .Ok()
      .Cancel()
      .Do("let go", [&](CDialog&) { sheet.one.may_leave = sheet.one.may_cancel = true; })
      .SheetPage(kPage2)
      .Do("refuse", [&](CDialog&) { sheet.one.may_apply = false; })
      .Ok()
      .SeePage(kPage1)  // the page that refuses comes to the front
      .Cancel();
  EXPECT_EQ(kIdCancel, sheet.DoModal());
}

TEST(PropertySheet, ASheetCanSwallowACommand) {
  struct Swallowing : Sheet {
    int swallowed = 0;
    void OnCommand(int id) override {
      if (id == kIdOk && swallowed == 0)
        ++swallowed;
      else
        CPropertySheet::OnCommand(id);
    }
  };
  Swallowing sheet;
  ScriptedUser user;
  user.Expect(kPage1).Ok().Ok();
  EXPECT_EQ(kIdOk, sheet.DoModal());
  EXPECT_EQ(1, sheet.swallowed);
  EXPECT_EQ("ISKAO", sheet.one.calls);
}

TEST(Wizard, TurnsItsPages) {
  Wizard wizard;
  wizard.two.set_active = [&] { return wizard.SetWizardButtons(kWizardBack | kWizardNext), true; };
  wizard.three.set_active = [&] { return wizard.PostWizardButtons(kWizardBack | kWizardDisabledFinish), true; };
  wizard.three.OnGo([&] { wizard.PostWizardButtons(kWizardFinish); });
  ScriptedUser user;
  user.Expect(kPage1)
      .SeeTitle("第一步"_gbk)
      .Type(kName, "n")
      .Next()
      .SeePage(kPage2)
      .SeeButtons("back next cancel")
      .Next()
      .SeePage(kPage3)
      .SeeButtons("back cancel")
      .Back()
      .SeePage(kPage2)
      .Next()
      .Press(kGo)
      .SeeButtons("finish cancel")
      .FinishWizard();
  EXPECT_EQ(kIdWizardFinish, wizard.DoModal());
  EXPECT_EQ("n", wizard.one.name);
  EXPECT_EQ("ISKN", wizard.one.calls);
  EXPECT_EQ("ISKNSKN", wizard.two.calls);
  EXPECT_EQ("ISKSKF", wizard.three.calls);
}

TEST(Wizard, APageThatRefusesLeavesTheWizardWhereItWas) {
  Wizard wizard;
  wizard.two.set_active = [] { return ShowMessageBox("不行"_gbk, MessageIcon::kError), false; };
  ScriptedUser user;
  user.Expect(kPage1)
      .Next()
      .ExpectMessage("不行"_gbk)
      .SeePage(kPage1)
      .SeeButtons("back next cancel")
      .Back()  // there is no page before
      .Do("lead past it", [&](CDialog&) { wizard.one.next = [] { return static_cast<int>(kPage3); }; })
      .Next()
      .SeePage(kPage3)
      .Do("offer Finish",
          [&](CDialog&) {
            wizard.SetWizardButtons(kWizardFinish);
            wizard.three.may_finish = false;
          })
      .FinishWizard()
      .SeePage(kPage3)
      .Cancel();
  EXPECT_EQ(kIdCancel, wizard.DoModal());
  EXPECT_EQ("IS", wizard.two.calls);
}

TEST(Wizard, StaysWhileNextSaysSo) {
  Wizard wizard;
  wizard.one.next = [&] { return wizard.one.name.IsEmpty() ? kWizardStay : kWizardGoOn; };
  ScriptedUser user;
  user.Expect(kPage1).Next().SeePage(kPage1).Type(kName, "x").Next().SeePage(kPage2).Cancel();
  EXPECT_EQ(kIdCancel, wizard.DoModal());
}

TEST(Wizard, PostedEventsWaitForTheEndOfTheHandler) {
  Wizard wizard;
  std::size_t buttons_in_handler = 0;
  wizard.one.OnGo([&] {
    wizard.PostWizardButtons(kWizardFinish);
    wizard.Post([&] { wizard.PressButton(kIdWizardFinish); });
    buttons_in_handler = wizard.GetButtons().size();
    EXPECT_EQ(kIdWizardNext, wizard.GetButtons()[1].id);
  });
  ScriptedUser user;
  user.Expect(kPage1).Press(kGo);
  EXPECT_EQ(kIdWizardFinish, wizard.DoModal());
  EXPECT_EQ(3u, buttons_in_handler);
}

TEST(Wizard, CanEndWhileAPageStarts) {
  Wizard at_once;
  at_once.one.init = [&] { at_once.one.EndDialog(kIdCancel); };
  ScriptedUser user;
  EXPECT_EQ(kIdCancel, at_once.DoModal());  // never shown
  EXPECT_FALSE(at_once.one.IsRunning());
  Wizard later;
  later.two.init = [&] { later.EndDialog(77); };
  user.Expect(kPage1).Next();
  EXPECT_EQ(77, later.DoModal());
  EXPECT_EQ("I", later.two.calls);
  Wizard refusing;
  for (Page* const page : {&refusing.one, &refusing.two, &refusing.three}) page->set_active = [] { return false; };
  EXPECT_EQ(kIdCancel, refusing.DoModal());
}

TEST(Wizard, WhatIsWrittenIntoAPageThatWasNeverShownIsLost) {
  Wizard wizard;
  wizard.two.name = "member";
  wizard.one.OnGo([&] {
    wizard.two.GetDlgItem(kName).SetWindowText("control");
    EXPECT_FALSE(wizard.two.UpdateData(true));
    EXPECT_THROW(wizard.two.GetDlgItem<CEdit>(kName).UserType("x"), UiRefused);
  });
  ScriptedUser user;
  user.Expect(kPage1).Press(kGo).Next().SeeText(kName, "member").Cancel();
  wizard.DoModal();
  EXPECT_EQ("member", wizard.two.name);
}

TEST(PropertySheet, NobodyThereCancelsAndAnExceptionEndsTheRun) {
  Sheet sheet;
  EXPECT_EQ(kIdCancel, sheet.DoModal());
  sheet.one.OnGo([] { throw Error("broken"); });
  ScriptedUser user;
  user.Expect(kPage1).Press(kGo);
  EXPECT_THROW(sheet.DoModal(), Error);
  EXPECT_FALSE(sheet.IsRunning() || sheet.one.IsRunning());
}

TEST(ScriptedUser, PlaysFreelyAndShowsTheStateAfterEachStep) {
  Wizard wizard;
  wizard.one.OnGo([&] {
    if (ShowMessageBox("?", MessageIcon::kQuestion, MessageButtons::kYesNo) == MessageAnswer::kNo)
      wizard.PostWizardButtons(kWizardNext);
  });
  ScriptedUser user;
  user.PlayFreely();
  std::vector<std::string> seen;
  user.SetStepListener([&] {
    std::string text = std::to_string(user.messages().size()) + ":";
    if (const auto state = user.FrontState()) {
      text += std::to_string(state->template_id) + ":" + state->controls.at(0).text.str();
      for (const ButtonState& button : state->buttons) text += button.enabled ? std::string(" ") + button.name : "";
    }
    seen.push_back(text);
  });
  user.Type(kName, "n").Press(kGo).AnswerNext(MessageAnswer::kNo).Next().Cancel();
  EXPECT_EQ(kIdCancel, wizard.DoModal());
  user.Finish();
  EXPECT_EQ((std::vector<std::string>{"0:1:n back next cancel", "1:1:n back next cancel", "1:1:n next cancel",
                                      "1:2: next cancel", "1:"}),
            seen);
}

TEST(ScriptedUser, PlayingFreelyStopsAtTheFirstRefusal) {
  const auto previous = ScriptedUser::SetFailureHandler([](const std::string&) {});
  {
    Wizard wizard;
    ScriptedUser user;
    user.PlayFreely();
    user.AnswerNext(MessageAnswer::kYes).FinishWizard().Type(kName, "never");
    EXPECT_EQ(kIdCancel, wizard.DoModal());
    ASSERT_EQ(1u, user.failures().size());
    EXPECT_NE(std::string::npos, user.failures()[0].find("shows no button"));
    EXPECT_EQ("", wizard.one.name);
  }
  ScriptedUser::SetFailureHandler(previous);
}

TEST(FileDialog, AsksBeforeItOverwrites) {
  const testing::TempFolder folder;
  const CString existing = folder.File("old.log");
  WriteWholeFile(existing, "");
  ScriptedUser user;
  user.PickFiles({folder.File("old")}).Overwrite(false).PickFiles({existing}).PickFiles({existing}).Overwrite(false);
  user.CancelFiles();
  CFileDialog save(false, "log", "", CFileDialog::kOverwritePrompt, "Log(*.log)|*.log||");
  save.SetInitialFolder(folder.Folder());
  EXPECT_EQ(kIdOk, save.DoModal());
  EXPECT_EQ(existing, save.GetPathName());
  EXPECT_EQ(kIdCancel, save.DoModal());
  ASSERT_EQ(3u, user.overwrite_questions().size());  // the first by the default extension
  EXPECT_EQ(existing + " 已存在。要替换它吗？"_gbk, user.overwrite_questions()[0]);
  EXPECT_EQ(folder.Folder(), user.file_dialogs()[0].initial_folder);
}

TEST(FileDialog, AFileMustExistUnderItsDefaultExtension) {
  const testing::TempFolder folder;
  WriteWholeFile(folder.File("a.TXT"), "");
  ScriptedUser user;
  user.PickFiles({folder.File("a")});
  CFileDialog open(true, "*.TXT", "", CFileDialog::kFileMustExist, "TXT file (*.TXT)|*.TXT||");
  open.DoModal();
  EXPECT_EQ(folder.File("a.TXT"), open.GetPathName());
}

TEST(MessageBox, TheHostCanHaveACaptionOfItsOwn) {
  const CString standing = HostCaption();
  EXPECT_EQ(CString(kApplicationCaption), standing);
  SetHostCaption("Host");
  ScriptedUser user;
  user.ExpectMessage("m");
  ShowMessageBox("m", MessageIcon::kNone, MessageButtons::kOk, HostCaption());
  EXPECT_EQ("Host", user.messages()[0].caption);
  SetHostCaption(standing);
}

// What a control covers; the list of a combo box drops over others.
DialogRect Covered(const ControlTemplate& control) {
  DialogRect rect = control.rect;
  if (control.control_class == ControlClass::kComboBox) rect.height = 14;
  return rect;
}

bool Overlap(const DialogRect& a, const DialogRect& b) {
  return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

TEST(Resources, TemplatesAreLaidOutWithoutCollisions) {
  for (const DialogTemplate* dialog : {&kLogFilesTemplate, &kSelImportTemplate, &kBinningTemplate}) {
    const CDialog builds(*dialog);
    for (const ControlTemplate& control : dialog->controls) {
      const std::string where = std::to_string(dialog->id) + "/" + std::to_string(control.id);
      const DialogRect rect = Covered(control);
      EXPECT_TRUE(rect.x + rect.width <= dialog->rect.width && rect.y + rect.height <= dialog->rect.height) << where;
      EXPECT_LE(Utf8ToGbk(control.text).GetLength() * 4, rect.width + 4) << where << " is cut off";
      if (control.control_class == ControlClass::kGroupBox) continue;
      for (const ControlTemplate& other : dialog->controls) {
        if (&other == &control || other.control_class == ControlClass::kGroupBox) continue;
        EXPECT_FALSE(Overlap(rect, Covered(other)) || control.id == other.id) << where << " and " << other.id;
      }
    }
  }
}

}  // namespace
}  // namespace loom::ui_sheet_test
