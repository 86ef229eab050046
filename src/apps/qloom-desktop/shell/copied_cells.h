#pragma once

#include <QItemSelection>
#include <QString>
#include <vector>

namespace loom {

// Cells of a table as text that spreadsheets take: tabs between them, a line for each row, the headings first; quoted
// where a cell holds a tab, a quote or a line break.
class CopiedCells {
 public:
  // The cells selected, in the order of `columns`; of rows and columns in between that are not, nothing but the place.
  CopiedCells(const QAbstractItemModel& model, const QItemSelection& selection, const std::vector<int>& columns);

  qint64 Count() const;
  QString ToText() const;

 private:
  struct Rows {
    int first;
    int last;
  };
  void AppendRow(int row, QString& text) const;

  const QAbstractItemModel& model_;
  QItemSelection selection_;
  std::vector<int> columns_;  // that hold a selected cell
  std::vector<Rows> rows_;    // from the top, apart from each other
};

}  // namespace loom
