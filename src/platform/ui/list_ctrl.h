#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "platform/ui/controls.h"
#include "platform/ui/image_list.h"

namespace loom {

enum class ColumnAlignment { kLeft, kRight, kCentre };
enum class CellColours { kNormal, kHighlight };  // black on white, or the system's colours of a selection

// A list view in its report form: rows of cells under column headers. Positions out of range are std::out_of_range
// where nothing else is said; widths are pixels.
class CListCtrl : public CWnd {
 public:
  using CWnd::CWnd;

  struct Column {
    CString heading;
    int width = 0;
    ColumnAlignment alignment = ColumnAlignment::kLeft;
  };

  // Columns. Inserting behind the last one appends; the cells of existing rows move along.
  int InsertColumn(int at, const CString& heading, int width, ColumnAlignment alignment = ColumnAlignment::kLeft);
  void DeleteAllColumns();
  int GetColumnCount() const { return static_cast<int>(columns_.size()); }
  const Column& GetColumn(int at) const { return columns_.at(Index(at)); }
  int GetColumnWidth(int at) const { return GetColumn(at).width; }
  void SetColumnWidth(int at, int width);
  void FitColumn(int at);  // to its widest cell and a margin of 10 pixels
  // Columns from left to right, which a person may have changed.
  const std::vector<int>& GetColumnOrder() const { return order_; }

  // Rows. Inserting behind the last one appends; the row's position is returned. The text is the first column's.
  int InsertItem(int at, const CString& text, int image = -1);
  void DeleteItem(int row);
  void DeleteAllItems();
  int GetItemCount() const { return static_cast<int>(rows_.size()); }
  CString GetItemText(int row, int column) const;
  void SetItemText(int row, int column, const CString& text);
  int GetItemImage(int row) const { return At(row).image; }
  std::intptr_t GetItemData(int row) const { return At(row).data; }
  void SetItemData(int row, std::intptr_t data) { At(row).data = data; }
  int FindItem(const CString& text, int after = -1) const;  // the row whose first cell is exactly that; -1 if none

  // Selection. Every row that changes notifies kSelChange; GetChangedRow tells which. Without the style kMultiSelect
  // selecting a row deselects the other.
  void SetItemSelected(int row, bool selected);
  bool IsItemSelected(int row) const { return At(row).selected; }
  std::vector<int> GetSelectedRows() const;   // from the top
  int GetNextSelected(int after = -1) const;  // -1 if none
  int GetChangedRow() const { return changed_row_; }
  int GetFocusedRow() const { return focused_row_; }  // -1: none
  void SetFocusedRow(int row);

  // Scroll position: the topmost row, and pixels across, which stop at both ends.
  int GetTopIndex() const { return top_row_; }
  int GetCountPerPage() const;
  void EnsureVisible(int row);
  void Scroll(int across_px);
  int GetScrollX() const { return scroll_x_; }

  void SetImageList(const CImageList& images) { images_ = images; }
  const CImageList& GetImageList() const { return images_; }
  // Asked for each cell when it is drawn; without it all are normal.
  using ColourRule = std::function<CellColours(int row, int column)>;
  void SetColourRule(ColourRule rule);
  CellColours GetCellColours(int row, int column) const;

  // Where the last click of a person went; -1: into the empty space.
  int GetClickedRow() const { return clicked_row_; }
  int GetClickedColumn() const { return clicked_column_; }

  void UserSelectRows(const std::vector<int>& rows);  // these and no other
  void UserDoubleClick(int row);                      // selects it first; -1 is the empty space
  void UserClickHeader(int column);
  void UserMoveColumn(int from, int to);  // places in the column order
  void Reset() override;

 private:
  struct Row {
    std::vector<CString> cells = {};
    int image = -1;
    std::intptr_t data = 0;
    bool selected = false;
  };
  static std::size_t Index(int at) { return static_cast<std::size_t>(at); }
  Row& At(int row) { return rows_.at(Index(row)); }
  const Row& At(int row) const { return rows_.at(Index(row)); }
  void ChangeSelection(int row, bool selected);
  void RequireRow(int row) const;
  int GetTotalWidth() const;

  std::vector<Column> columns_;
  std::vector<int> order_;
  std::vector<Row> rows_;
  CImageList images_;
  ColourRule colour_rule_;
  int focused_row_ = -1;
  int changed_row_ = -1;
  int clicked_row_ = -1;
  int clicked_column_ = -1;
  int top_row_ = 0;
  int scroll_x_ = 0;
};

}  // namespace loom
