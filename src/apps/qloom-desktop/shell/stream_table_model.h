#pragma once

#include <QAbstractTableModel>
#include <vector>

#include "apps/qloom-desktop/shell/row_index.h"
#include "components/stream_manager.h"

namespace loom {

// The rows of a stream as they lie in its row map: number and time, in a merged stream the numbers in both sources, and
// one column for each information element that the stream has handed over. The stream outlives the model.
class StreamTableModel final : public QAbstractTableModel {
 public:
  StreamTableModel(IDataStream& stream, QObject* parent);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  // Position of the row with that number or of the next one; -1 behind the last.
  int PositionOf(int row_number) const;

 private:
  struct Column {
    QString heading;
    int ie_id = 0;  // 0: one of the leading columns
  };
  struct Place {
    int number = 0;
    const CMemDataRow* row = nullptr;
    const CMergeDataRow_2M* merged = nullptr;
  };
  Place PlaceAt(int position) const;
  QString Cell(const Place& place, int column) const;
  bool IsMerged() const { return !stream_.GetMergedRows()->empty(); }

  IDataStream& stream_;
  RowIndex<RowMap> rows_;
  RowIndex<MergedRowMap> merged_rows_;
  std::vector<Column> columns_;
};

// A value as text, by the catalogue's type of its information element.
QString ValueText(const CMemDataRow& row, int ie_id, uniFieldValue value);
// Local time of seconds since 1970, with milliseconds; empty for -255.
QString TimeText(double time_s);

}  // namespace loom
