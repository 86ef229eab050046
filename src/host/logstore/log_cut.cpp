#include "host/logstore/log_cut.h"

#include <optional>

#include "components/note_kinds.h"
#include "host/logstore/log_reader.h"
#include "host/logstore/log_writer.h"
#include "platform/error.h"
#include "platform/file.h"
#include "platform/interrupt.h"
#include "platform/time_units.h"

namespace loom {
namespace {

std::optional<LogReader> OpenSource(const CString& source, const CString& target) {
  try {
    if (IsSameFile(source, target)) throw FileError(source, 0, "the cut log would replace it");
    return std::optional<LogReader>(std::in_place, source);
  } catch (const FileError& error) {
    CurrentNotes().Add("log refused"_note, source, error.position_bytes(), error.reason());
    return std::nullopt;
  }
}

// False, with a note when there is an index that does not hold good, when the target is not written.
bool CutByIndex(LogReader& reader, const CString& target, const TimeWindow& window) {
  const auto index = reader.ReadIndex();
  if (!index) return false;
  Notes unheard;  // whatever is to be noted makes the index wrong, and reading the whole log tells it again
  try {
    const NotesScope scope(unheard);
    WindowReader records(reader, *index, window);
    LogWriter log(target, reader.header());
    for (LogPacket packet; records.Next(packet);) log.Append(packet);
    if (!unheard.IsEmpty()) throw FormatError(index->end_bytes, "the log holds what its index does not tell");
    reader.RequireUnchanged();
    log.Finish();
    return true;
  } catch (const FormatError& error) {
    CurrentNotes().Add("time index not used"_note, reader.path(), error.position_bytes(), error.reason());
    return false;
  }
}

void CutWhole(LogReader& reader, const CString& target, const TimeWindow& window) {
  reader.Rewind();
  LogWriter log(target, reader.header());
  const std::uint64_t whole = InputFile(reader.path()).Size();
  for (LogPacket packet; reader.Next(packet); TellProgress(packet.position_bytes, whole))
    if (window.Holds(packet.time_ns)) log.Append(packet);
  reader.RequireUnchanged();
  log.Finish();
}

}  // namespace

TimeWindow WindowOfSeconds(const LocalTime& first, const LocalTime& last) {
  return {ClockSecondsOf(first) * kSecond_ns, (ClockSecondsOf(last) + 1) * kSecond_ns};
}

bool CutLog(const CString& source, const CString& target, const TimeWindow& window) {
  std::optional<LogReader> reader = OpenSource(source, target);
  if (!reader) return false;
  try {
    if (!CutByIndex(*reader, target, window)) CutWhole(*reader, target, window);
  } catch (const Interrupted&) {
    CurrentNotes().Add("log not written"_note, target, std::uint64_t{0}, "interrupted");
    if (!WasInterrupted()) throw;  // whoever watches has ended it
    return false;
  } catch (const FileError& error) {
    if (error.path() != target) throw;
    CurrentNotes().Add("log not written"_note, target, error.position_bytes(), error.reason());
    return false;
  }
  return true;
}

}  // namespace loom
