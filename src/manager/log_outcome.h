#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string_view>

#include "components/importer.h"
#include "components/log_store.h"
#include "platform/cstring.h"

namespace loom {

// What became of one log or text file of a command.
struct LogOutcome {
  CString path;
  ImporterTypeEnum type = kImporterNone;  // none while the file was refused before its type was known
  int result = kImportFailed;             // an ImportResult
  // Of the file as it was read; kUnreadableVersion when it told none. Intermediate files have a version only.
  std::int32_t version = kUnreadableVersion;
  std::int32_t test_type = kUnreadableVersion;
  ILogfile* logfile = nullptr;                             // of an imported log; belongs to the stream manager
  std::map<std::string_view, std::uint64_t> skipped = {};  // records that became no row, by reason
};
using LogListener = std::function<void(const LogOutcome&)>;

// Results of a command over several logs.
enum BatchResult : int {
  kBatchNothing = 0,  // nothing imported
  kBatchDone = 1,     // everything attempted was imported
  kBatchInPart = 2,   // something imported; something was cancelled, present already, or the batch was cut short
};

}  // namespace loom
