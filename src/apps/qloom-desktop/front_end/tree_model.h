#pragma once

#include <QAbstractItemModel>
#include <QHash>
#include <QPixmap>
#include <unordered_map>
#include <vector>

#include "platform/ui/tree_ctrl.h"

namespace loom {

// The items of a tree as Qt's views ask for them. The tree may change at any time; its views know after Sync. An item's
// decoration is its state image and its image side by side.
class TreeModel final : public QAbstractItemModel {
 public:
  TreeModel(const CTreeCtrl& tree, QObject* parent);

  // Returns whether items came, went or moved: everything the view knew of them is lost then.
  bool Sync();

  HTREEITEM ItemAt(const QModelIndex& index) const;
  QModelIndex IndexOf(HTREEITEM item) const;
  std::size_t Count() const { return entries_.size(); }
  QModelIndex IndexAt(std::size_t at) const;  // in the order of reading
  bool HasChildren(std::size_t at) const { return !entries_[at].children.empty(); }
  int StateImageWidth(const QModelIndex& index) const;  // 0: it has none

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& = {}) const override { return 1; }
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  struct Entry {
    HTREEITEM item;
    int parent = -1;  // place in entries_
    int row = 0;
    std::vector<int> children = {};
  };
  static std::vector<Entry> Read(const CTreeCtrl& tree);
  bool IsCurrent() const { return revision_ == tree_.GetRevision(); }
  QPixmap StateImage(HTREEITEM item) const;
  QPixmap Decoration(HTREEITEM item) const;

  const CTreeCtrl& tree_;
  const CMutiTreeCtrl* boxes_;  // null unless items have tick boxes
  unsigned revision_ = 0;
  std::vector<Entry> entries_;  // in the order of reading
  std::vector<int> top_level_;
  std::unordered_map<int, int> places_;  // by the item's id
  mutable QHash<std::pair<int, int>, QPixmap> decorations_;
};

}  // namespace loom
