#include "platform/ui/list_ctrl.h"

#include <algorithm>
#include <numeric>

#include "platform/ui/dialog.h"
#include "platform/ui/metrics.h"

namespace loom {

int CListCtrl::InsertColumn(int at, const CString& heading, int width, ColumnAlignment alignment) {
  at = std::clamp(at, 0, GetColumnCount());
  const bool is_last = at == GetColumnCount();
  columns_.insert(columns_.begin() + at, Column{heading, std::max(0, width), alignment});
  for (Row& row : rows_) {
    if (at < static_cast<int>(row.cells.size())) row.cells.insert(row.cells.begin() + at, CString());
  }
  if (!is_last) {
    for (int& column : order_) column += column >= at ? 1 : 0;
  }
  order_.insert(order_.begin() + at, at);
  Touch();
  return at;
}

void CListCtrl::DeleteAllColumns() {
  columns_.clear();
  order_.clear();
  for (Row& row : rows_) row.cells.clear();
  scroll_x_ = 0;
  Touch();
}

void CListCtrl::SetColumnWidth(int at, int width) {
  columns_.at(Index(at)).width = std::max(0, width);
  Scroll(0);
  Touch();
}

void CListCtrl::FitColumn(int at) {
  int widest = 0;
  for (int row = 0; row < GetItemCount(); ++row) widest = std::max(widest, TextWidthPx(GetItemText(row, at)));
  SetColumnWidth(at, widest + kColumnMarginPx);
}

int CListCtrl::InsertItem(int at, const CString& text, int image) {
  at = std::clamp(at, 0, GetItemCount());
  Row row{.image = image};
  row.cells.push_back(text);
  rows_.insert(rows_.begin() + at, std::move(row));
  focused_row_ += focused_row_ >= at ? 1 : 0;
  Touch();
  return at;
}

void CListCtrl::DeleteItem(int row) {
  At(row);
  rows_.erase(rows_.begin() + row);
  if (focused_row_ == row) focused_row_ = std::min(row, GetItemCount() - 1);
  if (focused_row_ > row) --focused_row_;
  top_row_ = std::clamp(top_row_, 0, std::max(0, GetItemCount() - GetCountPerPage()));
  Touch();
}

void CListCtrl::DeleteAllItems() {
  rows_.clear();
  focused_row_ = -1;
  top_row_ = 0;
  Touch();
}

CString CListCtrl::GetItemText(int row, int column) const {
  const std::vector<CString>& cells = At(row).cells;
  if (Index(column) < cells.size()) return cells[Index(column)];
  columns_.at(Index(column));
  return {};
}

void CListCtrl::SetItemText(int row, int column, const CString& text) {
  std::vector<CString>& cells = At(row).cells;
  if (column != 0) columns_.at(Index(column));
  if (cells.size() <= Index(column)) cells.resize(Index(column) + 1);
  cells[Index(column)] = text;
  Touch();
}

int CListCtrl::FindItem(const CString& text, int after) const {
  for (int row = std::max(after, -1) + 1; row < GetItemCount(); ++row) {
    if (GetItemText(row, 0) == text) return row;
  }
  return -1;
}

void CListCtrl::ChangeSelection(int row, bool selected) {
  // A handler of an earlier change may have taken rows away.
  if (row >= GetItemCount() || At(row).selected == selected) return;
  At(row).selected = selected;
  changed_row_ = row;
  Touch();
  Notify(Notification::kSelChange);
}

void CListCtrl::SetItemSelected(int row, bool selected) {
  At(row);
  if (selected && !HasStyle(style::kMultiSelect)) {
    for (const int other : GetSelectedRows()) {
      if (other != row) ChangeSelection(other, false);
    }
  }
  ChangeSelection(row, selected);
}

std::vector<int> CListCtrl::GetSelectedRows() const {
  std::vector<int> selected;
  for (int row = GetNextSelected(); row >= 0; row = GetNextSelected(row)) selected.push_back(row);
  return selected;
}

int CListCtrl::GetNextSelected(int after) const {
  for (int row = std::max(after, -1) + 1; row < GetItemCount(); ++row) {
    if (At(row).selected) return row;
  }
  return -1;
}

void CListCtrl::SetFocusedRow(int row) {
  if (row != -1) At(row);
  focused_row_ = row;
  Touch();
}

// The header takes one row's height.
int CListCtrl::GetCountPerPage() const { return std::max(1, GetClientHeight() / kListRowPx - 1); }

void CListCtrl::EnsureVisible(int row) {
  At(row);
  top_row_ = std::clamp(top_row_, row - GetCountPerPage() + 1, row);
  top_row_ = std::max(0, top_row_);
  Touch();
}

int CListCtrl::GetTotalWidth() const {
  return std::accumulate(columns_.begin(), columns_.end(), 0,
                         [](int sum, const Column& column) { return sum + column.width; });
}

void CListCtrl::Scroll(int across_px) {
  if (across_px == 0 && scroll_x_ == 0) return;  // nothing to bring back into range
  scroll_x_ = std::clamp(scroll_x_ + across_px, 0, std::max(0, GetTotalWidth() - GetClientWidth()));
  Touch();
}

void CListCtrl::SetColourRule(ColourRule rule) {
  colour_rule_ = std::move(rule);
  Touch();
}

CellColours CListCtrl::GetCellColours(int row, int column) const {
  return colour_rule_ ? colour_rule_(row, column) : CellColours::kNormal;
}

void CListCtrl::RequireRow(int row) const {
  if (row < 0 || row >= GetItemCount()) Refuse("it has no row " + std::to_string(row));
}

void CListCtrl::UserSelectRows(const std::vector<int>& rows) {
  BeginUserAction();
  for (const int row : rows) RequireRow(row);
  if (rows.size() > 1 && !HasStyle(style::kMultiSelect)) Refuse("only one row can be selected");
  clicked_row_ = rows.empty() ? -1 : rows.back();
  for (const int row : GetSelectedRows()) {
    if (std::find(rows.begin(), rows.end(), row) == rows.end()) ChangeSelection(row, false);
  }
  if (!rows.empty()) focused_row_ = rows.back();
  for (const int row : rows) ChangeSelection(row, true);
}

void CListCtrl::UserDoubleClick(int row) {
  BeginUserAction();
  UserSelectRows(row < 0 ? std::vector<int>{} : std::vector<int>{row});
  Notify(Notification::kDoubleClicked);
}

void CListCtrl::UserClickHeader(int column) {
  BeginUserAction();
  if (column < 0 || column >= GetColumnCount()) Refuse("it has no column " + std::to_string(column));
  clicked_column_ = column;
  Notify(Notification::kHeaderClicked);
}

void CListCtrl::UserMoveColumn(int from, int to) {
  BeginUserAction();
  const auto is_place = [&](int place) { return place >= 0 && place < GetColumnCount(); };
  if (!HasStyle(style::kHeaderDragDrop) || !is_place(from) || !is_place(to)) Refuse("its columns do not move so");
  const int column = order_[Index(from)];
  order_.erase(order_.begin() + from);
  order_.insert(order_.begin() + to, column);
  Touch();
}

void CListCtrl::Reset() {
  CWnd::Reset();
  columns_.clear();
  order_.clear();
  rows_.clear();
  images_ = CImageList();
  colour_rule_ = nullptr;
  focused_row_ = changed_row_ = clicked_row_ = clicked_column_ = -1;
  top_row_ = scroll_x_ = 0;
}

}  // namespace loom
