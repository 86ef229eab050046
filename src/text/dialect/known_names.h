#pragma once

#include <string_view>

namespace loom::dialect {

// How likely a name tells of a latitude, longitude or time: 0 not at all, higher is likelier.
int LatitudeRank(std::string_view name);
int LongitudeRank(std::string_view name);
int TimeRank(std::string_view name);

// A name that headings of such files have.
bool IsUsualName(std::string_view name);

// The zone that the name of a column states ("utc_time"): "UTC", or empty.
std::string_view ZoneOfName(std::string_view name);

}  // namespace loom::dialect
