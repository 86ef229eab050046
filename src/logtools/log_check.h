#pragma once

#include <cstdint>

#include "platform/cstring.h"

namespace loom {

// What the list of logs to combine shows of one.
struct LogInformation {
  CString path;
  std::int32_t type = 0;  // 1 outdoor, 2 indoor, 3 merged outdoor, 4 merged indoor
  CString start;          // texts that compare like times
  CString end;
};

// Whether a log may be combined with those that are listed.
enum class LogCheck : int {
  kAccepted = 1,
  kOtherKind = 10,
  kWrongTestType = 100,
  kVersionTooOld = 101,
  kOtherTestType = 102,
  kCannotOpen = 103,
};

// "室外测试日志" and so on.
CString LogTypeLabel(std::int32_t type);

// A log of the log store. The first one of a test type other than 0 locks it; 0 is none yet.
LogCheck CheckStoreLog(const CString& path, std::int32_t& locked_test_type, LogInformation& information);
// A log of the automatic test system, known to be one.
LogCheck CheckAutoTestLog(const CString& path, LogInformation& information);

}  // namespace loom
