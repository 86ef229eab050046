#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QSettings>
#include <QTabWidget>
#include <QTableView>
#include <QTreeView>
#include <QTreeWidget>
#include <cstdlib>
#include <filesystem>

#include "apps/qloom-desktop/front_end/qt_text.h"
#include "platform/file.h"
#include "resources/binning_templates.h"
#include "resources/handset_type_templates.h"
#include "resources/log_import_templates.h"
#include "settings/handset_type_dialog.h"
#include "tests/desktop/desktop_fixture.h"
#include "tests/support/places.h"
#include "tests/support/temp_folder.h"

// The whole desktop over the real host, from its menus.
namespace loom::testing {
namespace {

TEST_F(Desktop, ImportsALogThroughTheFileDialogAndItsSettingsSheet) {
  const CString log = MakeLog("outdoor_mixed");
  person.Click(kButtonImportSettings);
  person.Then("clear TD-SCDMA but one", [] {
    auto* const tree = Person::Control<QTreeView>(kTreeImportIes);
    ASSERT_GE(tree->model()->rowCount(), 3);
    EXPECT_EQ("TD-SCDMA", tree->model()->index(0, 0).data().toString());
    EXPECT_FALSE(tree->model()->index(0, 0).data(Qt::DecorationRole).isNull());
  });
  person.Then("turn", [] { Person::Window()->findChild<QTabWidget*>()->setCurrentIndex(1); });
  person.Click(kCheckBinningEnabled).Click(kRadioByDistance).Type(kEditDistance, "50");
  person.Click(kCheckUe).Click(QStringLiteral("ok"));
  person.Then("pick", [=] {
    Person::Find<QLineEdit>("fileNameEdit")->setText(PathToQt(log));
    qobject_cast<QDialog*>(Person::Window())->accept();
  });
  Action("import_outdoor").trigger();
  ASSERT_EQ(1, LogsUnder(0));
  struct_BinningSetting binning;
  session->project().GetBinningSetting(log, binning);
  EXPECT_EQ(kBinningByDistance, binning.binning_type);
  EXPECT_EQ(50, binning.binning_distance_m);
  EXPECT_FALSE(session->project().GetImpSettingByLogFile(log).empty());
  EXPECT_TRUE(window->isWindowModified());
}

TEST_F(Desktop, DroppedLogsAreImportedUnderTheirNodeAndTheirRowsShown) {
  window->OpenFiles(kImporterOutdoorLog, {MakeLog("merged_600")});
  window->OpenFiles(kImporterIndoorLog, {MakeLog("indoor")});
  ASSERT_EQ(1, LogsUnder(0));
  ASSERT_EQ(1, LogsUnder(1));
  QTreeWidgetItem* const stream = Tree().topLevelItem(0)->child(0)->child(0);
  Tree().itemActivated(stream, 0);
  const auto* const table = window->findChild<QTableView*>(QStringLiteral("stream_table"));
  ASSERT_TRUE(table);
  EXPECT_EQ(146, table->model()->rowCount());
  EXPECT_EQ("1", table->model()->index(0, 0).data().toString());
}

TEST_F(Desktop, ADroppedRecordingBecomesALogWithTheTrackBesideIt) {
  for (const char* const name : {"drive.qmdl", "drive.gpx"})
    std::filesystem::copy_file(testing::SourceFolder() / "samples" / (std::string("handset_") + name),
                               folder.native() / name);
  qputenv("TMPDIR", folder.native().c_str());
  window->OpenFiles(kImporterOutdoorLog, {folder.File("drive.qmdl")});
  qunsetenv("TMPDIR");
  ASSERT_EQ(1, LogsUnder(0));
  const ILogfile& log = *session->LoadedLogs().front();
  EXPECT_EQ(folder.File("drive.log"), log.GetName());
  EXPECT_NEAR(116.3, const_cast<ILogfile&>(log).GetLongitudeMinimum(), 1e-3);
}

TEST_F(Desktop, AnIndoorLogUnderTheOutdoorNodeIsRefusedWithItsMessage) {
  const CString log = MakeLog("indoor");
  person.Click(QStringLiteral("ok"));
  window->OpenFiles(kImporterOutdoorLog, {log});
  EXPECT_EQ(0, LogsUnder(0));
  EXPECT_NE(std::string::npos,
            window->findChild<QPlainTextEdit*>("messages")->toPlainText().toStdString().find("not imported"));
}

TEST_F(Desktop, ASavedProjectIsOpenedWithItsLogsAndRemembered) {
  const CString log = MakeLog("merged_600");
  const CString project = folder.File("a.qlp");
  window->OpenFiles(kImporterOutdoorLog, {log});
  session->SaveAs(project);
  Action("new_project").trigger();
  EXPECT_EQ(0, LogsUnder(0));
  window->OpenProject(project);
  EXPECT_EQ(1, LogsUnder(0));
  EXPECT_FALSE(window->windowTitle().indexOf("a.qlp") < 0);
  EXPECT_EQ(QStringList{PathToQt(project)}, settings->value("recent_projects").toStringList());
}

TEST_F(Desktop, AProjectInUseIsOpenedForReading) {
  const CString project = folder.File("a.qlp");
  window->OpenFiles(kImporterOutdoorLog, {MakeLog("merged_600")});
  session->SaveAs(project);
  Action("new_project").trigger();
  std::string holder;
  const auto lock = ProjectLock::TryTake(project, holder);
  ASSERT_TRUE(lock);
  window->OpenProject(project);
  EXPECT_EQ(1, LogsUnder(0));
  EXPECT_GE(window->windowTitle().indexOf("(read-only: in use by "), 0) << window->windowTitle().toStdString();
  const CString copy = folder.File("b.qlp");
  person.Then("save under another name", [=] {
    Person::Find<QLineEdit>("fileNameEdit")->setText(PathToQt(copy));
    qobject_cast<QDialog*>(Person::Window())->accept();
  });
  Action("save_project").trigger();
  EXPECT_EQ(copy, session->project().FilePath());
  EXPECT_LT(window->windowTitle().indexOf("read-only"), 0);
}

TEST_F(Desktop, AProjectThatIsNoneIsRefusedAndTheOpenOneStays) {
  window->OpenFiles(kImporterOutdoorLog, {MakeLog("merged_600")});
  session->SaveAs(folder.File("a.qlp"));
  WriteWholeFile(folder.File("b.qlp"), std::string("no project"));
  person.Click(QStringLiteral("ok"));
  window->OpenProject(folder.File("b.qlp"));
  EXPECT_EQ(1, LogsUnder(0));
  EXPECT_EQ(folder.File("a.qlp"), session->project().FilePath());
}

TEST_F(Desktop, StreamsOfASelectedLogBecomeAWorkbook) {
  for (const char* const name : {"import_text", "export_text", "export_excel", "import_network"})
    EXPECT_TRUE(Action(name).isEnabled()) << name;
  person.Click(QStringLiteral("ok"));  // nothing is selected yet
  Action("export_excel").trigger();
  window->OpenFiles(kImporterOutdoorLog, {MakeLog("merged_600")});
  Tree().topLevelItem(0)->child(0)->setSelected(true);
  const CString workbook = folder.File("drive.xlsx");
  person.Then("name", [=] {
    Person::Find<QLineEdit>("fileNameEdit")->setText(PathToQt(workbook));
    qobject_cast<QDialog*>(Person::Window())->accept();
  });
  Action("export_excel").trigger();
  const std::vector<std::byte> bytes = ReadWholeFile(workbook);
  ASSERT_GT(bytes.size(), 1000u);
  EXPECT_EQ(std::byte{'P'}, bytes[0]);
}

TEST_F(Desktop, StreamsOfASelectedLogBecomeAReport) {
  if (!Action("report").isEnabled()) GTEST_SKIP() << "built without the libraries of the page";
  window->OpenFiles(kImporterOutdoorLog, {MakeLog("merged_600")});
  Tree().topLevelItem(0)->child(0)->setSelected(true);
  const CString page = folder.File("drive.html");
  person.Then("name", [=] {
    Person::Find<QLineEdit>("fileNameEdit")->setText(PathToQt(page));
    qobject_cast<QDialog*>(Person::Window())->accept();
  });
  Action("report").trigger();
  const std::string text = ReadWholeText(page);
  EXPECT_NE(std::string::npos, text.find("\"files\":[\"merged_600.log\"]"));
  EXPECT_TRUE(text.ends_with("</html>\n"));
}

TEST_F(Desktop, StreamsOfASelectedLogBecomeLayersByTheNameOfTheFile) {
  window->OpenFiles(kImporterOutdoorLog, {MakeLog("merged_600")});
  Tree().topLevelItem(0)->child(0)->setSelected(true);
  const CString package = folder.File("drive.gpkg");
  person.Then("name", [=] {
    Person::Find<QLineEdit>("fileNameEdit")->setText(PathToQt(package));
    qobject_cast<QDialog*>(Person::Window())->accept();
  });
  Action("export_layer").trigger();
  const std::vector<std::byte> bytes = ReadWholeFile(package);
  ASSERT_GT(bytes.size(), 1000u);
  EXPECT_EQ(std::byte{'S'}, bytes[0]);
}

TEST_F(Desktop, LogsAreCombinedInTheirOwnWindow) {
  person.Then("look", [] { EXPECT_EQ("合并日志文件", Person::Window()->windowTitle()); }).Click(kIdCancel);
  Action("combine_logs").trigger();
  person.Then("look", [] { EXPECT_EQ(QStringLiteral("dialog_9009"), Person::Window()->objectName()); })
      .Click(kIdCancel);
  Action("cut_log").trigger();
}

TEST_F(Desktop, TheHandsetQuestionIsAsked) {
  person.Then("choose", [] {
    auto* const combo = Person::Control<QComboBox>(kComboHandsetType);
    EXPECT_EQ(static_cast<int>(std::size(kHandsetChoices)), combo->count());
    combo->setFocus();
    QTest::keyClick(combo, Qt::Key_Down);
  });
  person.Click(kIdOk);
  EXPECT_EQ(kHandsetChoices[3].model_code, AskForHandsetType());
}

}  // namespace
}  // namespace loom::testing
