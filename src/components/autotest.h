#pragma once

#include <vector>

#include "components/importer.h"
#include "platform/cstring.h"
#include "platform/system_time.h"

namespace loom {

// Logs of the automatic test system (CS form).
class CCSLogImportWrap {
 public:
  bool IsCSLog(const CString& path) const;
  void SetImpSetting(const ImpIESettings& settings);  // for every importer made, from its next import on
  IImporter* CreateImporter();                        // the caller owns it

  // First and last time of the records, midnight of the log's day when there is none. False when it is no such log.
  bool GetBeginEndTime(const CString& path, SYSTEMTIME& begin, SYSTEMTIME& end) const;
  // As CLogFileManager::MergeFile and ExtractLogFile, for logs of this system only and of any version.
  int MergeFile(const CString& target, const std::vector<CString>& paths) const;
  int ExtractLogByTimeW(const CString& source, const SYSTEMTIME& start, const SYSTEMTIME& end,
                        const CString& target) const;
};

// Logs of the China Mobile automatic drive test.
class CCMCCLogImportWrap {
 public:
  bool IsCMCCLog(const CString& path) const;
  void SetImpSetting(const ImpIESettings& settings);
  IImporter* CreateImporter();
};

}  // namespace loom
