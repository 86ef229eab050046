#include "apps/qloom-desktop/front_end/tree_model.h"

#include <algorithm>

#include "apps/qloom-desktop/front_end/qt_text.h"
#include "apps/qloom-desktop/front_end/strip_images.h"

namespace loom {

TreeModel::TreeModel(const CTreeCtrl& tree, QObject* parent)
    : QAbstractItemModel(parent),
      tree_(tree),
      boxes_(tree.HasStyle(style::kCheckBoxes) ? dynamic_cast<const CMutiTreeCtrl*>(&tree) : nullptr) {}

std::vector<TreeModel::Entry> TreeModel::Read(const CTreeCtrl& tree) {
  std::vector<Entry> entries;
  std::vector<int> open;  // the entries on the way down to the item
  for (HTREEITEM item = tree.GetRootItem(); item; item = tree.GetNextItem(item)) {
    const HTREEITEM parent = tree.GetParentItem(item);
    while (!open.empty() && entries[static_cast<std::size_t>(open.back())].item != parent) open.pop_back();
    open.push_back(static_cast<int>(entries.size()));
    entries.push_back({.item = item, .parent = open.size() > 1 ? open[open.size() - 2] : -1});
  }
  return entries;
}

bool TreeModel::Sync() {
  revision_ = tree_.GetRevision();
  decorations_.clear();
  std::vector<Entry> entries = Read(tree_);
  const auto is_same = [](const Entry& a, const Entry& b) { return a.item == b.item && a.parent == b.parent; };
  if (std::ranges::equal(entries, entries_, is_same)) {
    if (!top_level_.empty()) dataChanged(index(0, 0), index(rowCount() - 1, 0));
    return false;
  }
  beginResetModel();
  entries_ = std::move(entries);
  top_level_.clear();
  places_.clear();
  for (int at = 0; at < static_cast<int>(entries_.size()); ++at) {
    Entry& entry = entries_[static_cast<std::size_t>(at)];
    auto& siblings = entry.parent < 0 ? top_level_ : entries_[static_cast<std::size_t>(entry.parent)].children;
    entry.row = static_cast<int>(siblings.size());
    siblings.push_back(at);
    places_[entry.item.id] = at;
  }
  endResetModel();
  return true;
}

HTREEITEM TreeModel::ItemAt(const QModelIndex& index) const {
  return index.isValid() ? entries_[index.internalId()].item : HTREEITEM();
}

QModelIndex TreeModel::IndexAt(std::size_t at) const { return createIndex(entries_[at].row, 0, quintptr{at}); }

QModelIndex TreeModel::IndexOf(HTREEITEM item) const {
  const auto place = places_.find(item.id);
  return place == places_.end() ? QModelIndex() : IndexAt(static_cast<std::size_t>(place->second));
}

QModelIndex TreeModel::index(int row, int column, const QModelIndex& parent) const {
  const auto& siblings = parent.isValid() ? entries_[parent.internalId()].children : top_level_;
  if (column != 0 || row < 0 || row >= static_cast<int>(siblings.size())) return {};
  return IndexAt(static_cast<std::size_t>(siblings[static_cast<std::size_t>(row)]));
}

QModelIndex TreeModel::parent(const QModelIndex& index) const {
  if (!index.isValid()) return {};
  const int parent = entries_[index.internalId()].parent;
  return parent < 0 ? QModelIndex() : IndexAt(static_cast<std::size_t>(parent));
}

int TreeModel::rowCount(const QModelIndex& parent) const {
  return static_cast<int>((parent.isValid() ? entries_[parent.internalId()].children : top_level_).size());
}

QVariant TreeModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || !IsCurrent()) return {};
  const HTREEITEM item = ItemAt(index);
  if (role == Qt::DisplayRole) return NameToQt(tree_.GetItemText(item));
  if (role == Qt::AccessibleDescriptionRole && boxes_) {
    constexpr const char* kStates[] = {"clear", "ticked", "partly ticked"};
    return QString::fromLatin1(kStates[boxes_->GetCheck(item)]);
  }
  if (role != Qt::DecorationRole) return {};
  const QPixmap decoration = Decoration(item);
  return decoration.isNull() ? QVariant() : QVariant::fromValue(decoration);
}

QPixmap TreeModel::StateImage(HTREEITEM item) const {
  return boxes_ ? StripImage(tree_.GetStateImageList(), boxes_->GetStateImage(item)) : QPixmap();
}

QPixmap TreeModel::Decoration(HTREEITEM item) const {
  const int image = tree_.GetItemImage(item);
  QPixmap& decoration = decorations_[{boxes_ ? boxes_->GetStateImage(item) : -1, image}];
  if (decoration.isNull()) decoration = SideBySide(StateImage(item), StripImage(tree_.GetImageList(), image));
  return decoration;
}

int TreeModel::StateImageWidth(const QModelIndex& index) const {
  return index.isValid() && IsCurrent() ? StateImage(ItemAt(index)).width() : 0;
}

}  // namespace loom
