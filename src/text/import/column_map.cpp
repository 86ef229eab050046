#include "text/import/column_map.h"

#include <algorithm>

#include "components/project.h"
#include "components/row_cursor.h"

namespace loom {

bool HasTimeColumn(const ColumnMap& map) {
  return std::ranges::any_of(map, [](const auto& entry) { return g_project->GetIEID(entry.second) == kRecordTimeIe; });
}

CString IeOfTitle(const CString& title) {
  const int unit = title.Find('(');
  CString name = unit < 0 ? title : title.Left(unit);
  name.Trim();
  return g_sysProject->GetIEByName(name) != nullptr ? name : CString();
}

std::int32_t ColumnOf(const ColumnMap& map, const CString& ie_name) {
  const auto found =
      std::ranges::find_if(map, [&](const auto& entry) { return entry.second.CompareNoCase(ie_name) == 0; });
  return found == map.end() ? -1 : found->first;
}

}  // namespace loom
