#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSettings>
#include <QTreeWidget>
#include <cstdlib>
#include <filesystem>

#include "apps/qloom-desktop/front_end/qt_text.h"
#include "apps/qloom-desktop/shell/main_window.h"
#include "tests/desktop/person.h"
#include "tests/support/places.h"
#include "tests/support/temp_folder.h"

namespace loom::testing {

// The whole desktop over the real host.
class Desktop : public ::testing::Test {
 protected:
  Desktop() {
    SetShellLanguage(ShellLanguage::kEnglish);
    settings = std::make_unique<QSettings>(PathToQt(folder.File("settings.ini")), QSettings::IniFormat);
    Start();
  }
  void Start() {
    session = std::make_unique<DesktopSession>(ConfigFolder(), folder.Folder());
    window = std::make_unique<MainWindow>(*session, front_end, *settings);
    window->show();
  }

  CString MakeLog(const std::string& sample) {
    const CString path = folder.File(NativePathToGbk(sample + ".log"));
    const std::string program = ProgramPath();
    const std::string lines = SourceFolder() / "samples" / (sample + ".jsonl");
    const std::string command = "'" + program + "' log make '" + lines + "' '" + GbkPathToNative(path) + "' >/dev/null";
    EXPECT_EQ(0, std::system(command.c_str()));
    return path;
  }
  // As a program that goes without a word does.
  void Crash() {
    window.reset();
    session->journal().Abandon();
    session.reset();
    Start();
  }
  std::string Told() { return window->findChild<QPlainTextEdit*>("messages")->toPlainText().toStdString(); }
  // Names the file that the file dialog in front is to take.
  void PickFile(const CString& path) {
    person.Then("name a file", [path] {
      Person::Find<QLineEdit>("fileNameEdit")->setText(PathToQt(path));
      qobject_cast<QDialog*>(Person::Window())->accept();
    });
  }
  QAction& Action(const char* name) { return *window->findChild<QAction*>(QLatin1String(name)); }
  QTreeWidget& Tree() { return *window->findChild<QTreeWidget*>(QStringLiteral("project_tree")); }
  QTreeWidgetItem& Entry(int node, int at = 0) { return *Tree().topLevelItem(node)->child(at); }
  int LogsUnder(int node) { return Tree().topLevelItem(node)->childCount(); }

  const TempFolder folder;
  QtFrontEnd front_end;
  std::unique_ptr<QSettings> settings;
  std::unique_ptr<DesktopSession> session;
  std::unique_ptr<MainWindow> window;
  Person person;
};

}  // namespace loom::testing
