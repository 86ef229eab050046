#include <gtest/gtest.h>

#include <QComboBox>
#include <QHeaderView>
#include <QPushButton>
#include <QTableView>

#include "host/netdb/network_database.h"
#include "tests/desktop/desktop_fixture.h"

namespace loom::testing {
namespace {

class NetworkElements : public Desktop {
 protected:
  void SetUp() override {
    const auto cell = [](std::int64_t ci, const char* name) {
      return NetworkRow{{"MCC", std::int64_t{460}}, {"LAC", std::int64_t{7}}, {"CI", ci}, {"CellName", CString(name)}};
    };
    session->host().network().PutRows("tbl_Cell_GSM", {cell(1, "North_1"), cell(2, "North%2"), cell(3, "South")});
    Action("show_network").trigger();
    table = window->findChild<QTableView*>(QStringLiteral("network_table"));
    ASSERT_TRUE(table);
  }
  int Column(const QString& name) {
    const QAbstractItemModel& model = *table->model();
    for (int at = 0; at < model.columnCount(); ++at) {
      if (model.headerData(at, Qt::Horizontal).toString() == name) return at;
    }
    return -1;
  }
  QString Cell(int row, const QString& column) { return table->model()->index(row, Column(column)).data().toString(); }
  void Edit(int row, const QString& column, const QString& text) {
    table->setCurrentIndex(table->model()->index(row, Column(column)));
    table->edit(table->currentIndex());
    auto* const editor = table->viewport()->findChild<QLineEdit*>();
    ASSERT_TRUE(editor);
    editor->selectAll();
    QTest::keyClicks(editor, text);
    QTest::keyClick(editor, Qt::Key_Return);
    QTest::qWait(1);
  }

  QTableView* table = nullptr;
};

TEST_F(NetworkElements, TheTableThatHoldsRowsIsShownFirstAndStoringCountsAsAChange) {
  EXPECT_EQ("tbl_Cell_GSM", window->findChild<QComboBox*>(QStringLiteral("network_tables"))->currentText());
  EXPECT_EQ(3, table->model()->rowCount());
  EXPECT_EQ("North_1", Cell(0, "CellName"));
  EXPECT_TRUE(session->IsModified());
}

TEST_F(NetworkElements, AreFoundByAnyValueWhateverItsSigns) {
  auto* const find = window->findChild<QLineEdit*>(QStringLiteral("network_find"));
  const std::pair<const char*, int> cases[] = {{"north", 2}, {"h_", 1}, {"%2", 1}, {"460", 3}, {"nobody", 0}, {"", 3}};
  for (const auto& [text, rows] : cases) {
    find->setText(text);
    EXPECT_EQ(rows, table->model()->rowCount()) << text;
  }
}

TEST_F(NetworkElements, AValueIsMendedInPlaceUnlessTheRowWouldTakeTheKeyOfAnother) {
  Edit(1, "CellName", "West");
  EXPECT_EQ("West", Cell(1, "CellName"));
  person.Click(QStringLiteral("ok"));
  Edit(1, "CI", "3");
  EXPECT_EQ("2", Cell(1, "CI"));
  person.Click(QStringLiteral("ok"));
  Edit(1, "CI", "two");
  EXPECT_EQ("2", Cell(1, "CI"));
  Edit(1, "CI", "4");
  EXPECT_EQ("4", Cell(1, "CI"));
  const auto rows = session->host().network().ListRows("tbl_Cell_GSM");
  EXPECT_EQ(NetworkValue(std::int64_t{4}), rows[1][2].second);
}

TEST_F(NetworkElements, SelectedRowsAreDeletedOnceThePersonSaysSo) {
  table->selectRow(0);
  table->selectionModel()->select(table->model()->index(2, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
  auto* const remove = window->findChild<QPushButton*>(QStringLiteral("network_remove"));
  person.Key(Qt::Key_Return);  // Enter deletes nothing
  QTest::mouseClick(remove, Qt::LeftButton);
  EXPECT_EQ(3, table->model()->rowCount());
  person.Click(QStringLiteral("yes"));
  QTest::mouseClick(remove, Qt::LeftButton);
  ASSERT_EQ(1, table->model()->rowCount());
  EXPECT_EQ("North%2", Cell(0, "CellName"));
  const CString project = folder.File("n.qlp");
  session->SaveAs(project);
  window->OpenProject(project);
  EXPECT_EQ(1u, session->host().network().ListRows("tbl_Cell_GSM").size());
}

}  // namespace
}  // namespace loom::testing
