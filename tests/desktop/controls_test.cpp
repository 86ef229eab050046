#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QHeaderView>
#include <QLineEdit>
#include <QRadioButton>
#include <QTableView>
#include <QTreeView>

#include "apps/qloom-desktop/front_end/qt_front_end.h"
#include "apps/qloom-desktop/front_end/qt_text.h"
#include "tests/desktop/kit_dialog.h"
#include "tests/desktop/person.h"

// What a person does with real widgets arrives in the model, and what the model holds shows in the widgets.
namespace loom::testing {
namespace {

class Controls : public ::testing::Test {
 protected:
  bool Heard(Notification kind, int id) const {
    return std::find(dialog.heard.begin(), dialog.heard.end(), std::pair(kind, id)) != dialog.heard.end();
  }
  QtFrontEnd front_end;
  KitDialog dialog;
  Person person;
};

TEST_F(Controls, ButtonsAndBoxesArePressed) {
  dialog.at_ok = [](KitDialog& kit) {
    EXPECT_EQ(1, kit.Item<CButton>(kKitCheck).GetCheck());
    EXPECT_EQ(2, kit.Item<CButton>(kKitThree).GetCheck());
    EXPECT_EQ(0, kit.Item<CButton>(kKitRadioA).GetCheck());
    EXPECT_EQ(1, kit.Item<CButton>(kKitRadioB).GetCheck());
  };
  person.Click(kKitPush).Click(kKitCheck).Click(kKitThree).Click(kKitThree).Click(kKitRadioA).Click(kKitRadioB);
  person.Then("look", [] {
    EXPECT_EQ(Qt::PartiallyChecked, Person::Control<QCheckBox>(kKitThree)->checkState());
    EXPECT_FALSE(Person::Control<QRadioButton>(kKitRadioA)->isChecked());
    EXPECT_FALSE(Person::Control<QWidget>(kKitDisabled)->isEnabled());
    EXPECT_FALSE(Person::Control<QWidget>(kKitHidden)->isVisible());
  });
  person.Click(kIdOk);
  EXPECT_EQ(kIdOk, dialog.DoModal());
  EXPECT_TRUE(Heard(Notification::kClicked, kKitPush));
  EXPECT_TRUE(Heard(Notification::kClicked, kKitRadioB));
}

TEST_F(Controls, EditsTakeWhatFits) {
  dialog.at_ok = [](KitDialog& kit) {
    EXPECT_EQ("路测路测ab"_gbk, kit.Item<CEdit>(kKitEdit).GetWindowText());
    EXPECT_EQ("12", kit.Item<CEdit>(kKitDigits).GetWindowText());
    EXPECT_EQ("固定"_gbk, kit.Item<CEdit>(kKitReadOnly).GetWindowText());
    EXPECT_EQ("a\r\nb", kit.Item<CEdit>(kKitLines).GetWindowText());
  };
  person.Type(kKitEdit, "路测路测abcd").Type(kKitDigits, "1x2").Type(kKitReadOnly, "y").Type(kKitLines, "a\nb");
  person.Then("look", [] { EXPECT_EQ("路测路测ab", Person::Control<QLineEdit>(kKitEdit)->text()); });
  person.Click(kIdOk);
  EXPECT_EQ(kIdOk, dialog.DoModal());
}

TEST_F(Controls, TypingInTheMiddleKeepsTheRestAndTheCaret) {
  dialog.at_ok = [](KitDialog& kit) { EXPECT_EQ("1234567890", kit.Item<CEdit>(kKitEdit).GetWindowText()); };
  person.Type(kKitEdit, "123890").Then("insert", [] {
    auto* const line = Person::Control<QLineEdit>(kKitEdit);
    line->setCursorPosition(3);
    QTest::keyClicks(line, "4567x");
    EXPECT_EQ(7, line->cursorPosition());
  });
  person.Click(kIdOk);
  EXPECT_EQ(kIdOk, dialog.DoModal());
}

TEST_F(Controls, CombosAreChosenFromAndTypedInto) {
  dialog.at_ok = [](KitDialog& kit) {
    EXPECT_EQ(1, kit.Item<CComboBox>(kKitCombo).GetCurSel());
    EXPECT_EQ("WCDMA", kit.Item<CComboBox>(kKitEditable).GetWindowText());
    EXPECT_EQ(-1, kit.Item<CComboBox>(kKitEditable).GetCurSel());
  };
  person.Then("choose with the keyboard", [] {
    auto* const combo = Person::Control<QComboBox>(kKitCombo);
    EXPECT_EQ(3, combo->count());
    combo->setFocus();
    QTest::keyClick(combo, Qt::Key_Down);
    QTest::keyClick(combo, Qt::Key_Down);
  });
  person.Type(kKitEditable, "WCDMA").Click(kIdOk);
  EXPECT_EQ(kIdOk, dialog.DoModal());
  EXPECT_TRUE(Heard(Notification::kSelChange, kKitCombo));
  EXPECT_TRUE(Heard(Notification::kChange, kKitEditable));
}

TEST_F(Controls, ListRowsAreSelectedHeadersClickedRowsDoubleClicked) {
  dialog.at_ok = [](KitDialog& kit) {
    EXPECT_EQ((std::vector{1, 2, 3}), kit.Item<CListCtrl>(kKitList).GetSelectedRows());
    EXPECT_EQ(1, kit.Item<CListCtrl>(kKitList).GetClickedColumn());
  };
  const auto centre = [](QTableView* table, int row) {
    return table->visualRect(table->model()->index(row, 0)).center();
  };
  person.Then("double-click", [=] {
    auto* const table = Person::Control<QTableView>(kKitList);
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, centre(table, 4));
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, {}, centre(table, 4));
  });
  person.Then("click a header", [] {
    QHeaderView* const header = Person::Control<QTableView>(kKitList)->horizontalHeader();
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                      QPoint(header->sectionViewportPosition(1) + 5, header->height() / 2));
  });
  person.Then("select three rows", [=] {
    auto* const table = Person::Control<QTableView>(kKitList);
    EXPECT_EQ("30", table->model()->index(3, 1).data().toString());
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, centre(table, 1));
    QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::ShiftModifier, centre(table, 3));
  });
  person.Click(kIdOk);
  EXPECT_EQ(kIdOk, dialog.DoModal());
  EXPECT_TRUE(Heard(Notification::kDoubleClicked, kKitList));
  EXPECT_TRUE(Heard(Notification::kHeaderClicked, kKitList));
}

TEST_F(Controls, AListShowsRowsThatAHandlerAddsAndSelects) {
  dialog.hear = [&](Notification kind, int id) {
    if (kind != Notification::kClicked || id != kKitPush) return;
    auto& list = dialog.Item<CListCtrl>(kKitList);
    list.DeleteItem(0);
    list.InsertItem(2, "new");
    list.SetColourRule([](int row, int) { return row == 2 ? CellColours::kHighlight : CellColours::kNormal; });
    list.SetItemSelected(2, true);
    list.EnsureVisible(2);
  };
  person.Click(kKitPush).Then("look", [] {
    auto* const table = Person::Control<QTableView>(kKitList);
    EXPECT_EQ(5, table->model()->rowCount());
    EXPECT_EQ("new", table->model()->index(2, 0).data().toString());
    EXPECT_EQ("row 1", table->model()->index(0, 0).data().toString());
    EXPECT_TRUE(table->selectionModel()->isRowSelected(2));
    EXPECT_TRUE(table->model()->index(2, 0).data(Qt::BackgroundRole).isValid());
    EXPECT_FALSE(table->model()->index(1, 0).data(Qt::BackgroundRole).isValid());
  });
  person.Click(kIdOk);
  EXPECT_EQ(kIdOk, dialog.DoModal());
}

TEST_F(Controls, TreeItemsAreTickedSelectedAndFolded) {
  dialog.at_ok = [](KitDialog& kit) {
    auto& tree = kit.Item<CMutiTreeCtrl>(kKitTree);
    EXPECT_EQ(kTreePartlyTicked, tree.GetCheck(tree.GetRootItem()));
    EXPECT_EQ(kTreeTicked, tree.GetCheck(tree.FindPath("组/leaf 2"_gbk)));
    EXPECT_EQ(tree.FindPath("组/leaf 1"_gbk), tree.GetSelectedItem());
    EXPECT_FALSE(tree.IsExpanded(tree.GetRootItem()));
  };
  person.Then("tick the second leaf by its box, select the first by its label", [] {
    auto* const view = Person::Control<QTreeView>(kKitTree);
    const QModelIndex group = view->model()->index(0, 0);
    EXPECT_TRUE(view->isExpanded(group));
    const QRect second = view->visualRect(view->model()->index(1, 0, group));
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, QPoint(second.left() + 8, second.center().y()));
    const QRect first = view->visualRect(view->model()->index(0, 0, group));
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, QPoint(first.left() + 60, first.center().y()));
  });
  person.Then("fold", [] {
    auto* const view = Person::Control<QTreeView>(kKitTree);
    EXPECT_EQ("leaf 1", view->currentIndex().data().toString());
    view->collapse(view->model()->index(0, 0));
  });
  person.Click(kIdOk);
  EXPECT_EQ(kIdOk, dialog.DoModal());
  EXPECT_TRUE(Heard(Notification::kItemChecked, kKitTree));
}

TEST_F(Controls, TheSpaceKeyTicks) {
  dialog.at_ok = [](KitDialog& kit) {
    auto& tree = kit.Item<CMutiTreeCtrl>(kKitTree);
    EXPECT_EQ(kTreeTicked, tree.GetCheck(tree.GetRootItem()));
  };
  person.Then("space", [] {
    auto* const view = Person::Control<QTreeView>(kKitTree);
    view->setFocus();
    view->setCurrentIndex(view->model()->index(0, 0));
    QTest::keyClick(view, Qt::Key_Space);
  });
  person.Click(kIdOk);
  EXPECT_EQ(kIdOk, dialog.DoModal());
}

TEST_F(Controls, DatesAndTimesArePicked) {
  dialog.at_ok = [](KitDialog& kit) {
    EXPECT_EQ("2009-03-14", kit.Item<CDateTimeCtrl>(kKitDate).GetWindowText());
    EXPECT_EQ(COleDateTime::kNull, kit.Item<CDateTimeCtrl>(kKitTime).GetTime().GetStatus());
  };
  person.Then("pick", [] {
    Person::Control<QWidget>(kKitDate)->findChild<QDateTimeEdit*>()->setDate(QDate(2009, 3, 14));
    Person::Control<QWidget>(kKitTime)->findChild<QDateTimeEdit*>()->setTime(QTime(10, 7, 59));
  });
  person.Then("none", [] {
    QTest::mouseClick(Person::Control<QWidget>(kKitTime)->findChild<QCheckBox*>(), Qt::LeftButton, {}, QPoint(6, 8));
  });
  person.Click(kIdOk);
  EXPECT_EQ(kIdOk, dialog.DoModal());
  EXPECT_TRUE(Heard(Notification::kChange, kKitTime));
}

TEST_F(Controls, AFrozenControlStaysAsItWas) {
  dialog.hear = [&](Notification, int id) {
    if (id != kKitPush) return;
    dialog.Item<CEdit>(kKitEdit).SetRedraw(false);
    dialog.Item<CEdit>(kKitEdit).SetWindowText("hidden");
    dialog.Item<CEdit>(kKitDigits).SetWindowText("7");
  };
  person.Click(kKitPush).Then("look", [] {
    EXPECT_EQ("", Person::Control<QLineEdit>(kKitEdit)->text());
    EXPECT_EQ("7", Person::Control<QLineEdit>(kKitDigits)->text());
  });
  person.Click(kIdOk);
  EXPECT_EQ(kIdOk, dialog.DoModal());
}

}  // namespace
}  // namespace loom::testing
