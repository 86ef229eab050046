#pragma once

#include <cstdint>
#include <map>
#include <string_view>

#include "platform/cstring.h"

namespace loom {

// Column of a text file, from 0 -> name of its information element.
using ColumnMap = std::map<std::int32_t, CString>;

inline constexpr const char* kTimeColumnName = "RecordTime";

// Whether one of the names is the time's in the open project, without which a map cannot be used.
bool HasTimeColumn(const ColumnMap& map);

// The information element that a column's title means: its name, with a unit in parentheses behind it. Empty when the
// system's catalogue has none.
CString IeOfTitle(const CString& title);

// The column that carries the name, without case; -1 if none.
std::int32_t ColumnOf(const ColumnMap& map, const CString& ie_name);

}  // namespace loom
