#pragma once

#include <QWidget>
#include <functional>

#include "host/netdb/network_database.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QTableView;

namespace loom {

class NetworkTableModel;

// The network elements of the project, table by table: found by a text, mended in place, deleted.
class NetworkView final : public QWidget {
 public:
  NetworkView(NetworkDatabase& network, Database& database, QWidget* parent);

  // Hears of every change.
  void SetChangeListener(std::function<void()> listener);
  // Reads the tables anew.
  void Reload();

 private:
  void FillTables();
  void ShowTable();
  void RemoveSelected();
  void Changed();
  void Tell(const QString& reason);

  NetworkDatabase& network_;
  NetworkTableModel* model_;
  QComboBox* tables_;
  QLineEdit* find_;
  QLabel* count_;
  QTableView* table_;
  std::function<void()> changed_;
};

}  // namespace loom
