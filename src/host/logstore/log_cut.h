#pragma once

#include <cstdint>

#include "platform/clock.h"
#include "platform/cstring.h"

namespace loom {

// Times of records from `start_ns` up to but not `end_ns`, since 1970, local clock.
struct TimeWindow {
  std::int64_t start_ns = 0;
  std::int64_t end_ns = 0;
};

// The window of two whole seconds of the local clock; the last one is in it.
TimeWindow WindowOfSeconds(const LocalTime& first, const LocalTime& last);

// Writes a log with the source's header and its records in the window. False, with a note, when the source is no log,
// or the target is the source or cannot be written. Throws FileError when the source fails to read or is written to
// meanwhile; in both cases the target stays as it was.
bool CutLog(const CString& source, const CString& target, const TimeWindow& window);

}  // namespace loom
