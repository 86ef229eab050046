#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/ui/dialog.h"
#include "platform/ui/tree_ctrl.h"

namespace loom {

// What a person does with a control of the window in front; an empty one is nothing.
struct UserAction {
  std::string text = {};  // UTF-8, the control's id stands behind it
  // Throws UiRefused where the window does not allow it.
  std::function<void(CDialog&, int id)> perform = {};

  explicit operator bool() const { return static_cast<bool>(perform); }
};

// How a person finds an item of a tree.
struct TreeItem {
  std::string name;
  std::function<HTREEITEM(const CTreeCtrl&)> find;  // none: it is not there

  HTREEITEM In(const CTreeCtrl& tree) const;  // throws UiRefused when it is not there
};
TreeItem ItemAtPath(const CString& path);  // as CTreeCtrl::FindPath takes it
TreeItem LeafNamed(const CString& text);   // the first one
TreeItem LeafOrGroupNamed(const CString& text);

// The control of a class; throws UiRefused where the window has none.
template <class T>
T& ItemFor(const CDialog& dialog, int id) {
  auto* const item = dynamic_cast<T*>(dialog.FindItem(id));
  if (!item) throw UiRefused("there is no control " + std::to_string(id) + " of that kind");
  return *item;
}

// As descriptions show them, UTF-8.
std::string Shown(int number);
std::string Shown(const CString& text);
std::string Shown(const TreeItem& item);
template <class T>
std::string Shown(const std::vector<T>& all) {
  std::string list;
  for (const T& one : all) list += (list.empty() ? "" : ", ") + Shown(one);
  return "[" + list + "]";
}

// Everything that a person can do in a window: scripts, tests and the tables of `qloom` consist of it.
namespace act {

UserAction Press();
UserAction PressToClose();  // refused when the window stays open
UserAction Reach();         // refused unless the control can be used
UserAction Check(int state);
UserAction Type(const CString& text);       // into an edit or an editable combo box
UserAction TypeWhole(const CString& text);  // refused unless the edit holds just that then
UserAction Choose(const CString& entry);
UserAction ChooseAt(int position);
UserAction SelectRows(const std::vector<int>& rows);
UserAction SelectRow(const CString& first_cell);
UserAction DoubleClickRow(int row);
UserAction DoubleClickRow(const CString& first_cell);
UserAction ClickHeader(int column);
UserAction SelectItems(const std::vector<TreeItem>& items);
UserAction DoubleClickItem(const TreeItem& item, TreeHitPart part = TreeHitPart::kLabel);
UserAction Tick(const TreeItem& item, bool ticked);
UserAction Expand(const TreeItem& item, bool expanded);
UserAction PickDate(const CalendarDay& day);
UserAction PickTime(int hour, int minute, int second);
UserAction ShowPage();  // the tab of the page of that id

}  // namespace act
}  // namespace loom
