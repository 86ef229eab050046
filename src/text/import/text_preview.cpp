#include "text/import/text_preview.h"

#include <algorithm>

#include "text/import/line_splitter.h"

namespace loom {
namespace {

constexpr int kWidestListPx = 30000;

}  // namespace

std::vector<PreviewRow> PreviewRows(const std::vector<CString>& lines, const CString& separator) {
  const LineSplitter splitter(separator);
  std::vector<PreviewRow> rows;
  std::vector<std::string_view> cells;
  for (const CString& line : lines) {
    splitter.Split(line, cells);
    PreviewRow& row = rows.emplace_back();
    for (const std::string_view cell : cells) row.emplace_back(cell);
  }
  return rows;
}

int PreviewColumnCount(const std::vector<PreviewRow>& rows) {
  std::size_t count = 0;
  for (const PreviewRow& row : rows) count = std::max(count, row.size());
  return static_cast<int>(count);
}

int PreviewColumnWidth(int column_count) {
  return column_count > kWidestListPx / kPreviewColumnPx ? kWidestListPx / column_count : kPreviewColumnPx;
}

void ShowPreview(CListCtrl& list, const std::vector<PreviewRow>& rows, int column_width) {
  list.DeleteAllItems();
  list.DeleteAllColumns();
  const int column_count = PreviewColumnCount(rows);
  for (int column = 0; column < column_count; ++column)
    list.InsertColumn(column, Format("列 %d"_gbk, column + 1), column_width);
  for (const PreviewRow& cells : rows) {
    const int row = list.InsertItem(list.GetItemCount(), cells.front());
    for (std::size_t column = 1; column < cells.size(); ++column)
      list.SetItemText(row, static_cast<int>(column), cells[column]);
  }
  for (int column = 0; column < column_count; ++column) list.FitColumn(column);
}

}  // namespace loom
