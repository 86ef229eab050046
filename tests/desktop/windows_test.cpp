#include <gtest/gtest.h>

#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QTabWidget>

#include "apps/qloom-desktop/front_end/qt_front_end.h"
#include "apps/qloom-desktop/front_end/qt_text.h"
#include "components/progress_wnd.h"
#include "platform/file.h"
#include "platform/ui/file_dialog.h"
#include "platform/ui/message_box.h"
#include "tests/desktop/kit_dialog.h"
#include "tests/desktop/person.h"
#include "tests/support/temp_folder.h"

namespace loom::testing {
namespace {

class Windows : public ::testing::Test {
 protected:
  QtFrontEnd front_end;
  Person person;
};

TEST_F(Windows, EnterPressesTheDefaultButtonAndEscapeCancels) {
  KitDialog dialog;
  person.Then("focus", [] { Person::Control<QWidget>(kKitEdit)->setFocus(); }).Key(Qt::Key_Return);
  EXPECT_EQ(kIdOk, dialog.DoModal());
  person.Key(Qt::Key_Escape);
  EXPECT_EQ(kIdCancel, dialog.DoModal());
}

TEST_F(Windows, EnterPressesTheButtonThatHasTheFocus) {
  KitDialog dialog;
  person.Then("focus", [] { Person::Control<QWidget>(kKitPush)->setFocus(); }).Key(Qt::Key_Return).Click(kIdCancel);
  EXPECT_EQ(kIdCancel, dialog.DoModal());
  EXPECT_EQ((std::vector{std::pair(Notification::kClicked, int{kKitPush})}), dialog.heard);
}

TEST_F(Windows, AcceleratorsPressButtonsAndLeadFromTextsToTheirControl) {
  KitDialog dialog;
  person.Key(Qt::Key_P, Qt::AltModifier).Key(Qt::Key_C, Qt::AltModifier).Key(Qt::Key_N, Qt::AltModifier);
  person.Then("look", [&] {
    EXPECT_EQ(Person::Control<QWidget>(kKitEdit), Person::Focus());
    EXPECT_EQ(1, dialog.Item<CButton>(kKitCheck).GetCheck());
    EXPECT_EQ(kKitEdit, dialog.GetFocusId());
  });
  person.Click(kIdCancel);
  dialog.DoModal();
  ASSERT_FALSE(dialog.heard.empty());
  EXPECT_EQ(std::pair(Notification::kClicked, int{kKitPush}), dialog.heard.front());
}

TEST_F(Windows, ADialogThatEndsItselfInAHandlerCloses) {
  KitDialog dialog;
  dialog.hear = [&](Notification, int) { dialog.EndDialog(77); };
  person.Click(kKitPush);
  EXPECT_EQ(77, dialog.DoModal());
}

TEST_F(Windows, WhatAHandlerThrowsComesOutOfDoModal) {
  KitDialog dialog;
  dialog.hear = [](Notification, int) { throw std::runtime_error("handler"); };
  person.Click(kKitPush);
  EXPECT_THROW(dialog.DoModal(), std::runtime_error);
  EXPECT_FALSE(dialog.IsRunning());
}

TEST_F(Windows, MessagesAreAnsweredAndShowBehindThemWhatTheHandlerDid) {
  KitDialog dialog;
  std::vector<MessageAnswer> answers;
  dialog.hear = [&](Notification, int id) {
    if (id != kKitPush) return;
    dialog.Item<CEdit>(kKitEdit).SetWindowText("before");
    answers.push_back(ShowMessageBox("继续？"_gbk, MessageIcon::kWarning, MessageButtons::kYesNo));
  };
  const auto look = [](QDialog* behind) {
    auto* const box = qobject_cast<QMessageBox*>(Person::Window());
    ASSERT_TRUE(box);
    EXPECT_EQ("继续？", box->text());
    EXPECT_EQ("Quillon Loom", box->windowTitle());
    EXPECT_EQ(QMessageBox::Warning, box->icon());
    EXPECT_EQ("before", behind->findChild<QLineEdit*>(QStringLiteral("control_%1").arg(kKitEdit))->text());
  };
  QDialog* behind = nullptr;
  person.Then("remember", [&] { behind = qobject_cast<QDialog*>(Person::Window()); });
  person.Click(kKitPush).Then("look", [&] { look(behind); }).Click(QStringLiteral("yes"));
  person.Click(kKitPush).Click(QStringLiteral("no")).Click(kKitPush).Key(Qt::Key_Escape).Click(kIdCancel);
  dialog.DoModal();
  EXPECT_EQ((std::vector{MessageAnswer::kYes, MessageAnswer::kNo, MessageAnswer::kNo}), answers);
}

TEST_F(Windows, AFailedValidationPutsTheFocusOnTheValue) {
  struct Numbers : KitDialog {
    std::int32_t value = 0;
    void DoDataExchange(CDataExchange& exchange) override { exchange.Number(kKitEdit, value); }
  } dialog;
  person.Type(kKitEdit, "no").Click(kIdOk).Click(QStringLiteral("ok")).Then("look", [] {
    auto* const line = Person::Control<QLineEdit>(kKitEdit);
    EXPECT_EQ(line, Person::Focus());
    EXPECT_EQ("no", line->selectedText());
  });
  person.Type(kKitEdit, "12").Click(kIdOk);
  EXPECT_EQ(kIdOk, dialog.DoModal());
  EXPECT_EQ(12, dialog.value);
}

inline constexpr ControlTemplate kPageControls[] = {
    {601, ControlClass::kCheckBox, "同意", {7, 7, 60, 10}},
    {602, ControlClass::kEdit, "", {7, 20, 60, 13}},
};
inline constexpr DialogTemplate kFirstPage{600, "第一页", {0, 0, 200, 60}, kPageControls};
inline constexpr DialogTemplate kSecondPage{610, "第二页", {0, 0, 220, 80}, kPageControls};

class AgreePage : public CPropertyPage {
 public:
  using CPropertyPage::CPropertyPage;
  bool agreed = false;

 protected:
  bool OnSetActive() override {
    GetSheet()->SetWizardButtons(GetTemplate().id == 600 ? kWizardNext : kWizardBack | kWizardFinish);
    return CPropertyPage::OnSetActive();
  }
  int OnWizardNext() override {
    agreed = GetDlgItem<CButton>(601).GetCheck() != 0;
    return agreed ? kWizardGoOn : kWizardStay;
  }
};

TEST_F(Windows, AWizardGoesForwardWhenItsPageLetsItAndBack) {
  CPropertySheet sheet("向导"_gbk);
  AgreePage first(kFirstPage);
  AgreePage second(kSecondPage);
  sheet.AddPage(first);
  sheet.AddPage(second);
  sheet.SetWizardMode();
  const auto see = [](const QString& title) {
    return [=] {
      EXPECT_EQ(title, Person::Window()->windowTitle());
      EXPECT_EQ(title == "第二页", Person::Find<QPushButton>("button_back")->isEnabled());
    };
  };
  person.Click(QStringLiteral("next")).Then("stays", see("第一页")).Click(601).Key(Qt::Key_Return);
  person.Then("second", see("第二页")).Click(QStringLiteral("back")).Then("first", see("第一页"));
  person.Click(QStringLiteral("next")).Click(QStringLiteral("finish"));
  EXPECT_EQ(kIdWizardFinish, sheet.DoModal());
  EXPECT_TRUE(first.agreed);
}

TEST_F(Windows, ASheetTurnsToAPageByItsTabAndEscapeCancelsIt) {
  struct Plain : CPropertyPage {
    using CPropertyPage::CPropertyPage;
  } first(kFirstPage), second(kSecondPage);
  CPropertySheet sheet("设置"_gbk);
  sheet.AddPage(first);
  sheet.AddPage(second);
  person.Then("turn", [] { Person::Window()->findChild<QTabWidget*>()->setCurrentIndex(1); });
  person.Then("look", [&] {
    EXPECT_EQ("设置", Person::Window()->windowTitle());
    EXPECT_EQ(1, sheet.GetActiveIndex());
  });
  person.Key(Qt::Key_Escape);
  EXPECT_EQ(kIdCancel, sheet.DoModal());
}

TEST_F(Windows, AFileDialogKeepsToItsRequest) {
  const TempFolder folder;
  WriteWholeFile(folder.File("there.log"), std::string("x"));
  struct Logs : CFileDialog {
    using CFileDialog::CFileDialog;
    int pressed = 0;
    void OnExtraButton() override { ++pressed; }
    void AddButton() { SetExtraButton(9063, "导入设置(&I)"_gbk); }
  } dialog(true, CString(), CString(), CFileDialog::kFileMustExist | CFileDialog::kAllowMultiSelect,
           "Log(*.log)|*.log|Text|*.txt;*.csv||");
  dialog.AddButton();
  dialog.SetTitle("选择日志文件"_gbk);
  dialog.SetInitialFolder(folder.Folder());
  const auto name = [](const QString& text) { return [=] { Person::Find<QLineEdit>("fileNameEdit")->setText(text); }; };
  person.Then("look", [] {
    auto* const window = qobject_cast<QFileDialog*>(Person::Window());
    ASSERT_TRUE(window);
    EXPECT_EQ("选择日志文件", window->windowTitle());
    EXPECT_EQ((QStringList{"Log (*.log)", "Text (*.txt *.csv)"}), window->nameFilters());
  });
  person.Click(9063).Then("a file that is not there", name("gone.log"));
  const auto accept = [] { qobject_cast<QDialog*>(Person::Window())->accept(); };
  person.Then("accept", accept).Click(QStringLiteral("ok")).Then("one that is", name("there.log"));
  person.Then("accept", accept);
  EXPECT_EQ(kIdOk, dialog.DoModal());
  EXPECT_EQ(1, dialog.pressed);
  EXPECT_EQ((std::vector{folder.File("there.log")}), dialog.GetPathList());
}

TEST_F(Windows, AFileThatIsThereIsOverwrittenOnlyWithConsent) {
  const TempFolder folder;
  WriteWholeFile(folder.File("out.txt"), std::string("x"));
  CFileDialog dialog(false, "txt", folder.File("out"), CFileDialog::kOverwritePrompt, "Text|*.txt||");
  const auto accept = [] { qobject_cast<QDialog*>(Person::Window())->accept(); };
  person.Then("accept", accept).Click(QStringLiteral("no")).Then("again", accept).Click(QStringLiteral("yes"));
  EXPECT_EQ(kIdOk, dialog.DoModal());
  EXPECT_EQ(folder.File("out.txt"), dialog.GetPathName());
}

TEST_F(Windows, ProgressShowsHowFarItIsAndCanBeCancelled) {
  CProgressWnd progress(1);
  progress.GoModal("导入"_gbk, 1);
  progress.SetText("drive.log");
  progress.SetRange(0, 100, 1);
  progress.SetPos(40);
  EXPECT_EQ(40, Person::Window()->findChild<QProgressBar*>()->value());
  person.ActOnProgress().Click(QStringLiteral("cancel"));
  for (int turn = 0; turn < 1000 && !progress.Cancelled(); ++turn) {
    QTest::qSleep(5);
    progress.PeekAndPump(1);
  }
  EXPECT_EQ(1, progress.Cancelled());
}

TEST_F(Windows, TheWaitCursorIsCounted) {
  front_end.SetWaitCursor(true);
  front_end.SetWaitCursor(true);
  front_end.SetWaitCursor(false);
  ASSERT_NE(nullptr, QApplication::overrideCursor());
  EXPECT_EQ(Qt::WaitCursor, QApplication::overrideCursor()->shape());
  front_end.SetWaitCursor(false);
  EXPECT_EQ(nullptr, QApplication::overrideCursor());
}

}  // namespace
}  // namespace loom::testing
