#include "apps/qloom-desktop/shell/stream_table_model.h"

#include <QDateTime>
#include <charconv>
#include <cmath>

#include "apps/qloom-desktop/front_end/qt_text.h"
#include "apps/qloom-desktop/shell/shell_texts.h"
#include "components/project.h"

namespace loom {
namespace {

enum LeadingColumn { kRowNumber, kTime, kTdRow, kGsmRow };

template <class Number>
QString NumberCell(Number number) {
  char digits[40];
  const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  return QString::fromLatin1(digits, end - digits);
}

// Name, unit and range of an information element.
QString Description(int ie_id) {
  const CString name = g_project->GetIEName(ie_id);
  QStringList lines{ToQt(name)};
  if (const CString unit = g_project->GetIEUnitByIEName(name); !unit.IsEmpty())
    lines << Text(shell::kHeadingUnit).arg(ToQt(unit));
  double maximum = 0;
  double minimum = 0;
  if (g_project->GetIEValueRangeByName(name, maximum, minimum))
    lines << Text(shell::kHeadingRange).arg(minimum).arg(maximum);
  lines << Text(shell::kHeadingNumber).arg(ie_id);
  return lines.join(u'\n');
}

}  // namespace

QString ValueText(const CMemDataRow& row, int ie_id, uniFieldValue value) {
  switch (g_memDataType->GetType(ie_id)) {
    case kFieldBool:
      return value.bool_value != 0 ? QStringLiteral("true") : QStringLiteral("false");
    case kFieldText:
      return ToQt(CString(row.GetText(value.text)));
    case kFieldShort:
      return NumberCell(static_cast<std::int16_t>(value.short_value));
    case kFieldFloat:
      return NumberCell(value.float_value);
    default:
      return NumberCell(value.int_value);
  }
}

QString TimeText(double time_s) {
  if (time_s == kInvalidDouble || !std::isfinite(time_s)) return {};
  const auto milliseconds = static_cast<qint64>(std::llround(time_s * 1000));
  return QDateTime::fromMSecsSinceEpoch(milliseconds).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"));
}

StreamTableModel::StreamTableModel(IDataStream& stream, QObject* parent)
    : QAbstractTableModel(parent), stream_(stream), rows_(*stream.GetRows()), merged_rows_(*stream.GetMergedRows()) {
  columns_ = {{Text(shell::kColumnRow)}, {Text(shell::kColumnTime)}};
  if (IsMerged()) columns_.insert(columns_.end(), {{Text(shell::kColumnTdRow)}, {Text(shell::kColumnGsmRow)}});
  for (const CString& name : stream.GetIENames()) {
    const int id = g_project->GetIEID(name);
    if (id < 0) continue;
    const CString unit = g_project->GetIEUnitByIEName(name);
    columns_.push_back({ToQt(unit.IsEmpty() ? name : name + " (" + unit + ")"), id});
  }
}

int StreamTableModel::rowCount(const QModelIndex& parent) const {
  if (parent.isValid()) return 0;
  return static_cast<int>(IsMerged() ? merged_rows_.Count() : rows_.Count());
}

int StreamTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

StreamTableModel::Place StreamTableModel::PlaceAt(int position) const {
  const auto at = static_cast<std::size_t>(position);
  if (!IsMerged()) {
    const auto row = rows_.At(at);
    return {row->first, row->second};
  }
  const auto row = merged_rows_.At(at);
  return {row->first, row->second.row, &row->second};
}

QString StreamTableModel::Cell(const Place& place, int column) const {
  const int id = columns_[static_cast<std::size_t>(column)].ie_id;
  if (id > 0) {
    const auto value = place.row->GetIEValueByID(id);
    return value ? ValueText(*place.row, id, *value) : QString();
  }
  switch (column) {
    case kRowNumber:
      return NumberCell(place.number);
    case kTime:
      return TimeText(place.row->GetRecordTime());
    case kTdRow:
      return place.merged->td_row_number > 0 ? NumberCell(place.merged->td_row_number) : QString();
    default:
      return place.merged->gsm_row_number > 0 ? NumberCell(place.merged->gsm_row_number) : QString();
  }
}

QVariant StreamTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole)) return {};
  return Cell(PlaceAt(index.row()), index.column());
}

QVariant StreamTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Vertical) return role == Qt::DisplayRole ? QVariant(section + 1) : QVariant();
  const Column& column = columns_[static_cast<std::size_t>(section)];
  if (role == Qt::DisplayRole) return column.heading;
  if (role == Qt::ToolTipRole) return column.ie_id > 0 ? Description(column.ie_id) : column.heading;
  return {};
}

int StreamTableModel::PositionOf(int row_number) const {
  int low = 0;
  int high = rowCount();
  while (low < high) {
    const int middle = low + (high - low) / 2;
    if (PlaceAt(middle).number < row_number)
      low = middle + 1;
    else
      high = middle;
  }
  return low < rowCount() ? low : -1;
}

}  // namespace loom
