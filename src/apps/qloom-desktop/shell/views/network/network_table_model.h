#pragma once

#include <QAbstractTableModel>
#include <functional>

#include "host/netdb/network_editor.h"

namespace loom {

// The rows of a network-element table. Each is read when it is shown; only their ids are held.
class NetworkTableModel final : public QAbstractTableModel {
 public:
  NetworkTableModel(Database& database, QObject* parent) : QAbstractTableModel(parent), database_(database) {}

  // Throws Error.
  void ShowTable(const CString& table, const QString& holding);
  void RemoveRows(const std::vector<int>& rows);

  // Hears of every change of a value.
  void SetChangeListener(std::function<void()> listener) { changed_ = std::move(listener); }
  // Hears why a value is refused.
  void SetRefusalListener(std::function<void(const QString&)> listener) { refused_ = std::move(listener); }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  const std::vector<CString>& TextsAt(int row) const;

  Database& database_;
  mutable std::optional<NetworkEditor> table_;
  std::vector<std::int64_t> ids_;
  std::function<void()> changed_;
  std::function<void(const QString&)> refused_;
  mutable int read_row_ = -1;  // that the texts are of
  mutable std::vector<CString> read_texts_;
};

}  // namespace loom
