#include <gtest/gtest.h>

#include <QScrollBar>
#include <QTableView>

#include "apps/qloom-desktop/front_end/pane_stretch.h"
#include "apps/qloom-desktop/front_end/qt_front_end.h"
#include "apps/qloom-desktop/front_end/scrolling_place.h"
#include "tests/desktop/kit_dialog.h"
#include "tests/desktop/person.h"

namespace loom::testing {
namespace {

TEST(PaneStretch, ListsShareTheRoomAndPushWhatStandsBehindThem) {
  const PaneStretch stretch({
      {.rect = {0, 0, 60, 40}, .grows_down = true, .grows_across = true},    // a list, with buttons beside it
      {.rect = {70, 0, 30, 10}},                                             //
      {.rect = {0, 50, 100, 40}, .grows_down = true, .grows_across = true},  // another below
      {.rect = {0, 95, 30, 10}},                                             //
      {.rect = {0, 110, 100, 30}, .is_frame = true},                         // round a wide edit and a button
      {.rect = {5, 115, 60, 10}, .grows_across = true},                      //
      {.rect = {70, 115, 25, 10}},                                           //
  });
  const QSize more(20, 10);
  const QRect expected[] = {{0, 0, 80, 45},    {90, 0, 30, 10},  {0, 55, 120, 45}, {0, 105, 30, 10},
                            {0, 120, 120, 30}, {5, 125, 80, 10}, {90, 125, 25, 10}};
  for (std::size_t at = 0; at < std::size(expected); ++at) EXPECT_EQ(expected[at], stretch.RectOf(at, more)) << at;
}

TEST(Layout, AWindowThatIsMadeLargerGivesItsListsTheRoom) {
  const QtFrontEnd front_end;
  KitDialog dialog;
  Person person;
  person.Then("enlarge", [] {
    QWidget* const list = Person::Control<QWidget>(kKitList);
    QWidget* const button = Person::Control<QWidget>(kIdOk);
    const QRect before = list->geometry();
    const int below = button->y();
    Person::Window()->resize(Person::Window()->size() + QSize(100, 80));
    QTest::qWait(1);
    EXPECT_GE(list->height(), before.height() + 30);
    EXPECT_GT(list->width(), before.width());
    EXPECT_EQ(below + 80, button->y());
  });
  person.Click(kIdCancel);
  dialog.DoModal();
}

TEST(Layout, ASmallWindowScrolls) {
  const QtFrontEnd front_end;
  KitDialog dialog;
  Person person;
  person.Then("shrink", [] {
    QWidget* const window = Person::Window();
    window->resize(window->size() / 2);
    QTest::qWait(1);
    EXPECT_TRUE(window->findChild<QScrollArea*>()->verticalScrollBar()->maximum() > 0);
  });
  person.Then("Tab brings what has the focus into view", [] {
    QWidget* const button = Person::Control<QWidget>(kIdOk);
    button->setFocus(Qt::TabFocusReason);
    Person::Window()->findChild<QScrollArea*>()->ensureWidgetVisible(button);
    EXPECT_FALSE(button->visibleRegion().isEmpty());
  });
  person.Key(Qt::Key_Escape);
  dialog.DoModal();
}

}  // namespace
}  // namespace loom::testing
