#include "platform/ui/tree_ctrl.h"

#include <stdexcept>
#include <string>

#include "platform/encoding.h"
#include "platform/ui/dialog.h"

namespace loom {

const CTreeCtrl::Node& CTreeCtrl::At(HTREEITEM item) const {
  const auto at = static_cast<std::size_t>(item.id - first_id_);
  if (item.id < first_id_ || at >= nodes_.size() || !nodes_[at].alive)
    throw std::out_of_range("tree item " + std::to_string(item.id));
  return nodes_[at];
}

CTreeCtrl::Node& CTreeCtrl::At(HTREEITEM item) { return const_cast<Node&>(std::as_const(*this).At(item)); }

HTREEITEM CTreeCtrl::InsertItem(const CString& text, int image, HTREEITEM parent, HTREEITEM after) {
  if (!after) after = NodeOrRoot(parent).last_child;
  if (after && At(after).parent != parent) throw std::logic_error("a tree item goes behind a child of its parent");
  const HTREEITEM item{first_id_ + static_cast<int>(nodes_.size())};
  const HTREEITEM next = after ? At(after).next : HTREEITEM();
  nodes_.push_back({.text = text, .image = image, .parent = parent, .previous = after, .next = next});
  (after ? At(after).next : NodeOrRoot(parent).first_child) = item;
  (next ? At(next).previous : NodeOrRoot(parent).last_child) = item;
  ++count_;
  OnInserted(item);
  Touch();
  return item;
}

void CTreeCtrl::DeleteItem(HTREEITEM item) {
  while (const HTREEITEM child = At(item).first_child) DeleteItem(child);
  OnDeleting(item);
  Node& node = At(item);
  (node.previous ? At(node.previous).next : NodeOrRoot(node.parent).first_child) = node.next;
  (node.next ? At(node.next).previous : NodeOrRoot(node.parent).last_child) = node.previous;
  if (current_ == item) current_ = {};
  if (in_view_ == item) in_view_ = {};
  node.alive = false;
  node.text.Empty();
  --count_;
  Touch();
}

void CTreeCtrl::DeleteAllItems() {
  first_id_ += static_cast<int>(nodes_.size());
  nodes_.clear();
  root_ = Node();
  count_ = 0;
  current_ = in_view_ = {};
  Touch();
}

void CTreeCtrl::SetItemText(HTREEITEM item, const CString& text) {
  At(item).text = text;
  Touch();
}

HTREEITEM CTreeCtrl::GetNextItem(HTREEITEM item, HTREEITEM within) const {
  if (!item) return GetChildItem(within);
  if (const HTREEITEM child = At(item).first_child) return child;
  for (; item && item != within; item = At(item).parent) {
    if (const HTREEITEM next = At(item).next) return next;
  }
  return {};
}

int CTreeCtrl::GetDepth(HTREEITEM item) const {
  int depth = 0;
  while ((item = At(item).parent)) ++depth;
  return depth;
}

CString CTreeCtrl::GetPath(HTREEITEM item) const {
  const Node& node = At(item);
  return node.parent ? GetPath(node.parent) + "/" + node.text : node.text;
}

// Texts may hold a '/' themselves, so every child that the path can start with is tried.
HTREEITEM CTreeCtrl::FindBelow(HTREEITEM parent, std::string_view path) const {
  for (HTREEITEM child = GetChildItem(parent); child; child = At(child).next) {
    const std::string_view text = At(child).text.view();
    if (path.substr(0, text.size()) != text) continue;
    if (path.size() == text.size()) return child;
    if (path[text.size()] != '/') continue;
    if (const HTREEITEM found = FindBelow(child, path.substr(text.size() + 1))) return found;
  }
  return {};
}

HTREEITEM CTreeCtrl::FindPath(const CString& path) const { return FindBelow({}, path.view()); }

void CTreeCtrl::Expand(HTREEITEM item, bool expanded) {
  At(item).expanded = expanded;
  Touch();
}

void CTreeCtrl::EnsureVisible(HTREEITEM item) {
  for (HTREEITEM parent = At(item).parent; parent; parent = At(parent).parent) At(parent).expanded = true;
  in_view_ = item;
  Touch();
}

void CTreeCtrl::ClearSelection() {
  if (current_) At(current_).selected = false;
}

void CTreeCtrl::SelectItem(HTREEITEM item) {
  if (item) EnsureVisible(item);
  const bool changes = current_ != item || (item && !At(item).selected);
  ClearSelection();
  current_ = item;
  if (item) At(item).selected = true;
  Touch();
  if (changes) Notify(Notification::kSelChange);
}

void CTreeCtrl::RequireItem(HTREEITEM item) const {
  try {
    At(item);
  } catch (const std::out_of_range& error) {
    Refuse(std::string("it has no ") + error.what());
  }
}

void CTreeCtrl::UserSelect(HTREEITEM item) {
  BeginUserAction();
  RequireItem(item);
  hit_ = {item, TreeHitPart::kLabel};
  SelectItem(item);
}

void CTreeCtrl::UserDoubleClick(HTREEITEM item, TreeHitPart part) {
  BeginUserAction();
  RequireItem(item);
  hit_ = {item, part};
  if (part == TreeHitPart::kLabel || part == TreeHitPart::kImage) SelectItem(item);
  Notify(Notification::kDoubleClicked);
  // The handler may have ended the dialog or taken the item away.
  if (!dialog().IsReachable() || part == TreeHitPart::kStateImage) return;
  const auto at = static_cast<std::size_t>(item.id - first_id_);
  if (item.id >= first_id_ && at < nodes_.size() && nodes_[at].alive && ItemHasChildren(item))
    Expand(item, !IsExpanded(item));
}

void CTreeCtrl::UserExpand(HTREEITEM item, bool expanded) {
  BeginUserAction();
  RequireItem(item);
  if (!ItemHasChildren(item)) Refuse("the item '" + GbkToUtf8(GetPath(item)) + "' has nothing below it");
  EnsureVisible(item);
  Expand(item, expanded);
}

void CTreeCtrl::Reset() {
  CWnd::Reset();
  CTreeCtrl::DeleteAllItems();
  images_ = state_images_ = CImageList();
  hit_ = {};
}

void CMutiTreeCtrl::CountChild(Node& parent, int check, int by) {
  if (check == kTreeTicked) parent.ticked_children += by;
  if (check == kTreePartlyTicked) parent.partly_ticked_children += by;
}

// Gives the box of one item a state and lets those above follow.
void CMutiTreeCtrl::ChangeCheck(HTREEITEM item, int check) {
  Node& node = At(item);
  if (node.check == check) return;
  if (node.parent) {
    CountChild(At(node.parent), node.check, -1);
    CountChild(At(node.parent), check, 1);
  }
  node.check = check;
  if (node.parent) FollowChildren(node.parent);
}

void CMutiTreeCtrl::FollowChildren(HTREEITEM item) {
  const Node& node = At(item);
  if (node.children == 0) return ChangeCheck(item, kTreeClear);
  if (node.ticked_children == node.children) return ChangeCheck(item, kTreeTicked);
  ChangeCheck(item, node.ticked_children + node.partly_ticked_children > 0 ? kTreePartlyTicked : kTreeClear);
}

void CMutiTreeCtrl::OnInserted(HTREEITEM item) {
  const HTREEITEM parent = At(item).parent;
  if (!parent) return;
  ++At(parent).children;
  FollowChildren(parent);
}

void CMutiTreeCtrl::OnDeleting(HTREEITEM item) {
  const Node& node = At(item);
  if (!node.parent) return;
  --At(node.parent).children;
  CountChild(At(node.parent), node.check, -1);
  FollowChildren(node.parent);
}

void CMutiTreeCtrl::SetCheck(HTREEITEM item, bool ticked) {
  At(item);
  // From the leaves up, so that every group is counted from its children.
  for (HTREEITEM below = GetNextItem(item, item); below; below = GetNextItem(below, item)) {
    if (!ItemHasChildren(below)) ChangeCheck(below, ticked ? kTreeTicked : kTreeClear);
  }
  if (!ItemHasChildren(item)) ChangeCheck(item, ticked ? kTreeTicked : kTreeClear);
  Touch();
}

int CMutiTreeCtrl::GetStateImage(HTREEITEM item) const {
  constexpr int kImages[] = {1, 3, 2};
  return kImages[GetCheck(item)];
}

std::vector<HTREEITEM> CMutiTreeCtrl::GetSelectedItems() const {
  std::vector<HTREEITEM> selected;
  for (HTREEITEM item = GetRootItem(); item; item = GetNextItem(item)) {
    if (At(item).selected) selected.push_back(item);
  }
  return selected;
}

void CMutiTreeCtrl::ClearSelection() {
  for (const HTREEITEM item : GetSelectedItems()) At(item).selected = false;
}

void CMutiTreeCtrl::SetItemSelected(HTREEITEM item, bool selected) {
  if (selected && !HasStyle(style::kMultiSelect)) return SelectItem(item);
  if (At(item).selected == selected) return;
  At(item).selected = selected;
  if (selected)
    SetCurrent(item);
  else if (GetSelectedItem() == item)
    SetCurrent({});
  Touch();
  Notify(Notification::kSelChange);
}

void CMutiTreeCtrl::UserSelectItems(const std::vector<HTREEITEM>& items) {
  BeginUserAction();
  for (const HTREEITEM item : items) RequireItem(item);
  if (items.size() > 1 && !HasStyle(style::kMultiSelect)) Refuse("only one item can be selected");
  if (items.empty()) return SelectItem({});
  SetHit({items.back(), TreeHitPart::kLabel});
  SelectItem(items.front());
  for (const HTREEITEM item : items) {
    EnsureVisible(item);
    SetItemSelected(item, true);
  }
}

void CMutiTreeCtrl::UserTick(HTREEITEM item, bool ticked) {
  BeginUserAction();
  if (!HasStyle(style::kCheckBoxes)) Refuse("its items have no boxes");
  RequireItem(item);
  if (GetCheck(item) == (ticked ? kTreeTicked : kTreeClear)) return;
  EnsureVisible(item);
  SetHit({item, TreeHitPart::kStateImage});
  SetCheck(item, ticked);
  Notify(Notification::kItemChecked);
}

}  // namespace loom
