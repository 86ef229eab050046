#include "host/subjects/network_table_subject.h"

#include <algorithm>

#include "platform/error.h"
#include "platform/number.h"

namespace loom {
namespace {

std::int32_t KindOf(const CString& table) {
  if (table.Find("AdjCell") >= 0) return kSubjectNeighbours;
  return table.Find("Custom") >= 0 ? kSubjectCustomGroups : kSubjectNetworkElements;
}

CString TextOf(const NetworkValue& value) {
  if (const auto* integer = std::get_if<std::int64_t>(&value)) return CString(std::to_string(*integer));
  if (const auto* real = std::get_if<double>(&value)) return CString(NumberText(*real));
  if (const auto* text = std::get_if<CString>(&value)) return *text;
  return {};
}

// Rows leave out what is empty: a name that is new belongs behind the one in front of it.
void AddColumnsOf(const NetworkRow& row, std::vector<CString>& columns) {
  auto place = columns.begin();
  for (const auto& [name, value] : row) {
    auto found = std::find(columns.begin(), columns.end(), name);
    if (found == columns.end()) found = columns.insert(place, name);
    place = found + 1;
  }
}

}  // namespace

NetworkTableSubject::NetworkTableSubject(NetworkDatabase& database, const CString& table)
    : rows_(database.ListRows(table)), kind_(KindOf(table)) {
  for (const NetworkRow& row : rows_) AddColumnsOf(row, columns_);
  if (columns_.empty()) columns_ = NetworkDatabase::ColumnsOf(table);
}

CString NetworkTableSubject::GetFieldText(const CString& field) {
  if (at_ >= rows_.size()) throw Error("there is no further row to read");
  const NetworkRow& row = rows_[at_];
  auto found = std::find_if(row.begin(), row.end(), [&](const auto& column) { return column.first == field; });
  const bool is_column = found != row.end() || std::find(columns_.begin(), columns_.end(), field) != columns_.end();
  if (!is_column) {
    found = std::find_if(row.begin(), row.end(),
                         [&](const auto& column) { return column.first.CompareNoCase(field) == 0; });
  }
  return found != row.end() ? TextOf(found->second) : CString();
}

}  // namespace loom
