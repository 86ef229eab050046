#pragma once

#include <charconv>
#include <string_view>
#include <system_error>

#include "host/sinks/layer.h"

namespace loom {

// Every pair "longitude,latitude" of numbers in a text, whatever stands between the pairs.
template <class Visit>
void ForEachPosition(std::string_view text, Visit visit) {
  const char* at = text.data();
  const char* const end = at + text.size();
  while (at < end) {
    GeoPoint point;
    const auto [behind, error] = std::from_chars(at, end, point.longitude);
    if (error != std::errc()) {
      ++at;
      continue;
    }
    if (behind == end) return;
    at = std::from_chars(behind + 1, end, point.latitude).ptr;
    visit(point);
  }
}

}  // namespace loom
