#include <gtest/gtest.h>

#include <QTabWidget>
#include <QTableView>

#include "host/netdb/network_database.h"
#include "platform/file.h"
#include "tests/desktop/desktop_fixture.h"

// What a project keeps: through opening, removing, crashing.
namespace loom::testing {
namespace {

class Projects : public Desktop {
 protected:
  void SetUp() override {
    session->project().SetFolder(AbsoluteFolderOf(project));  // streams of indoor logs are called by their place in it
    outdoor = MakeLog("merged_600");
    indoor = MakeLog("indoor");
    window->OpenFiles(kImporterOutdoorLog, {outdoor});
    window->OpenFiles(kImporterIndoorLog, {indoor});
    ASSERT_EQ(1, LogsUnder(0));
    ASSERT_EQ(1, LogsUnder(1));
  }
  std::size_t LogsListed() { return session->project().Content().logs.size(); }
  void OpenTable(int node) { Tree().itemActivated(Entry(node).child(0), 0); }
  int Tabs() { return window->findChild<QTabWidget*>(QStringLiteral("tables"))->count(); }

  CString outdoor, indoor;
  const CString project = folder.File("a.qlp");
};

TEST_F(Projects, OpeningChangesNothingAndWhatIsNotThereStaysListed) {
  session->SaveAs(project);
  EXPECT_FALSE(session->IsModified());
  RemoveFile(indoor);
  window->OpenProject(project);
  EXPECT_FALSE(window->isWindowModified());
  EXPECT_EQ(2u, LogsListed());
  ASSERT_EQ(1, LogsUnder(1));  // under its node, though it is not loaded
  EXPECT_EQ("indoor.log (not loaded)", Entry(1).text(0));
  EXPECT_NE(std::string::npos, Told().find("indoor.log: there is no such file"));
  Action("save_project").trigger();
  window->OpenProject(project);
  EXPECT_EQ(2u, LogsListed());
}

TEST_F(Projects, AnOpeningThatIsCancelledLosesNothing) {
  session->SaveAs(project);
  person.ActOnProgress().Click(QStringLiteral("cancel"));
  window->OpenProject(project);
  EXPECT_EQ(2u, LogsListed());
  EXPECT_FALSE(session->IsModified());
}

TEST_F(Projects, SeveralAreRemovedAtOnceAndComeBackAsTheyWere) {
  session->SaveAs(project);
  OpenTable(0);
  OpenTable(1);
  ASSERT_EQ(2, Tabs());
  Entry(0).setSelected(true);
  Action("remove_entries").trigger();
  EXPECT_EQ(1, Tabs());  // that of the other log stays open
  EXPECT_EQ(1u, LogsListed());
  Tree().clearSelection();
  Entry(1).child(0)->setSelected(true);
  QTest::keyClick(&Tree(), Qt::Key_Delete);
  QTest::qWait(1);
  EXPECT_EQ(0u, LogsListed());
  EXPECT_EQ(0, Tabs());
  EXPECT_TRUE(session->IsModified());
  Action("put_back").trigger();
  EXPECT_EQ(1, LogsUnder(1));
  EXPECT_TRUE(Action("put_back").isEnabled());
  Action("put_back").trigger();
  EXPECT_EQ(1, LogsUnder(0));
  EXPECT_EQ(2u, session->LoadedLogs().size());
  EXPECT_FALSE(session->IsModified());
  EXPECT_FALSE(Action("put_back").isEnabled());
}

TEST_F(Projects, TheTreeStaysAsItWasFoldedAndSelected) {
  Entry(0).setExpanded(false);
  Entry(1).child(0)->setSelected(true);
  Action("import_by_name");
  session->SaveAs(project);
  Action("save_project").trigger();
  EXPECT_FALSE(Entry(0).isExpanded());
  EXPECT_TRUE(Entry(1).isExpanded());
  EXPECT_TRUE(Entry(1).child(0)->isSelected());
}

TEST_F(Projects, WhatACrashLeftBehindIsOffered) {
  Crash();
  EXPECT_EQ(0u, LogsListed());
  person.Click(QStringLiteral("restore"));
  window->OfferLeftUntitled();
  EXPECT_EQ(2u, LogsListed());
  EXPECT_EQ(1, LogsUnder(0));
  EXPECT_TRUE(session->IsModified());
  session->SaveAs(project);
  const CString third = MakeLog("outdoor_mixed");
  window->OpenFiles(kImporterOutdoorLog, {third});
  Crash();
  window->OfferLeftUntitled();  // there is none any more
  person.Click(QStringLiteral("restore"));
  window->OpenProject(project);
  EXPECT_EQ(3u, LogsListed());
  Action("save_project").trigger();
  window->OpenProject(project);  // without a question
  EXPECT_EQ(3u, LogsListed());
}

TEST_F(Projects, AJournalThatIsNotWantedGoes) {
  session->SaveAs(project);
  session->Remove({indoor});
  session->journal().Keep();
  Crash();
  person.Click(QStringLiteral("forget"));
  window->OpenProject(project);
  EXPECT_EQ(2u, LogsListed());
  EXPECT_FALSE(FileExists(project + ".journal"));
}

}  // namespace
}  // namespace loom::testing
