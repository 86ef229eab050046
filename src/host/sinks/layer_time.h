#pragma once

#include <cstddef>

namespace loom {

inline constexpr std::size_t kUtcTextBytes = 24;

// Writes "2010-03-05T08:15:30.250Z" of a time in seconds since 1970, rounded to milliseconds, at `out`, where there is
// room for 8 bytes more, and returns its end; `out` itself for what is no time of the years 0 to 9999.
char* PutUtc(double seconds_since_1970, char* out);

}  // namespace loom
