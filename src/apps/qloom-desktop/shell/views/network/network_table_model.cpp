#include "apps/qloom-desktop/shell/views/network/network_table_model.h"

#include <algorithm>

#include "apps/qloom-desktop/front_end/qt_text.h"

namespace loom {

void NetworkTableModel::ShowTable(const CString& table, const QString& holding) {
  beginResetModel();
  read_row_ = -1;
  table_.emplace(database_, table);
  ids_ = table_->RowIds(FromQt(holding));
  endResetModel();
}

void NetworkTableModel::RemoveRows(const std::vector<int>& rows) {
  std::vector<std::int64_t> ids;
  for (const int row : rows) ids.push_back(ids_[static_cast<std::size_t>(row)]);
  beginResetModel();
  read_row_ = -1;
  table_->Remove(ids);
  std::erase_if(ids_, [&](std::int64_t id) { return std::ranges::binary_search(ids, id); });
  endResetModel();
}

int NetworkTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(ids_.size());
}

int NetworkTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() || !table_ ? 0 : static_cast<int>(table_->Columns().size());
}

const std::vector<CString>& NetworkTableModel::TextsAt(int row) const {
  if (row != read_row_) read_texts_ = table_->TextsOf(ids_[static_cast<std::size_t>(row)]);
  read_row_ = row;
  return read_texts_;
}

QVariant NetworkTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole && role != Qt::ToolTipRole)) return {};
  const std::vector<CString>& texts = TextsAt(index.row());
  const auto column = static_cast<std::size_t>(index.column());
  return column < texts.size() ? ToQt(texts[column]) : QString();
}

QVariant NetworkTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || !table_) return {};
  if (role == Qt::TextAlignmentRole) return int{Qt::AlignLeft | Qt::AlignVCenter};
  if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return {};
  return ToQt(table_->Columns()[static_cast<std::size_t>(section)]);
}

Qt::ItemFlags NetworkTableModel::flags(const QModelIndex& index) const {
  return QAbstractTableModel::flags(index) | Qt::ItemIsEditable;
}

bool NetworkTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::EditRole || value == data(index, role)) return false;
  try {
    table_->SetText(ids_[static_cast<std::size_t>(index.row())], static_cast<std::size_t>(index.column()),
                    FromQt(value.toString().trimmed()));
  } catch (const Error& error) {
    if (refused_) refused_(QString::fromStdString(error.what()));
    return false;
  }
  read_row_ = -1;
  dataChanged(index, index);
  if (changed_) changed_();
  return true;
}

}  // namespace loom
