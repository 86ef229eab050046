#include <gtest/gtest.h>

#include <QClipboard>
#include <QComboBox>
#include <QHeaderView>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableView>
#include <fstream>

#include "apps/qloom-desktop/shell/file_kind.h"
#include "apps/text_files/finder_template.h"
#include "platform/file.h"
#include "tests/desktop/desktop_fixture.h"

// Files that come in and go out, whatever they are called, and what leaves by the clipboard.
namespace loom::testing {
namespace {

class Files : public Desktop {
 protected:
  CString Write(const char* name, const std::string& text) {
    const CString path = folder.File(name);
    WriteWholeFile(path, text);
    return path;
  }
  QTableView& OpenTable() {
    Tree().itemActivated(Entry(0).child(0), 0);
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
    return *window->findChild<QTableView*>(QStringLiteral("stream_table"));
  }
  static QStringList Lines() { return QApplication::clipboard()->text().split(u'\n'); }
};

constexpr const char* kDrive =
    "time;lat;lon;rsrp;cell\n2024-05-17 09:30:00;39,9075;116,3975;-95;A\n2024-05-17 09:30:01;39,9076;116,3976;-96;B\n";

TEST_F(Files, AreKnownByTheirContentNotByTheirName) {
  const CString log = MakeLog("merged_600");
  const CString renamed = folder.File("log.csv");
  CopyFile(log, renamed);
  session->SaveAs(folder.File("a.qlp"));
  CopyFile(folder.File("a.qlp"), folder.File("project.txt"));
  EXPECT_EQ(FileKind::kLog, KindOfFile(renamed));
  EXPECT_EQ(FileKind::kProject, KindOfFile(folder.File("project.txt")));
  EXPECT_EQ(FileKind::kRecording,
            KindOfFile(NativePathToGbk((SourceFolder() / "samples/handset_drive.qmdl").native())));
  EXPECT_EQ(FileKind::kText, KindOfFile(Write("drive.log", kDrive)));
  EXPECT_EQ(FileKind::kText, KindOfFile(Write("wide", std::string("t\0i\0m\0e\0,\0a\0\n\0", 14))));
  EXPECT_EQ(FileKind::kUnknown, KindOfFile(Write("b.csv", std::string(5000, '\x03'))));
  EXPECT_EQ(FileKind::kUnknown, KindOfFile(Write("empty.log", "")));
  EXPECT_EQ(FileKind::kMissing, KindOfFile(folder.File("gone.qlp")));
  EXPECT_EQ(FileKind::kMissing, KindOfFile(folder.Folder()));
}

TEST_F(Files, WhatIsMissingOrUnknownIsTold) {
  window->OpenFiles(kImporterOutdoorLog, {folder.File("gone.log"), Write("noise.log", std::string(500, '\x02'))});
  EXPECT_NE(std::string::npos, Told().find("gone.log: there is no such file"));
  EXPECT_NE(std::string::npos, Told().find("noise.log: a file of no kind that is known"));
}

TEST_F(Files, StreamsBecomeAnIntermediateFileThatComesBack) {
  window->OpenFiles(kImporterOutdoorLog, {MakeLog("outdoor_mixed")});
  ASSERT_GT(Entry(0).childCount(), 1);
  Entry(0).child(0)->setSelected(true);
  const QString name = Entry(0).child(0)->text(0);
  const CString target = folder.File("part.dat");
  PickFile(target);
  Action("export_intermediate").trigger();
  ASSERT_EQ(FileKind::kIntermediate, KindOfFile(target));
  EXPECT_NE(std::string::npos, Told().find("part.dat: 1 streams"));
  window->OpenFiles(kImporterOutdoorLog, {target});
  const std::vector<ILogfile*> logs = session->LoadedLogs();
  const auto read = std::ranges::find(logs, target, [](const ILogfile* log) { return log->GetName(); });
  ASSERT_NE(logs.end(), read);
  ASSERT_EQ(1u, (*read)->GetStreams().size());
  EXPECT_EQ(QString(name).replace("outdoor_mixed", "part"), ToQt((*read)->GetStreams().front()->GetName()));
}

TEST_F(Files, ATextOfAnotherToolIsShownMendedAndImported) {
  const CString path = Write("drive.csv", kDrive);
  person.Then("look", [] {
    const auto* const rows = Person::Control<QTableView>(kListFinderRows);
    EXPECT_EQ(2, rows->model()->rowCount());
    EXPECT_EQ("116,3975", rows->model()->index(0, 2).data().toString());
    EXPECT_EQ("分号", Person::Control<QComboBox>(kComboFinderSeparator)->currentText());
    EXPECT_EQ("0", Person::Control<QLineEdit>(kEditFinderTime)->text());
    EXPECT_GT(Person::Control<QTableView>(kListFindings)->model()->rowCount(), 3);
  });
  person.Type(kEditFinderHeader, "0").Click(kButtonFindAgain).Then("one row more", [] {
    EXPECT_EQ(3, Person::Control<QTableView>(kListFinderRows)->model()->rowCount());
  });
  person.Click(kButtonFindFresh).Then("two again", [] {
    EXPECT_EQ(2, Person::Control<QTableView>(kListFinderRows)->model()->rowCount());
  });
  person.Type(kEditFinderZone, "+08:00").Type(kEditFinderStream, "Phone").Click(kIdOk);
  window->OpenFiles(kImporterOutdoorLog, {path});
  ASSERT_EQ(1, LogsUnder(3));
  IDataStream& stream = *session->LoadedLogs().front()->GetStreams().front();
  EXPECT_EQ(2, stream.GetRowCount());
  EXPECT_EQ(1715909400.0, stream.GetEarliestTime());
  EXPECT_NE(std::string::npos, Told().find("drive.csv: 2 rows converted and imported"));
}

TEST_F(Files, ATextIsRemovedAndPutBackAndStaysListedWhenItIsGone) {
  person.Click(kIdOk);
  session->SaveAs(folder.File("t.qlp"));
  window->OpenFiles(kImporterOutdoorLog, {Write("drive.csv", kDrive)});
  ASSERT_EQ(1, LogsUnder(3));
  Entry(3).setSelected(true);
  Action("remove_entries").trigger();
  EXPECT_EQ(0, LogsUnder(3));
  EXPECT_TRUE(session->project().Content().text_files.empty());
  Action("put_back").trigger();
  ASSERT_EQ(1, LogsUnder(3));
  EXPECT_EQ(1u, session->LoadedLogs().size());
  session->Save();
  RemoveFile(session->LoadedLogs().front()->GetName());
  RemoveFile(folder.File("drive.csv"));
  person.Click(QStringLiteral("ok"));
  window->OpenProject(folder.File("t.qlp"));
  EXPECT_EQ(1, LogsUnder(3));
  EXPECT_FALSE(session->IsModified());
}

TEST_F(Files, CopiedCellsCarryTheirHeadings) {
  window->OpenFiles(kImporterOutdoorLog, {MakeLog("merged_600")});
  QTableView& table = OpenTable();
  const int rows = table.model()->rowCount();
  table.setFocus();
  table.selectionModel()->select({table.model()->index(1, 0), table.model()->index(2, 1)},
                                 QItemSelectionModel::ClearAndSelect);
  QTest::keyClick(&table, Qt::Key_C, Qt::ControlModifier);
  ASSERT_EQ(4, Lines().size());
  EXPECT_EQ("Row\tTime", Lines()[0]);
  EXPECT_TRUE(Lines()[2].startsWith("3\t20")) << Lines()[2].toStdString();
  QTest::keyClick(&table, Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(rows + 2, Lines().size());
  EXPECT_EQ(2, Lines()[5].split(u'\t').size());
  QTest::keyClick(&table, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(&table, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(rows + 2, Lines().size());
  EXPECT_EQ(table.model()->columnCount(), Lines()[1].split(u'\t').size());
}

TEST_F(Files, TheKeyboardLeadsThroughTheTables) {
  window->OpenFiles(kImporterOutdoorLog, {MakeLog("merged_600")});
  QTableView& table = OpenTable();
  auto* const number = window->findChild<QSpinBox*>(QStringLiteral("row_number"));
  number->setValue(40);
  EXPECT_EQ("40", table.currentIndex().siblingAtColumn(0).data().toString());
  table.setCurrentIndex(table.model()->index(0, 0));
  QTest::keyClick(number->findChild<QLineEdit*>(), Qt::Key_Return);
  EXPECT_EQ("40", table.currentIndex().siblingAtColumn(0).data().toString());
  number->setValue(99999);
  EXPECT_EQ(table.model()->rowCount() - 1, table.currentIndex().row());
  EXPECT_FALSE(table.tabKeyNavigation());
  EXPECT_NE(QVariant(), table.model()->headerData(3, Qt::Horizontal, Qt::ToolTipRole));
  auto& tabs = *window->findChild<QTabWidget*>(QStringLiteral("tables"));
  Action("show_network").trigger();
  EXPECT_EQ(1, tabs.currentIndex());
  Action("next_tab").trigger();
  EXPECT_EQ(0, tabs.currentIndex());
  Action("close_tab").trigger();
  EXPECT_EQ(1, tabs.count());
}

}  // namespace
}  // namespace loom::testing
