// Any bytes as a recording, and in front of a sound one: a log comes of it that reads back, or the file is refused.
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "components/log_store.h"
#include "fuzz/memory_file.h"
#include "fuzz/target.h"
#include "host/logstore/log_reader.h"
#include "host/recordings/make_log.h"
#include "platform/error.h"
#include "platform/file.h"
#include "platform/notes.h"

namespace {

using namespace loom;

std::uint64_t RecordsOf(const CString& path) {
  LogReader log(path);
  std::uint64_t records = 0;
  for (LogPacket packet; log.Next(packet);) ++records;
  return records;
}

CString OutPath() {
  static const CString path(
      ((FolderExists("/dev/shm") ? "/dev/shm" : "/tmp") + ("/fuzz-recording-" + std::to_string(getpid())) + ".log")
          .c_str());
  return path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Notes notes;
  const NotesScope scope(notes);
  const MemoryFile file(data, size);
  RecordingOptions options;
  options.files = {file.Path()};
  options.out = OutPath();
  options.utc_offset_s = 8 * 3600;
  options.start = LocalMomentFromText("2024-05-17 09:30:00");
  const bool is_recording = IsRecording(file.Path());
  const RecordingReport report = MakeLogFromRecordings(options);
  if (report.is_written && !is_recording) std::abort();
  if (report.files.size() != 1) std::abort();
  if (!report.is_written) return 0;
  std::uint64_t records = 0;
  for (const auto& [kind, count] : report.records) records += count;
  const bool is_whole = !report.skipped.contains("record beyond the times that a log can hold");
  if (is_whole && RecordsOf(options.out) != records) std::abort();
  RemoveFile(options.out);
  return 0;
}
