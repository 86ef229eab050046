#pragma once

#include "host/logstore/window_reader.h"
#include "platform/clock.h"
#include "platform/cstring.h"

namespace loom {

// The window of two whole seconds of the local clock; the last one is in it.
TimeWindow WindowOfSeconds(const LocalTime& first, const LocalTime& last);

// Writes a log with the source's header and its records in the window. Where the source has a time index that holds
// good, only what it names is read; the bytes written are the same with and without. False, with a note, when the
// source is no log, or the target is the source or cannot be written. Throws FileError when the source fails to read or
// is written to meanwhile. In all these cases, and after an interrupt, which gives false, too, the target stays as it
// was. Where whoever watches ends the work, Interrupted goes on to them.
bool CutLog(const CString& source, const CString& target, const TimeWindow& window);

}  // namespace loom
