#pragma once

#include "components/importer.h"
#include "platform/cstring.h"

namespace loom {

// Logs of the automatic test system (CS form).
class CCSLogImportWrap {
 public:
  bool IsCSLog(const CString& path) const;
  void SetImpSetting(const ImpIESettings& settings);  // for every importer made, from its next import on
  IImporter* CreateImporter();                        // the caller owns it
};

// Logs of the China Mobile automatic drive test.
class CCMCCLogImportWrap {
 public:
  bool IsCMCCLog(const CString& path) const;
  void SetImpSetting(const ImpIESettings& settings);
  IImporter* CreateImporter();
};

}  // namespace loom
