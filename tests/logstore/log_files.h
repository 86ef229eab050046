#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory_resource>
#include <sstream>
#include <string>
#include <vector>

#include "components/log_store.h"
#include "host/logstore/log_json.h"
#include "host/logstore/log_writer.h"
#include "host/logstore/record_codec.h"
#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/notes.h"
#include "platform/path.h"
#include "tests/support/places.h"
#include "tests/support/temp_folder.h"

namespace loom::testing {

// Ids of the records of a log as the log store reads it, and what was noted on the way.
struct ReadLog {
  bool opened = false;
  bool threw = false;
  std::vector<std::int32_t> ids;
  std::vector<double> shares;
  Notes notes;
};

inline ReadLog ReadThrough(const CString& path) {
  ReadLog result;
  const NotesScope scope(result.notes);
  CLogFileManager log;
  const PathParts parts = SplitPath(path);
  result.opened = log.OpenFile(parts.folder, parts.name, 0) != 0;
  std::pmr::monotonic_buffer_resource arena;
  while (result.opened) {
    CTestdataBase record(false, 0);
    record.arena = &arena;
    try {
      if (!log.ReadFile(record)) break;
      result.ids.push_back(record.record_id);
    } catch (const FileError&) {
      result.threw = true;
      break;
    }
    result.shares.push_back(log.GetCurPercent());
  }
  return result;
}

// A log of small records with the ids 1 to `count`, one second apart from 10:00 on.
inline void WriteLog(const CString& path, int count,
                     const LogHeader& header = {LogKind::kStore, 140, 1, {2024, 5, 17}}) {
  LogWriter log(path, header);
  for (int id = 1; id <= count; ++id) {
    CTestdataBase record(false, 0);
    record.record_id = id;
    record.kind = kRecordHandset;
    record.time.seconds = 36000.0 + id;
    log.Append(EncodeRecord(record), record.time.seconds);
  }
  log.Finish();
}

inline std::vector<std::int32_t> Ids(int count) {
  std::vector<std::int32_t> ids;
  for (int id = 1; id <= count; ++id) ids.push_back(id);
  return ids;
}

inline std::string Dump(const CString& path) {
  std::ostringstream out;
  DumpLog(path, out);
  return out.str();
}

// Whether a command line succeeds; its output goes nowhere.
inline bool Succeeds(const std::string& command) { return std::system((command + " >/dev/null 2>&1").c_str()) == 0; }

}  // namespace loom::testing
