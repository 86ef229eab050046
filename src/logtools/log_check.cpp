#include "logtools/log_check.h"

#include <cstdio>
#include <iterator>
#include <string_view>

#include "components/autotest.h"
#include "components/dt_time.h"
#include "components/log_store.h"
#include "platform/completes.h"
#include "platform/encoding.h"
#include "platform/path.h"

namespace loom {
namespace {

constexpr std::int32_t kGreatestTestType = 2;
constexpr std::int32_t kIndoorTest = 2;
constexpr std::int32_t kOutdoorLog = 1;
constexpr std::int32_t kMergedOutdoorLog = 3;
constexpr std::int32_t kMergedIndoorLog = 4;
constexpr int kFullText = 127;

// By type from 1 on.
constexpr std::string_view kTypeLabels[] = {"室外测试日志", "室内测试日志", "合并过的室外测试日志",
                                            "合并过的室内测试日志"};

CString DatePrefix(const CLogFileManager& log) {
  int year = 0;
  int month = 0;
  int day = 0;
  log.GetLogFileDate(year, month, day);
  char text[48];
  std::snprintf(text, sizeof text, "%d.%02d.%02d ", year, month, day);
  return text;
}

// False when the log cannot be opened or its times cannot be read.
bool ReadTimes(const CString& path, LogInformation& information) {
  const auto [folder, file_name] = SplitPath(path);
  CLogFileManager log;
  if (log.OpenFile(folder, file_name, 0) == 0) return false;
  const bool are_read = Completes([&] {
    const CString date = DatePrefix(log);
    information.start = date + CString(log.GetRecordStartTime().toString());
    information.end = date + CString(log.GetRecordEndTime().toString());
  });
  log.CloseReadingFile();
  return are_read;
}

}  // namespace

CString LogTypeLabel(std::int32_t type) {
  const bool is_known = type >= 1 && type <= std::ssize(kTypeLabels);
  return is_known ? Utf8ToGbk(kTypeLabels[type - 1]) : "未知类型日志"_gbk;
}

LogCheck CheckStoreLog(const CString& path, std::int32_t& locked_test_type, LogInformation& information) {
  const int test_type = CLogFileManager::GetLogTestType(path);
  if (test_type < 0 || test_type > kGreatestTestType) return LogCheck::kWrongTestType;
  const int version = CLogFileManager::GetLogFileVersion(path);
  if (version <= kLastUnmergeableVersion) return LogCheck::kVersionTooOld;
  if (locked_test_type == 0)
    locked_test_type = test_type;
  else if (test_type != locked_test_type)
    return LogCheck::kOtherTestType;
  const std::int32_t merged_type = locked_test_type == kIndoorTest ? kMergedIndoorLog : kMergedOutdoorLog;
  information.path = path;
  information.type = version >= kMergedLogVersion ? merged_type : locked_test_type;
  return ReadTimes(path, information) ? LogCheck::kAccepted : LogCheck::kCannotOpen;
}

LogCheck CheckAutoTestLog(const CString& path, LogInformation& information) {
  SYSTEMTIME begin;
  SYSTEMTIME end;
  if (!Completes([&] { CCSLogImportWrap().GetBeginEndTime(path, begin, end); })) return LogCheck::kCannotOpen;
  information = {path, kOutdoorLog, CDTTime(begin).ToString(kFullText), CDTTime(end).ToString(kFullText)};
  return LogCheck::kAccepted;
}

}  // namespace loom
