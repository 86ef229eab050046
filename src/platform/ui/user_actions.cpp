#include "platform/ui/user_actions.h"

#include "platform/encoding.h"
#include "platform/ui/date_time_ctrl.h"
#include "platform/ui/list_ctrl.h"
#include "platform/ui/property_sheet.h"

namespace loom {
namespace {

// An action on a control of one class.
template <class Control, class Perform>
UserAction On(std::string text, Perform perform) {
  return {std::move(text), [=](CDialog& dialog, int id) { perform(ItemFor<Control>(dialog, id)); }};
}

int RowOf(const CListCtrl& list, const CString& first_cell) {
  const int row = list.FindItem(first_cell);
  if (row < 0) throw UiRefused("the list has no row " + Shown(first_cell));
  return row;
}

HTREEITEM FindNamed(const CTreeCtrl& tree, const CString& text, bool is_leaf) {
  for (HTREEITEM item = tree.GetRootItem(); item; item = tree.GetNextItem(item)) {
    if (tree.GetItemText(item) == text && !(is_leaf && tree.ItemHasChildren(item))) return item;
  }
  return {};
}

void SelectIn(CTreeCtrl& tree, const std::vector<HTREEITEM>& items) {
  if (auto* const several = dynamic_cast<CMutiTreeCtrl*>(&tree)) return several->UserSelectItems(items);
  if (items.size() != 1) throw UiRefused("the tree has one selected item");
  tree.UserSelect(items.front());
}

}  // namespace

std::string Shown(int number) { return std::to_string(number); }
std::string Shown(const CString& text) { return "'" + GbkToUtf8(text) + "'"; }
std::string Shown(const TreeItem& item) { return item.name; }

HTREEITEM TreeItem::In(const CTreeCtrl& tree) const {
  const HTREEITEM item = find(tree);
  if (!item) throw UiRefused("the tree " + Shown(tree.GetDlgCtrlID()) + " has no item " + name);
  return item;
}

TreeItem ItemAtPath(const CString& path) {
  return {Shown(path), [path](const CTreeCtrl& tree) { return tree.FindPath(path); }};
}

TreeItem LeafNamed(const CString& text) {
  return {Shown(text), [text](const CTreeCtrl& tree) { return FindNamed(tree, text, true); }};
}

TreeItem LeafOrGroupNamed(const CString& text) {
  return {Shown(text), [text](const CTreeCtrl& tree) {
            const HTREEITEM leaf = FindNamed(tree, text, true);
            return leaf ? leaf : FindNamed(tree, text, false);
          }};
}

namespace act {

UserAction Press() {
  return {"press", [](CDialog& dialog, int id) { dialog.UserPress(id); }};
}

UserAction PressToClose() {
  return {"press", [](CDialog& dialog, int id) {
            dialog.UserPress(id);
            if (dialog.IsRunning()) throw UiRefused("the window stays open");
          }};
}

UserAction Reach() {
  return On<CWnd>("go to", [](CWnd& control) { control.RequireUsable(); });
}

UserAction Check(int state) {
  return On<CButton>("give state " + Shown(state) + " to", [=](CButton& button) { button.UserCheck(state); });
}

UserAction Type(const CString& text) {
  return {"type " + Shown(text) + " into", [=](CDialog& dialog, int id) {
            if (auto* const combo = dynamic_cast<CComboBox*>(dialog.FindItem(id))) return combo->UserType(text);
            ItemFor<CEdit>(dialog, id).UserType(text);
          }};
}

UserAction TypeWhole(const CString& text) {
  return On<CEdit>("type " + Shown(text) + " into", [=](CEdit& edit) {
    edit.UserType(text);
    if (edit.GetWindowText() != text) throw UiRefused("the edit does not take " + Shown(text));
  });
}

UserAction Choose(const CString& entry) {
  return On<CComboBox>("choose " + Shown(entry) + " in", [=](CComboBox& combo) { combo.UserChoose(entry); });
}

UserAction ChooseAt(int position) {
  return On<CComboBox>("choose entry " + Shown(position) + " in",
                       [=](CComboBox& combo) { combo.UserChoose(position); });
}

UserAction SelectRows(const std::vector<int>& rows) {
  return On<CListCtrl>("select rows " + Shown(rows) + " of", [=](CListCtrl& list) { list.UserSelectRows(rows); });
}

UserAction SelectRow(const CString& first_cell) {
  return On<CListCtrl>("select row " + Shown(first_cell) + " of",
                       [=](CListCtrl& list) { list.UserSelectRows({RowOf(list, first_cell)}); });
}

UserAction DoubleClickRow(int row) {
  return On<CListCtrl>("double-click row " + Shown(row) + " of", [=](CListCtrl& list) { list.UserDoubleClick(row); });
}

UserAction DoubleClickRow(const CString& first_cell) {
  return On<CListCtrl>("double-click row " + Shown(first_cell) + " of",
                       [=](CListCtrl& list) { list.UserDoubleClick(RowOf(list, first_cell)); });
}

UserAction ClickHeader(int column) {
  return On<CListCtrl>("click the header of column " + Shown(column) + " of",
                       [=](CListCtrl& list) { list.UserClickHeader(column); });
}

UserAction SelectItems(const std::vector<TreeItem>& items) {
  return On<CTreeCtrl>("select " + Shown(items) + " in", [=](CTreeCtrl& tree) {
    std::vector<HTREEITEM> found;
    for (const TreeItem& item : items) found.push_back(item.In(tree));
    SelectIn(tree, found);
  });
}

UserAction DoubleClickItem(const TreeItem& item, TreeHitPart part) {
  return On<CTreeCtrl>("double-click " + item.name + " in",
                       [=](CTreeCtrl& tree) { tree.UserDoubleClick(item.In(tree), part); });
}

UserAction Tick(const TreeItem& item, bool ticked) {
  return On<CMutiTreeCtrl>((ticked ? "tick " : "clear ") + item.name + " in",
                           [=](CMutiTreeCtrl& tree) { tree.UserTick(item.In(tree), ticked); });
}

UserAction Expand(const TreeItem& item, bool expanded) {
  return On<CTreeCtrl>((expanded ? "open " : "close ") + item.name + " in",
                       [=](CTreeCtrl& tree) { tree.UserExpand(item.In(tree), expanded); });
}

UserAction PickDate(const CalendarDay& day) {
  return On<CDateTimeCtrl>("pick a date in", [=](CDateTimeCtrl& picker) { picker.UserPickDate(day); });
}

UserAction PickTime(int hour, int minute, int second) {
  return On<CDateTimeCtrl>("pick a time in", [=](CDateTimeCtrl& picker) { picker.UserPickTime(hour, minute, second); });
}

UserAction ShowPage() {
  return {"go to page", [](CDialog& dialog, int page_id) {
            CPropertySheet* const sheet = dialog.GetSheet();
            if (!sheet) throw UiRefused("the window in front is no sheet");
            sheet->UserSelectPage(sheet->FindPage(page_id));
          }};
}

}  // namespace act
}  // namespace loom
