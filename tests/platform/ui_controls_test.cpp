#include <gtest/gtest.h>

#include "platform/ui/date_time_ctrl.h"
#include "platform/ui/dialog.h"
#include "platform/ui/list_ctrl.h"
#include "platform/ui/tree_ctrl.h"
#include "resources/images.h"
#include "tests/support/scripted_user_gtest.h"

namespace loom::ui_controls_test {
namespace {

enum Id { kList = 100, kSingle, kTree, kBoxes, kDate, kTime, kDay, kEdit, kLow };

// clang-format off
constexpr ControlTemplate kControls[] = {
    {kList,   ControlClass::kListView, "", {0, 0, 100, 70}, style::kMultiSelect | style::kHeaderDragDrop},
    {kSingle, ControlClass::kListView, "", {0, 0, 100, 70}},
    {kTree,   ControlClass::kTreeView, "", {}, style::kMultiSelect},
    {kBoxes,  ControlClass::kTreeView, "", {}, style::kCheckBoxes},
    {kDate,   ControlClass::kDateTime, "", {}},
    {kTime,   ControlClass::kDateTime, "", {}, style::kTimeFormat},
    {kDay,    ControlClass::kDateTime, "", {}, style::kShowNone},
    {kEdit,   ControlClass::kEdit,     "", {}},
    {kLow,    ControlClass::kEdit,     "", {}},
    {kIdOk,   ControlClass::kDefaultButton, "确定", {}},
};
// clang-format on
constexpr DialogTemplate kTemplate{1, "试验", {}, kControls};

class SampleDialog : public CDialog {
 public:
  SampleDialog() : CDialog(kTemplate) {
    for (const int id : {kList, kSingle, kTree, kBoxes})
      OnSelChange(id, [this, id] { events.push_back({id, Row(id)}); });
    OnDoubleClicked(kList, [this] { events.push_back({-kList, list().GetClickedRow()}); });
    OnDoubleClicked(kTree, [this] { hits.push_back(tree().GetHit().part); });
    On(Notification::kHeaderClicked, kList, [this] { events.push_back({-kList, list().GetClickedColumn()}); });
    On(Notification::kItemChecked, kBoxes, [this] { ++ticks; });
    OnChange(kDate, [this] { ++date_changes; });
  }

  CListCtrl& list() const { return GetDlgItem<CListCtrl>(kList); }
  CListCtrl& single() const { return GetDlgItem<CListCtrl>(kSingle); }
  CMutiTreeCtrl& tree() const { return GetDlgItem<CMutiTreeCtrl>(kTree); }
  CMutiTreeCtrl& boxes() const { return GetDlgItem<CMutiTreeCtrl>(kBoxes); }

  // Runs the dialog with a person who does what `check` does first.
  void Run(std::function<void()> check) {
    ScriptedUser user;
    user.Expect(1).Do("check", [&](CDialog&) { check(); }).Cancel();
    DoModal();
  }

  std::vector<std::pair<int, int>> events;
  std::vector<TreeHitPart> hits;
  int ticks = 0;
  int date_changes = 0;
  COleDateTime date{2009, 3, 14, 10, 7, 59};
  std::int32_t low = 1;

 protected:
  void OnInitDialog() override {
    for (const int id : {kList, kSingle}) {
      auto& target = GetDlgItem<CListCtrl>(id);
      target.InsertColumn(0, "列 1"_gbk, 90);
      target.InsertColumn(1, "列 2"_gbk, 100, ColumnAlignment::kCentre);
      for (const char* row : {"a", "b", "c"}) target.InsertItem(target.GetItemCount(), row, 3);
    }
    events.clear();
    CDialog::OnInitDialog();
  }
  void DoDataExchange(CDataExchange& exchange) override {
    exchange.DateTime(kDate, date);
    exchange.Number(kLow, low);
    exchange.Range(kLow, low, 1, 100000);
  }

 private:
  int Row(int id) const {
    return id == kList || id == kSingle ? GetDlgItem<CListCtrl>(id).GetChangedRow()
                                        : GetDlgItem<CMutiTreeCtrl>(id).GetSelectedItem().id;
  }
};

using Events = std::vector<std::pair<int, int>>;

TEST(ListCtrl, RowsKeepTheirStateWhenOthersComeAndGo) {
  SampleDialog dialog;
  dialog.Run([&] {
    CListCtrl& list = dialog.list();
    list.SetItemData(1, 77);
    list.SetItemText(1, 1, "wide");
    list.SetItemSelected(1, true);
    list.SetFocusedRow(1);
    EXPECT_EQ(0, list.InsertItem(-5, "first"));
    EXPECT_EQ(4, list.InsertItem(99, "last"));
    EXPECT_EQ(77, list.GetItemData(2));
    EXPECT_EQ((std::vector<int>{2}), list.GetSelectedRows());
    EXPECT_EQ(2, list.GetFocusedRow());
    list.DeleteItem(0);
    EXPECT_EQ(1, list.GetFocusedRow());
    list.InsertColumn(1, "new", 10);
    EXPECT_EQ("wide", list.GetItemText(1, 2));
    EXPECT_EQ("", list.GetItemText(0, 1));
    EXPECT_EQ(-1, list.FindItem("nobody"));
    EXPECT_THROW(list.GetItemText(9, 0), std::out_of_range);
    EXPECT_THROW(list.SetItemText(0, 3, ""), std::out_of_range);
    list.DeleteItem(3);
    list.SetFocusedRow(2);
    list.DeleteItem(2);
    EXPECT_EQ(1, list.GetFocusedRow());  // the focus goes to a neighbour
  });
}

TEST(ListCtrl, SelectingNotifiesWhoeverDoesIt) {
  SampleDialog dialog;
  dialog.Run([&] {
    dialog.single().SetItemSelected(0, true);
    dialog.single().SetItemSelected(0, true);  // no change
    dialog.single().SetItemSelected(2, true);
    EXPECT_EQ((Events{{kSingle, 0}, {kSingle, 0}, {kSingle, 2}}), dialog.events);
    dialog.events.clear();
    dialog.list().UserSelectRows({0, 2});
    dialog.list().UserDoubleClick(2);
    dialog.list().UserDoubleClick(-1);
    dialog.list().UserClickHeader(1);
    EXPECT_EQ((Events{{kList, 0}, {kList, 2}, {kList, 0}, {-kList, 2}, {kList, 2}, {-kList, -1}, {-kList, 1}}),
              dialog.events);
    EXPECT_EQ(kList, dialog.GetFocusId());
    EXPECT_THROW(dialog.single().UserSelectRows({0, 1}), UiRefused);
    EXPECT_THROW(dialog.list().UserDoubleClick(3), UiRefused);
    EXPECT_THROW(dialog.list().UserClickHeader(2), UiRefused);
    dialog.list().EnableWindow(false);
    EXPECT_THROW(dialog.list().UserSelectRows({0}), UiRefused);
  });
}

TEST(ListCtrl, AHandlerMayTakeRowsAwayWhileTheyAreSelected) {
  class Emptying : public SampleDialog {
   public:
    Emptying() {
      OnSelChange(kList, [this] { list().DeleteAllItems(); });
    }
  };
  Emptying dialog;
  dialog.Run([&] {
    dialog.list().UserSelectRows({1, 2});
    EXPECT_EQ(0, dialog.list().GetItemCount());
  });
}

TEST(ListCtrl, WidthsAndScrolling) {
  SampleDialog dialog;
  dialog.Run([&] {
    CListCtrl& list = dialog.list();
    EXPECT_EQ(146, list.GetClientWidth());  // 100 dialog units without the border
    list.SetItemText(2, 1, "中文a"_gbk);
    list.FitColumn(1);
    EXPECT_EQ(5 * 6 + 10, list.GetColumnWidth(1));
    list.Scroll(500);
    EXPECT_EQ(0, list.GetScrollX());  // everything fits
    list.SetColumnWidth(1, 100);
    list.Scroll(30);
    EXPECT_EQ(30, list.GetScrollX());
    list.Scroll(90);
    EXPECT_EQ(190 - 146, list.GetScrollX());
    list.Scroll(-10000);
    EXPECT_EQ(0, list.GetScrollX());
    EXPECT_EQ(4, list.GetCountPerPage());
    for (int row = 3; row < 20; ++row) list.InsertItem(row, "x");
    list.EnsureVisible(10);
    EXPECT_EQ(7, list.GetTopIndex());
    list.EnsureVisible(8);
    EXPECT_EQ(7, list.GetTopIndex());
    list.EnsureVisible(2);
    EXPECT_EQ(2, list.GetTopIndex());
  });
}

TEST(ListCtrl, FrontEndsSeeColoursColumnOrderAndRevision) {
  SampleDialog dialog;
  dialog.Run([&] {
    CListCtrl& list = dialog.list();
    EXPECT_EQ(CellColours::kNormal, list.GetCellColours(0, 1));
    list.SetColourRule([](int, int column) { return column == 1 ? CellColours::kHighlight : CellColours::kNormal; });
    EXPECT_EQ(CellColours::kHighlight, list.GetCellColours(0, 1));
    list.UserMoveColumn(0, 1);
    EXPECT_EQ((std::vector<int>{1, 0}), list.GetColumnOrder());
    list.InsertColumn(0, "new", 1);
    EXPECT_EQ((std::vector<int>{0, 2, 1}), list.GetColumnOrder());
    EXPECT_THROW(dialog.single().UserMoveColumn(0, 1), UiRefused);
    const unsigned before = list.GetRevision();
    list.SetRedraw(false);
    list.SetItemText(0, 0, "y");
    EXPECT_TRUE(list.IsRedrawFrozen());
    EXPECT_NE(before, list.GetRevision());
    list.SetImageList(CImageList(kTreeImages));
    EXPECT_LT(kImageLogFiles, list.GetImageList().GetResource()->count);
  });
  EXPECT_EQ(3, dialog.list().GetColumnCount());
  dialog.Run([&] {
    EXPECT_EQ(2, dialog.list().GetColumnCount());  // the next run starts anew
    EXPECT_FALSE(dialog.list().IsRedrawFrozen());
    EXPECT_EQ(nullptr, dialog.list().GetImageList().GetResource());
  });
}

// P(a(1, 2), b), Q with the leaf "x/y".
struct Items {
  explicit Items(CTreeCtrl& tree) {
    p = tree.InsertItem("P", 0);
    a = tree.InsertItem("a", 1, p);
    one = tree.InsertItem("1", 2, a);
    two = tree.InsertItem("2", 2, a);
    b = tree.InsertItem("b", 2, p);
    q = tree.InsertItem("Q", 0);
    slashed = tree.InsertItem("x/y", 2, q);
  }
  HTREEITEM p, a, one, two, b, q, slashed;
};

TEST(TreeCtrl, WalksInTheOrderOfReading) {
  SampleDialog dialog;
  dialog.Run([&] {
    CTreeCtrl& tree = dialog.tree();
    const Items items(tree);
    CString all;
    for (HTREEITEM item = tree.GetNextItem({}); item; item = tree.GetNextItem(item)) all += tree.GetItemText(item);
    EXPECT_EQ("Pa12bQx/y", all);
    CString below;
    for (HTREEITEM item = tree.GetNextItem(items.a, items.a); item; item = tree.GetNextItem(item, items.a))
      below += tree.GetItemText(item);
    EXPECT_EQ("12", below);
    EXPECT_EQ(2, tree.GetDepth(items.two));
    EXPECT_EQ("P/a/2", tree.GetPath(items.two));
    EXPECT_EQ(items.slashed, tree.FindPath("Q/x/y"));
    EXPECT_FALSE(tree.FindPath("Q/x"));
    EXPECT_FALSE(tree.GetParentItem(items.p));
    EXPECT_EQ(items.q, tree.GetNextSiblingItem(tree.GetRootItem()));
    const HTREEITEM between = tree.InsertItem("between", 2, items.a, items.one);
    EXPECT_EQ(between, tree.GetNextSiblingItem(items.one));
    EXPECT_EQ(items.two, tree.GetNextSiblingItem(between));
    EXPECT_THROW(tree.InsertItem("lost", 2, items.a, items.b), std::logic_error);
    tree.DeleteItem(items.a);
    EXPECT_EQ(4, tree.GetCount());
    EXPECT_EQ(items.b, tree.GetChildItem(items.p));
    EXPECT_THROW(tree.GetItemText(items.one), std::out_of_range);
    tree.DeleteAllItems();
    EXPECT_FALSE(tree.GetRootItem());
    const HTREEITEM fresh = tree.InsertItem("fresh", 0);
    EXPECT_NE(items.p, fresh);  // an old handle does not come back to life
    EXPECT_THROW(tree.GetItemText(items.p), std::out_of_range);
  });
}

TEST(TreeCtrl, TicksSpreadDownAndGroupsFollow) {
  SampleDialog dialog;
  dialog.Run([&] {
    CMutiTreeCtrl& tree = dialog.boxes();
    const Items items(tree);
    tree.SetCheck(items.one, true);
    EXPECT_EQ(kTreePartlyTicked, tree.GetCheck(items.a));
    EXPECT_EQ(kTreePartlyTicked, tree.GetCheck(items.p));
    EXPECT_EQ(kTreeClear, tree.GetCheck(items.q));
    EXPECT_EQ(0, dialog.ticks);    // the program's ticks do not notify
    tree.UserTick(items.p, true);  // a partly ticked box becomes ticked
    for (const HTREEITEM item : {items.p, items.a, items.two, items.b}) EXPECT_EQ(kTreeTicked, tree.GetCheck(item));
    EXPECT_EQ(3, tree.GetStateImage(items.b));
    tree.UserTick(items.two, false);
    EXPECT_EQ(2, tree.GetStateImage(items.p));
    tree.UserTick(items.two, false);  // is so already
    EXPECT_EQ(2, dialog.ticks);
    EXPECT_TRUE(tree.IsExpanded(items.a));  // opened to get at the item
    tree.DeleteItem(items.two);
    EXPECT_EQ(kTreeTicked, tree.GetCheck(items.p));
    tree.InsertItem("3", 2, items.a);
    EXPECT_EQ(kTreePartlyTicked, tree.GetCheck(items.p));
    tree.DeleteItem(items.a);
    tree.DeleteItem(items.b);
    EXPECT_EQ(1, tree.GetStateImage(items.p));
    EXPECT_THROW(dialog.tree().UserTick({}, true), UiRefused);
    EXPECT_THROW(tree.UserTick(items.b, true), UiRefused);
  });
}

TEST(TreeCtrl, SelectsOneOrSeveralItems) {
  SampleDialog dialog;
  dialog.Run([&] {
    CMutiTreeCtrl& tree = dialog.tree();
    const Items items(tree);
    tree.UserSelectItems({items.b, items.one});
    EXPECT_EQ((std::vector<HTREEITEM>{items.one, items.b}), tree.GetSelectedItems());
    EXPECT_EQ(items.one, tree.GetSelectedItem());
    EXPECT_EQ(2u, dialog.events.size());
    tree.SelectItem(items.q);
    EXPECT_EQ((std::vector<HTREEITEM>{items.q}), tree.GetSelectedItems());
    tree.SelectItem(items.q);
    EXPECT_EQ(3u, dialog.events.size());  // the last one changed nothing
    tree.DeleteItem(items.q);
    EXPECT_FALSE(tree.GetSelectedItem());
    const Items other(dialog.boxes());
    EXPECT_THROW(dialog.boxes().UserSelectItems({other.a, other.b}), UiRefused);
  });
}

TEST(TreeCtrl, ADoubleClickTellsWhatItHit) {
  SampleDialog dialog;
  dialog.Run([&] {
    CMutiTreeCtrl& tree = dialog.tree();
    const Items items(tree);
    tree.UserDoubleClick(items.two);
    EXPECT_EQ(items.two, tree.GetSelectedItem());
    tree.UserDoubleClick(items.q, TreeHitPart::kExpander);
    EXPECT_EQ(items.two, tree.GetSelectedItem());
    EXPECT_TRUE(tree.IsExpanded(items.q));
    tree.UserDoubleClick(items.q);
    EXPECT_FALSE(tree.IsExpanded(items.q));
    EXPECT_EQ((std::vector{TreeHitPart::kLabel, TreeHitPart::kExpander, TreeHitPart::kLabel}), dialog.hits);
    EXPECT_THROW(tree.UserExpand(items.b, true), UiRefused);
  });
}

TEST(DateTimeCtrl, HoldsValidTimesAndWhereAllowedNone) {
  SampleDialog dialog;
  dialog.Run([&] {
    auto& date = dialog.GetDlgItem<CDateTimeCtrl>(kDate);
    auto& time = dialog.GetDlgItem<CDateTimeCtrl>(kTime);
    auto& day = dialog.GetDlgItem<CDateTimeCtrl>(kDay);
    date.UserPickDate({2012, 2, 29});
    EXPECT_EQ((COleDateTime{2012, 2, 29, 10, 7, 59}), date.GetTime());  // the time of day stays
    EXPECT_EQ("2012-02-29", date.GetWindowText());
    EXPECT_FALSE(date.SetTime(COleDateTime::Null()));
    EXPECT_FALSE(date.SetTime(COleDateTime(2011, 2, 29, 0, 0, 0)));
    EXPECT_THROW(date.UserPickDate({2011, 2, 29}), UiRefused);
    EXPECT_THROW(date.UserPickNone(), UiRefused);
    EXPECT_THROW(date.UserPickTime(1, 2, 3), UiRefused);
    EXPECT_EQ(1, dialog.date_changes);
    EXPECT_TRUE(time.SetTime(date.GetTime().TimeOnly()));
    time.UserPickTime(23, 59, 58);
    EXPECT_EQ("23:59:58", time.GetWindowText());
    EXPECT_EQ(1899, time.GetTime().GetYear());
    day.UserPickNone();
    EXPECT_EQ("", day.GetWindowText());
    EXPECT_EQ(-1, day.GetTime().GetMonth());
  });
}

TEST(OleDateTime, CountsDaysFromItsZeroDate) {
  EXPECT_EQ("1899-12-30 00:00:00", COleDateTime().Format());
  const COleDateTime early(100, 1, 1, 23, 0, 1);
  EXPECT_EQ("0100-01-01 23:00:01", early.Format());
  EXPECT_EQ("1899-12-30 23:00:01", early.TimeOnly().Format());
  EXPECT_EQ("0100-01-01 00:00:00", early.DateOnly().Format());
  EXPECT_LT(early, COleDateTime());
  for (const COleDateTime& bad :
       {COleDateTime::Null(), COleDateTime(99, 1, 1, 0, 0, 0), COleDateTime(2000, 1, 1, 24, 0, 0)}) {
    EXPECT_FALSE(bad.IsValid());
    EXPECT_FALSE(bad < early || bad >= early);
    EXPECT_EQ("", bad.Format());
    EXPECT_EQ(-1, bad.GetSecond());
  }
}

TEST(DataExchange, ANumberOutOfItsRangeIsRefusedWithTheStandardMessage) {
  ScriptedUser user;
  const CString message = "请输入一个在1 和100000 之间的整数."_gbk;
  user.Expect(1)
      .Type(kLow, "100001")
      .Ok()
      .ExpectMessage(message, MessageIcon::kWarning)
      .SeeFocus(kLow)
      .Do("see the text selected",
          [](CDialog& shown) { EXPECT_EQ(std::pair(0, 6), shown.GetDlgItem<CEdit>(kLow).GetSel()); })
      .Type(kLow, "0")
      .Ok()
      .ExpectMessage(message)
      .PickDate(kDate, {2010, 1, 2})
      .Type(kLow, "100000")
      .Ok();
  SampleDialog dialog;
  EXPECT_EQ(kIdOk, dialog.DoModal());
  EXPECT_EQ(HelpContext::kIntegerRange, user.messages().front().help);
  EXPECT_EQ(100000, dialog.low);
  EXPECT_EQ("2010-01-02 10:07:59", dialog.date.Format());
  dialog.low = 3;
  EXPECT_FALSE(dialog.UpdateData(true));  // there is no window any more
  EXPECT_EQ(3, dialog.low);
}

TEST(Edit, SelectionStaysWithinTheText) {
  SampleDialog dialog;
  dialog.Run([&] {
    auto& edit = dialog.GetDlgItem<CEdit>(kEdit);
    edit.SetWindowText("abcd");
    edit.SetSel(1, 99);
    EXPECT_EQ(std::pair(1, 4), edit.GetSel());
    edit.SetSel(3, 2);
    EXPECT_EQ(std::pair(3, 3), edit.GetSel());
    edit.SetWindowText("x");
    EXPECT_EQ(std::pair(0, 0), edit.GetSel());
    dialog.EnableItems({kEdit, kLow}, false);
    EXPECT_THROW(edit.UserType("y"), UiRefused);
    edit.SetPlacement(dialog.list().GetPlacement());
    EXPECT_EQ(dialog.list().GetClientHeight(), edit.GetClientHeight());
  });
}

}  // namespace
}  // namespace loom::ui_controls_test
