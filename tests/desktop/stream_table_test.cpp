#include <gtest/gtest.h>

#include <QTableView>
#include <QTest>

#include "apps/qloom-desktop/shell/row_index.h"
#include "apps/qloom-desktop/shell/shell_texts.h"
#include "apps/qloom-desktop/shell/stream_tab.h"
#include "apps/qloom-desktop/shell/stream_table_model.h"
#include "components/stream_manager.h"
#include "host/application.h"
#include "tests/support/places.h"

namespace loom::testing {
namespace {

class StreamTable : public ::testing::Test {
 protected:
  StreamTable() { SetShellLanguage(ShellLanguage::kEnglish); }

  IDataStream& NewStream() {
    return *CStreamManagerCreator::CreateStreamManager()->MakeStream("drive_TD(1)", kStreamOutdoorHandset);
  }
  static QString CellAt(const StreamTableModel& model, int row, int column) {
    return model.index(row, column).data().toString();
  }

  HostApplication host{PlainHost()};
};

TEST_F(StreamTable, ShowsNumberTimeAndEveryElementByItsType) {
  IDataStream& stream = NewStream();
  for (const char* name : {"Longitude", "MsgName", "UARFCN"}) stream.AddIEName(name);
  CMemDataRow row;
  row.SetRecordTime(1715938200.25);
  row.AddIE(g_project->GetIEID("Longitude"), uniFieldValue(116.3975f));
  row.AddIE(g_project->GetIEID("MsgName"), uniFieldValue::Text(row.AddText("测量报告"_gbk)));
  StoreRow(*stream.GetRows(), 7, row);
  const StreamTableModel model(stream, nullptr);
  ASSERT_EQ(5, model.columnCount());
  EXPECT_EQ("7", CellAt(model, 0, 0));
  EXPECT_TRUE(CellAt(model, 0, 1).endsWith(".250")) << CellAt(model, 0, 1).toStdString();
  EXPECT_EQ("116.3975", CellAt(model, 0, 2));
  EXPECT_EQ("测量报告", CellAt(model, 0, 3));
  EXPECT_EQ("", CellAt(model, 0, 4));
  EXPECT_EQ("Row", model.headerData(0, Qt::Horizontal, Qt::DisplayRole).toString());
}

TEST_F(StreamTable, OfAMergedStreamShowsTheNumbersInBothSources) {
  IDataStream& stream = NewStream();
  CMemDataRow row;
  stream.GetMergedRows()->emplace(1, CMergeDataRow_2M{&row, 12, 0});
  const StreamTableModel model(stream, nullptr);
  ASSERT_EQ(4, model.columnCount());
  EXPECT_EQ("12", CellAt(model, 0, 2));
  EXPECT_EQ("", CellAt(model, 0, 3));
}

TEST_F(StreamTable, FindsRowsWhereNumbersAreLeftOut) {
  RowMap rows;
  CMemDataRow row;
  for (int number = 1; number <= 3000; ++number) {
    if (number % 7 != 0) rows.emplace_hint(rows.end(), number, &row);
  }
  const RowIndex<RowMap> index(rows);
  std::size_t position = 0;
  for (const auto& [number, stored] : rows) ASSERT_EQ(number, index.At(position++)->first);
  EXPECT_EQ(position, index.Count());
}

TEST_F(StreamTable, TenMillionRowsAreShownWhereTheyLie) {
  constexpr int kRows = 10'000'000;
  IDataStream& stream = NewStream();
  CMemDataRow& row = *StoreRow(*stream.GetRows(), 1, CMemDataRow());
  for (int number = 2; number <= kRows; ++number) stream.GetRows()->emplace_hint(stream.GetRows()->end(), number, &row);
  StreamTab tab(stream, nullptr);
  tab.resize(800, 600);
  tab.show();
  auto& table = *tab.findChild<QTableView*>(QStringLiteral("stream_table"));
  ASSERT_EQ(kRows, table.model()->rowCount());
  for (const int number : {kRows, 1, kRows / 2, 7'654'321}) {
    tab.GoToRow(number);
    QTest::qWait(1);
    EXPECT_EQ(QString::number(number), table.currentIndex().siblingAtColumn(0).data().toString());
    EXPECT_TRUE(table.viewport()->rect().intersects(table.visualRect(table.currentIndex())));
  }
}

}  // namespace
}  // namespace loom::testing
