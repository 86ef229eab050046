#pragma once

#include <QWidget>

#include "components/stream_manager.h"

class QTableView;

namespace loom {

class StreamTableModel;

// The table of a stream's rows with a field to go to a row by its number.
class StreamTab final : public QWidget {
 public:
  StreamTab(IDataStream& stream, QWidget* parent);

  IDataStream& stream() const { return stream_; }
  void GoToRow(int row_number);

 private:
  IDataStream& stream_;
  StreamTableModel* model_;
  QTableView* table_;
};

}  // namespace loom
