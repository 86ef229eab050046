#include "apps/qloom-desktop/shell/copied_cells.h"

#include <algorithm>

namespace loom {
namespace {

QString Quoted(QString cell) {
  const bool is_plain =
      std::ranges::none_of(cell, [](QChar c) { return c == u'\t' || c == u'\n' || c == u'\r' || c == u'"'; });
  return is_plain ? cell : u'"' + cell.replace(u'"', QStringLiteral("\"\"")) + u'"';
}

}  // namespace

CopiedCells::CopiedCells(const QAbstractItemModel& model, const QItemSelection& selection,
                         const std::vector<int>& columns)
    : model_(model), selection_(selection) {
  std::vector<Rows> all;
  for (const QItemSelectionRange& range : selection) all.push_back({range.top(), range.bottom()});
  std::ranges::sort(all, {}, &Rows::first);
  for (const Rows& rows : all) {
    if (!rows_.empty() && rows.first <= rows_.back().last + 1)
      rows_.back().last = std::max(rows_.back().last, rows.last);
    else
      rows_.push_back(rows);
  }
  std::ranges::copy_if(columns, std::back_inserter(columns_), [&](int column) {
    return std::ranges::any_of(selection,
                               [&](const auto& range) { return range.left() <= column && column <= range.right(); });
  });
}

qint64 CopiedCells::Count() const {
  qint64 rows = 0;
  for (const Rows& part : rows_) rows += part.last - part.first + 1;
  return rows * static_cast<qint64>(columns_.size());
}

void CopiedCells::AppendRow(int row, QString& text) const {
  for (const int column : columns_) {
    if (column != columns_.front()) text += u'\t';
    const QModelIndex index = model_.index(row, column);
    if (selection_.contains(index)) text += Quoted(index.data().toString());
  }
  text += u'\n';
}

QString CopiedCells::ToText() const {
  QString text;
  for (const int column : columns_) {
    if (column != columns_.front()) text += u'\t';
    text += Quoted(model_.headerData(column, Qt::Horizontal).toString());
  }
  text += u'\n';
  for (const Rows& part : rows_) {
    for (int row = part.first; row <= part.last; ++row) AppendRow(row, text);
  }
  return text;
}

}  // namespace loom
