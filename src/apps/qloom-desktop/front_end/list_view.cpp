#include <QAbstractTableModel>
#include <QHeaderView>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTableView>
#include <algorithm>
#include <utility>

#include "apps/qloom-desktop/front_end/control_view.h"
#include "apps/qloom-desktop/front_end/qt_text.h"
#include "apps/qloom-desktop/front_end/strip_images.h"
#include "platform/ui/list_ctrl.h"

namespace loom {
namespace {

constexpr int kRowMarginPx = 4;

int AlignmentOf(ColumnAlignment alignment) {
  constexpr Qt::AlignmentFlag kFlags[] = {Qt::AlignLeft, Qt::AlignRight, Qt::AlignHCenter};
  return (kFlags[static_cast<std::size_t>(alignment)] | Qt::AlignVCenter).toInt();
}

// The rows of a list as Qt's views ask for them. The list may change at any time; its views know after Sync.
class ListModel final : public QAbstractTableModel {
 public:
  ListModel(const CListCtrl& list, QObject* parent) : QAbstractTableModel(parent), list_(list) {}

  void Sync() {
    if (rows_ != list_.GetItemCount() || columns_ != list_.GetColumnCount()) {
      beginResetModel();
      rows_ = list_.GetItemCount();
      columns_ = list_.GetColumnCount();
      endResetModel();
    } else if (rows_ > 0 && columns_ > 0) {
      dataChanged(index(0, 0), index(rows_ - 1, columns_ - 1));
      headerDataChanged(Qt::Horizontal, 0, columns_ - 1);
    }
  }

  int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : rows_; }
  int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : columns_; }

  QVariant data(const QModelIndex& index, int role) const override {
    const int row = index.row();
    const int column = index.column();
    if (row >= list_.GetItemCount() || column >= list_.GetColumnCount()) return {};
    const bool highlighted = list_.GetCellColours(row, column) == CellColours::kHighlight;
    switch (role) {
      case Qt::DisplayRole:
      case Qt::ToolTipRole:
        return NameToQt(list_.GetItemText(row, column));
      case Qt::TextAlignmentRole:
        return AlignmentOf(list_.GetColumn(column).alignment);
      case Qt::BackgroundRole:
        return highlighted ? QVariant::fromValue(QPalette().brush(QPalette::Highlight)) : QVariant();
      case Qt::ForegroundRole:
        return highlighted ? QVariant::fromValue(QPalette().brush(QPalette::HighlightedText)) : QVariant();
      case Qt::DecorationRole: {
        const QPixmap image = column == 0 ? StripImage(list_.GetImageList(), list_.GetItemImage(row)) : QPixmap();
        return image.isNull() ? QVariant() : QVariant::fromValue(image);
      }
      default:
        return {};
    }
  }

  QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
    if (orientation != Qt::Horizontal || section >= list_.GetColumnCount()) return {};
    const CListCtrl::Column& column = list_.GetColumn(section);
    if (role == Qt::DisplayRole) return ToQt(column.heading);
    if (role == Qt::TextAlignmentRole) return AlignmentOf(column.alignment);
    return {};
  }

 private:
  const CListCtrl& list_;
  int rows_ = 0;
  int columns_ = 0;
};

class ListView final : public ControlView, public QObject {
 public:
  ListView(CListCtrl& list, ActionRunner& runner, const DialogUnits& units, QWidget& pane)
      : ControlView(list, runner, units), list_(list), table_(new QTableView(&pane)), model_(list, nullptr) {
    table_->setModel(&model_);
    SetWidget(table_);
    SetLook();
    Connect();
    table_->viewport()->installEventFilter(this);
  }
  ~ListView() override { table_->setModel(nullptr); }

 private:
  void SetLook() {
    QHeaderView& header = *table_->horizontalHeader();
    header.setSectionsClickable(true);
    header.setHighlightSections(false);
    header.setSectionsMovable(list_.HasStyle(style::kHeaderDragDrop));
    header.setMinimumSectionSize(0);
    table_->verticalHeader()->hide();
    table_->verticalHeader()->setDefaultSectionSize(table_->fontMetrics().height() + kRowMarginPx);
    table_->setShowGrid(list_.HasStyle(style::kGridLines));
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(list_.HasStyle(style::kMultiSelect) ? QAbstractItemView::ExtendedSelection
                                                                 : QAbstractItemView::SingleSelection);
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    table_->setTabKeyNavigation(false);
    table_->setWordWrap(false);
  }

  void Connect() {
    QHeaderView* const header = table_->horizontalHeader();
    connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
      if (!IsRefreshing()) ActLater([this, rows = SelectedRows()] { list_.UserSelectRows(rows); });
    });
    connect(header, &QHeaderView::sectionClicked, this,
            [this](int column) { ActLater([this, column] { list_.UserClickHeader(column); }); });
    connect(header, &QHeaderView::sectionMoved, this, [this](int, int from, int to) {
      if (!IsRefreshing()) ActLater([=, this] { list_.UserMoveColumn(from, to); });
    });
    connect(header, &QHeaderView::sectionResized, this, [this](int column, int, int width) {
      if (IsRefreshing() || column >= list_.GetColumnCount()) return;
      Tell([&] { list_.SetColumnWidth(column, units().ToModelPx(width)); });
    });
    connect(table_->verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { TellTopRow(); });
    connect(table_->horizontalScrollBar(), &QScrollBar::valueChanged, this, [this](int across) {
      if (!IsRefreshing()) Tell([&] { list_.Scroll(units().ToModelPx(across) - list_.GetScrollX()); });
    });
  }

  // What the widget shows already.
  template <class Change>
  void Tell(Change change) {
    const bool was_shown = shown_ == list_.GetRevision();
    change();
    if (was_shown) shown_ = list_.GetRevision();
    told_top_ = list_.GetTopIndex();
    told_across_ = list_.GetScrollX();
  }

  void TellTopRow() {
    const int top = table_->rowAt(0);
    if (IsRefreshing() || top < 0 || top >= list_.GetItemCount()) return;
    Tell([&] {
      list_.EnsureVisible(std::min(top + list_.GetCountPerPage(), list_.GetItemCount()) - 1);
      list_.EnsureVisible(top);
    });
  }

  // The one last clicked comes last.
  std::vector<int> SelectedRows() const {
    std::vector<int> rows;
    const int current = table_->currentIndex().row();
    bool has_current = false;
    for (const QModelIndex& index : table_->selectionModel()->selectedRows()) {
      has_current |= index.row() == current;
      if (index.row() != current) rows.push_back(index.row());
    }
    std::sort(rows.begin(), rows.end());
    if (has_current) rows.push_back(current);
    return rows;
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::MouseButtonDblClick && table_->isEnabled()) {
      const auto& click = static_cast<const QMouseEvent&>(*event);
      const int row = table_->rowAt(click.position().toPoint().y());
      if (click.button() == Qt::LeftButton) ActLater([this, row] { list_.UserDoubleClick(row); });
    }
    return QObject::eventFilter(watched, event);
  }

  void ShowContent() override {
    if (shown_ == list_.GetRevision()) return;
    shown_ = list_.GetRevision();
    model_.Sync();
    ShowColumns();
    ShowSelection();
    ShowScrolling();
  }

  void ShowColumns() {
    QHeaderView& header = *table_->horizontalHeader();
    const std::vector<int>& order = list_.GetColumnOrder();
    for (int place = 0; place < static_cast<int>(order.size()); ++place) {
      const int column = order[static_cast<std::size_t>(place)];
      header.resizeSection(column, units().FromModelPx(list_.GetColumnWidth(column)));
      if (header.visualIndex(column) != place) header.moveSection(header.visualIndex(column), place);
    }
  }

  void ShowSelection() {
    QItemSelectionModel& selection = *table_->selectionModel();
    const int last = model_.columnCount() - 1;
    if (last < 0) return;
    QItemSelection wanted;
    const std::vector<int> rows = list_.GetSelectedRows();
    for (std::size_t at = 0; at < rows.size();) {
      std::size_t end = at + 1;
      while (end < rows.size() && rows[end] == rows[end - 1] + 1) ++end;
      wanted.select(model_.index(rows[at], 0), model_.index(rows[end - 1], last));
      at = end;
    }
    selection.select(wanted, QItemSelectionModel::ClearAndSelect);
    const int focused = list_.GetFocusedRow();
    if (focused != table_->currentIndex().row())
      selection.setCurrentIndex(focused < 0 ? QModelIndex() : model_.index(focused, 0), QItemSelectionModel::NoUpdate);
  }

  void ShowScrolling() {
    if (std::exchange(told_top_, list_.GetTopIndex()) != list_.GetTopIndex())
      table_->scrollTo(model_.index(list_.GetTopIndex(), 0), QAbstractItemView::PositionAtTop);
    if (std::exchange(told_across_, list_.GetScrollX()) != list_.GetScrollX())
      table_->horizontalScrollBar()->setValue(units().FromModelPx(list_.GetScrollX()));
  }

  CListCtrl& list_;
  QTableView* table_;
  ListModel model_;
  unsigned shown_ = 0;  // revision; that of a list made is never 0
  int told_top_ = 0;
  int told_across_ = 0;
};

}  // namespace

ViewPointer MakeListView(CListCtrl& list, ActionRunner& runner, const DialogUnits& units, QWidget& pane) {
  return std::make_unique<ListView>(list, runner, units, pane);
}

}  // namespace loom
