#pragma once

#include <compare>
#include <cstdint>
#include <vector>

#include "platform/ui/controls.h"
#include "platform/ui/image_list.h"

namespace loom {

// One item of a tree; false for none. An item that was deleted is never taken for another.
struct HTREEITEM {
  int id = -1;
  explicit operator bool() const { return id >= 0; }
  friend auto operator<=>(const HTREEITEM&, const HTREEITEM&) = default;
};

enum class TreeHitPart { kNowhere, kExpander, kStateImage, kImage, kLabel };

// A tree view. An operation on an item that is not there is std::out_of_range.
class CTreeCtrl : public CWnd {
 public:
  using CWnd::CWnd;

  // Appends behind the parent's other children, or inserts right behind `after`, one of them. No parent: top level.
  HTREEITEM InsertItem(const CString& text, int image, HTREEITEM parent = {}, HTREEITEM after = {});
  void DeleteItem(HTREEITEM item);  // with everything below it
  void DeleteAllItems();
  int GetCount() const { return count_; }

  CString GetItemText(HTREEITEM item) const { return At(item).text; }
  void SetItemText(HTREEITEM item, const CString& text);
  int GetItemImage(HTREEITEM item) const { return At(item).image; }
  std::intptr_t GetItemData(HTREEITEM item) const { return At(item).data; }
  void SetItemData(HTREEITEM item, std::intptr_t data) { At(item).data = data; }

  // Walking; none where there is no such item.
  HTREEITEM GetRootItem() const { return Root().first_child; }  // the first one at the top level
  HTREEITEM GetParentItem(HTREEITEM item) const { return At(item).parent; }
  HTREEITEM GetChildItem(HTREEITEM item) const { return NodeOrRoot(item).first_child; }  // none: the top level
  HTREEITEM GetNextSiblingItem(HTREEITEM item) const { return At(item).next; }
  bool ItemHasChildren(HTREEITEM item) const { return static_cast<bool>(GetChildItem(item)); }
  // The next item in the order of reading below `within` (none: in the whole tree); begin with `within` itself.
  HTREEITEM GetNextItem(HTREEITEM item, HTREEITEM within = {}) const;
  int GetDepth(HTREEITEM item) const;     // 0 at the top level
  CString GetPath(HTREEITEM item) const;  // texts from the top level down with '/' between them
  HTREEITEM FindPath(const CString& path) const;

  void Expand(HTREEITEM item, bool expanded = true);
  bool IsExpanded(HTREEITEM item) const { return At(item).expanded; }
  void EnsureVisible(HTREEITEM item);                   // expands everything above it and brings it into view
  HTREEITEM GetItemInView() const { return in_view_; }  // the one brought into view last

  // Selects this item alone, or nothing, and notifies kSelChange when that changes anything.
  void SelectItem(HTREEITEM item);
  // The selected item; where several can be selected the one selected last.
  HTREEITEM GetSelectedItem() const { return current_; }
  bool IsItemSelected(HTREEITEM item) const { return At(item).selected; }

  void SetImageList(const CImageList& images) { images_ = images; }
  const CImageList& GetImageList() const { return images_; }
  void SetStateImageList(const CImageList& images) { state_images_ = images; }
  const CImageList& GetStateImageList() const { return state_images_; }

  // Where the last click of a person went.
  struct Hit {
    HTREEITEM item;
    TreeHitPart part = TreeHitPart::kNowhere;
  };
  const Hit& GetHit() const { return hit_; }

  // A person opens what is above an item to get at it.
  void UserSelect(HTREEITEM item);
  // Selects it first. Afterwards an item with children opens or closes; a click on the expander only does that.
  void UserDoubleClick(HTREEITEM item, TreeHitPart part = TreeHitPart::kLabel);
  void UserExpand(HTREEITEM item, bool expanded);
  void Reset() override;

 protected:
  struct Node {
    CString text;
    int image = -1;
    std::intptr_t data = 0;
    HTREEITEM parent = {};
    HTREEITEM previous = {};
    HTREEITEM next = {};
    HTREEITEM first_child = {};
    HTREEITEM last_child = {};
    bool alive = true;
    bool expanded = false;
    bool selected = false;
    // Kept by CMutiTreeCtrl.
    int check = 0;
    int children = 0;
    int ticked_children = 0;
    int partly_ticked_children = 0;
  };
  Node& At(HTREEITEM item);
  const Node& At(HTREEITEM item) const;
  void RequireItem(HTREEITEM item) const;  // of a person: UiRefused
  void SetHit(const Hit& hit) { hit_ = hit; }
  void SetCurrent(HTREEITEM item) { current_ = item; }

  virtual void OnInserted(HTREEITEM) {}
  virtual void OnDeleting(HTREEITEM) {}  // still in its place, its children gone
  virtual void ClearSelection();

 private:
  const Node& Root() const { return root_; }
  const Node& NodeOrRoot(HTREEITEM item) const { return item ? At(item) : root_; }
  Node& NodeOrRoot(HTREEITEM item) { return item ? At(item) : root_; }
  HTREEITEM FindBelow(HTREEITEM parent, std::string_view path) const;

  Node root_;
  std::vector<Node> nodes_;
  int first_id_ = 0;  // of nodes_; ids of deleted items are not used again
  int count_ = 0;
  HTREEITEM current_, in_view_;
  Hit hit_;
  CImageList images_, state_images_;
};

enum TreeCheck : int { kTreeClear = 0, kTreeTicked = 1, kTreePartlyTicked = 2 };

// A tree whose items have a tick box (style kCheckBoxes) or can be selected together (style kMultiSelect). The box of
// an item with children follows theirs.
class CMutiTreeCtrl : public CTreeCtrl {
 public:
  using CTreeCtrl::CTreeCtrl;

  // Ticks or clears the item and everything below it.
  void SetCheck(HTREEITEM item, bool ticked);
  TreeCheck GetCheck(HTREEITEM item) const { return static_cast<TreeCheck>(At(item).check); }
  // Position in the list of state images: 1 clear, 2 partly ticked, 3 ticked.
  int GetStateImage(HTREEITEM item) const;

  // Several selected items, in tree order.
  void SetItemSelected(HTREEITEM item, bool selected);
  std::vector<HTREEITEM> GetSelectedItems() const;

  void UserSelectItems(const std::vector<HTREEITEM>& items);  // these and no other
  void UserTick(HTREEITEM item, bool ticked);                 // clicks until it is so; notifies kItemChecked

 protected:
  void OnInserted(HTREEITEM item) override;
  void OnDeleting(HTREEITEM item) override;
  void ClearSelection() override;

 private:
  void CountChild(Node& parent, int check, int by);
  void ChangeCheck(HTREEITEM item, int check);
  void FollowChildren(HTREEITEM item);
};

}  // namespace loom
