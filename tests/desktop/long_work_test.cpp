#include <gtest/gtest.h>

#include <QProgressBar>

#include "components/stream_manager.h"
#include "platform/file.h"
#include "tests/desktop/desktop_fixture.h"

// Exports show how far they are, and end when the person says so.
namespace loom::testing {
namespace {

class LongWork : public Desktop {
 protected:
  void SetUp() override {
    front_end.SetWorkDelay(0);
    window->OpenFiles(kImporterOutdoorLog, {MakeLog("merged_600")});
    IDataStream& stream = *session->LoadedLogs().front()->GetStreams().front();
    RowMap& rows = *stream.GetRows();
    const CMemDataRow row = *rows.begin()->second;
    for (int number = rows.rbegin()->first + 1; number < 40000; ++number) StoreRow(rows, number, row);
    Entry(0).child(0)->setSelected(true);
  }
  // Looks at the window of the work, which is there by then, and cancels it.
  void CancelOnceItShows() {
    person.ActOnProgress().Then("look", [] {
      ASSERT_TRUE(Person::Window());
      EXPECT_EQ(QStringLiteral("progress"), Person::Window()->objectName());
      EXPECT_EQ(1000, Person::Window()->findChild<QProgressBar*>()->maximum());
    });
    person.Click(QStringLiteral("cancel"));
  }
};

TEST_F(LongWork, AWorkbookThatIsCancelledIsNotWrittenAndNobodyCallsItAFailure) {
  const CString target = folder.File("drive.xlsx");
  PickFile(target);
  CancelOnceItShows();
  Action("export_excel").trigger();
  EXPECT_FALSE(FileExists(target));
  EXPECT_NE(std::string::npos, Told().find("cancelled"));
  front_end.SetWorkDelay(60'000);
  PickFile(target);
  Action("export_excel").trigger();
  EXPECT_TRUE(FileExists(target));
}

TEST_F(LongWork, AnIntermediateFileThatIsCancelledIsNotWritten) {
  const CString target = folder.File("drive.dat");
  PickFile(target);
  CancelOnceItShows();
  Action("export_intermediate").trigger();
  EXPECT_FALSE(FileExists(target));
}

}  // namespace
}  // namespace loom::testing
