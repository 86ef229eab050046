// Any bytes as a log file: it is refused or read to its end.
#include <cstdlib>
#include <memory_resource>
#include <vector>

#include "components/factory.h"
#include "components/log_store.h"
#include "fuzz/memory_file.h"
#include "fuzz/target.h"
#include "host/logstore/window_reader.h"
#include "platform/error.h"
#include "platform/notes.h"

namespace {

using namespace loom;

void ReadAll(CLogFileManager& log) {
  const auto decoder = CFactory::Instance().CreateDecoder();
  std::pmr::monotonic_buffer_resource arena;
  double share = 0.0;
  for (;;) {
    CTestdataBase record(false, 0);
    record.arena = &arena;
    try {
      if (!log.ReadFile(record)) break;
    } catch (const FileError&) {
      continue;  // a record marked as one that fails to read
    }
    decoder->Decode(log.GetLogFileVersion(), record, record);
    if (log.GetCurPercent() < share || log.GetCurPercent() > 1.0) std::abort();
    share = log.GetCurPercent();
    arena.release();
  }
  log.GetRecordStartTime();
  log.GetRecordEndTime();
}

constexpr TimeWindow kAllTimes{INT64_MIN, INT64_MAX};

std::vector<std::uint64_t> Positions(auto& reader) {
  std::vector<std::uint64_t> positions;
  for (LogPacket packet; reader.Next(packet);)
    if (kAllTimes.Holds(packet.time_ns)) positions.push_back(packet.position_bytes);
  return positions;
}

// A time index that holds good leads to every record that reading from front to back finds.
void ReadByIndex(const CString& path) {
  LogReader reader(path);
  const auto index = reader.ReadIndex();
  if (!index) return;
  std::vector<std::uint64_t> found;
  try {
    WindowReader records(reader, *index, kAllTimes);
    found = Positions(records);
  } catch (const FormatError&) {
    return;
  }
  reader.Rewind();
  if (found != Positions(reader)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Notes notes;
  const NotesScope scope(notes);
  const MemoryFile file(data, size);
  CLogFileManager log;
  const bool opened = log.OpenFile(file.Folder(), file.Name(), 0) != 0;
  if (opened != (CLogFileManager::GetLogFileVersion(file.Folder() + file.Name()) == log.GetLogFileVersion() &&
                 log.GetLogFile() != nullptr))
    std::abort();
  if (!opened && notes.IsEmpty()) std::abort();
  if (opened) {
    ReadAll(log);
    ReadByIndex(file.Folder() + file.Name());
  }
  return 0;
}
