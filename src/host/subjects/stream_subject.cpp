#include "host/subjects/stream_subject.h"

#include <algorithm>

#include "components/project.h"
#include "platform/encoding.h"
#include "platform/error.h"

namespace loom {

std::uint32_t StreamSubject::ColumnOf(const CString& field) {
  if (next_column_ >= columns_.size() || columns_[next_column_].name != field) {
    const auto found =
        std::find_if(columns_.begin(), columns_.end(), [&](const Column& column) { return column.name == field; });
    next_column_ = static_cast<std::size_t>(found - columns_.begin());
    if (found == columns_.end()) {
      const std::int32_t id = g_project->GetIEID(field);
      if (id < 0) throw Error("the catalogue has no information element \"" + GbkToUtf8(field) + "\"");
      columns_.push_back({field, cursor_.AddColumn(id)});
    }
  }
  const std::uint32_t column = columns_[next_column_].column;
  next_column_ = next_column_ + 1 < columns_.size() ? next_column_ + 1 : 0;
  return column;
}

CString StreamSubject::GetFieldText(const CString& field) {
  text_.Clear();
  cursor_.AppendValue(ColumnOf(field), text_);
  return CString(text_.view());
}

std::vector<CString> ColumnsOfStream(const IDataStream& stream) {
  std::vector<CString> columns{"RecordTime", "Longitude", "Latitude"};
  for (const CString& name : stream.GetIENames()) {
    if (std::find(columns.begin(), columns.end(), name) == columns.end()) columns.push_back(name);
  }
  return columns;
}

}  // namespace loom
