#include <QKeyEvent>
#include <QMouseEvent>
#include <QTreeView>
#include <algorithm>
#include <utility>

#include "apps/qloom-desktop/front_end/control_view.h"
#include "apps/qloom-desktop/front_end/tree_model.h"

namespace loom {
namespace {

class TreeView final : public ControlView, public QObject {
 public:
  TreeView(CTreeCtrl& tree, ActionRunner& runner, const DialogUnits& units, QWidget& pane)
      : ControlView(tree, runner, units),
        tree_(tree),
        several_(dynamic_cast<CMutiTreeCtrl*>(&tree)),
        view_(new QTreeView(&pane)),
        model_(tree, nullptr) {
    view_->setModel(&model_);
    view_->setHeaderHidden(true);
    view_->setUniformRowHeights(true);
    view_->setExpandsOnDoubleClick(false);
    view_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view_->setSelectionMode(tree.HasStyle(style::kMultiSelect) ? QAbstractItemView::ExtendedSelection
                                                               : QAbstractItemView::SingleSelection);
    SetWidget(view_);
    connect(view_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
      if (!IsRefreshing()) ActLater([this, items = SelectedItems()] { Select(items); });
    });
    connect(view_, &QTreeView::expanded, this, [this](const QModelIndex& index) { Expand(index, true); });
    connect(view_, &QTreeView::collapsed, this, [this](const QModelIndex& index) { Expand(index, false); });
    view_->installEventFilter(this);
    view_->viewport()->installEventFilter(this);
  }
  ~TreeView() override { view_->setModel(nullptr); }

 private:
  bool HasBoxes() const { return several_ && tree_.HasStyle(style::kCheckBoxes); }

  // The one last clicked comes last.
  std::vector<HTREEITEM> SelectedItems() const {
    std::vector<HTREEITEM> items;
    const QModelIndex current = view_->currentIndex();
    for (const QModelIndex& index : view_->selectionModel()->selectedIndexes()) {
      if (index != current) items.push_back(model_.ItemAt(index));
    }
    std::sort(items.begin(), items.end());
    if (view_->selectionModel()->isSelected(current)) items.push_back(model_.ItemAt(current));
    return items;
  }

  void Select(const std::vector<HTREEITEM>& items) {
    if (several_) return several_->UserSelectItems(items);
    if (!items.empty()) tree_.UserSelect(items.back());
  }

  void Expand(const QModelIndex& index, bool expanded) {
    if (IsRefreshing()) return;
    const HTREEITEM item = model_.ItemAt(index);
    ActLater([=, this] {
      if (tree_.IsExpanded(item) != expanded) tree_.UserExpand(item, expanded);
    });
  }

  void Tick(HTREEITEM item) {
    ActLater([this, item] { several_->UserTick(item, several_->GetCheck(item) != kTreeTicked); });
  }

  TreeHitPart PartAt(const QModelIndex& index, int x) const {
    const QRect place = view_->visualRect(index);
    const int inside = x - place.left() - (view_->style()->pixelMetric(QStyle::PM_FocusFrameHMargin) + 1);
    if (!index.isValid()) return TreeHitPart::kNowhere;
    if (x < place.left()) return TreeHitPart::kExpander;
    const int state_width = model_.StateImageWidth(index);
    if (state_width > 0 && inside <= state_width) return TreeHitPart::kStateImage;
    const QVariant decoration = model_.data(index, Qt::DecorationRole);
    return inside <= decoration.value<QPixmap>().width() ? TreeHitPart::kImage : TreeHitPart::kLabel;
  }

  // True when the view need not see the click.
  bool HandleClick(const QMouseEvent& click, bool is_double) {
    const QModelIndex index = view_->indexAt(click.position().toPoint());
    if (click.button() != Qt::LeftButton || !index.isValid()) return false;
    const TreeHitPart part = PartAt(index, static_cast<int>(click.position().x()));
    const HTREEITEM item = model_.ItemAt(index);
    if (part == TreeHitPart::kStateImage) {
      view_->setFocus(Qt::MouseFocusReason);
      Tick(item);
    }
    // The view opens and closes an item itself when its expander is clicked.
    if (is_double && part != TreeHitPart::kExpander) ActLater([=, this] { tree_.UserDoubleClick(item, part); });
    return part == TreeHitPart::kStateImage;
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    const bool is_double = event->type() == QEvent::MouseButtonDblClick;
    if (watched == view_->viewport() && view_->isEnabled() && (is_double || event->type() == QEvent::MouseButtonPress))
      return HandleClick(static_cast<const QMouseEvent&>(*event), is_double);
    if (watched == view_ && event->type() == QEvent::KeyPress && HasBoxes() && view_->currentIndex().isValid() &&
        static_cast<const QKeyEvent&>(*event).key() == Qt::Key_Space) {
      Tick(model_.ItemAt(view_->currentIndex()));
      return true;
    }
    return QObject::eventFilter(watched, event);
  }

  void ShowContent() override {
    if (shown_ == tree_.GetRevision()) return;
    shown_ = tree_.GetRevision();
    model_.Sync();
    QItemSelection wanted;
    for (std::size_t at = 0; at < model_.Count(); ++at) {
      const QModelIndex index = model_.IndexAt(at);
      const HTREEITEM item = model_.ItemAt(index);
      if (model_.HasChildren(at) && view_->isExpanded(index) != tree_.IsExpanded(item))
        view_->setExpanded(index, tree_.IsExpanded(item));
      if (tree_.IsItemSelected(item)) wanted.select(index, index);
    }
    QItemSelectionModel& selection = *view_->selectionModel();
    if (selection.selection() != wanted) selection.select(wanted, QItemSelectionModel::ClearAndSelect);
    const QModelIndex current = model_.IndexOf(tree_.GetSelectedItem());
    if (current.isValid() && current != view_->currentIndex())
      selection.setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    const HTREEITEM in_view = tree_.GetItemInView();
    if (std::exchange(in_view_, in_view) != in_view && in_view) view_->scrollTo(model_.IndexOf(in_view));
    view_->viewport()->update();  // boxes below the top level may have changed
  }

  CTreeCtrl& tree_;
  CMutiTreeCtrl* several_;  // null where one item can be selected and none ticked
  QTreeView* view_;
  TreeModel model_;
  unsigned shown_ = 0;
  HTREEITEM in_view_;
};

}  // namespace

ViewPointer MakeTreeView(CTreeCtrl& tree, ActionRunner& runner, const DialogUnits& units, QWidget& pane) {
  return std::make_unique<TreeView>(tree, runner, units, pane);
}

}  // namespace loom
