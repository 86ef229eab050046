#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "components/import_settings.h"
#include "components/stream_manager.h"
#include "platform/cstring.h"

namespace loom {

enum ImporterTypeEnum : std::int32_t {
  kImporterNone = 0,
  kImporterOutdoorLog = 1,
  kImporterIndoorLog = 2,
  kImporterAutoTestLog = 3,     // automatic test system, CS form
  kImporterChinaMobileLog = 5,  // China Mobile automatic drive test
  kImporterText = 6,
  kImporterNetInfo = 8,
};
enum ExporterTypeEnum : std::int32_t { kExporterText = 1, kExporterExcel = 2 };

// Results of importing one log.
enum ImportResult : int {
  kImportDone = 1,
  kImportFailed = 0,
  kImportCancelled = -1,
  kImportAlreadyPresent = -2,
};

class IImporter {
 public:
  // Imports a file; on success the log file object may be given through the pointer, else it is set to null.
  virtual int Import(const CString& path, ILogfile** logfile) = 0;
  virtual ~IImporter() = default;
};

class COleSafeArray;
class ISubject;

class IExporter {
 public:
  virtual int Export(CString name, std::vector<COleSafeArray>& tables, std::vector<CString>& sheet_names) = 0;    // 1
  virtual int Export(CString name, std::vector<ISubject*> subjects, std::vector<CString>& sheet_names,
                     std::vector<std::vector<CString>>& column_lists) = 0;                                        // 2
  virtual int Export(CString name, ISubject* subject, std::vector<CString>& columns) = 0;                         // 3
  virtual int Export(CString name, ISubject* subject) = 0;                                                        // 4
  virtual int Export() = 0;                                                                                       // 5
  virtual ~IExporter() = default;
};

// The module's reading loop, offered to the automatic-test library: makes an importer of a type whose IE settings are
// read from *settings at the start of every import. The module registers its maker; *settings outlives the importer.
using LogImporterMaker = std::unique_ptr<IImporter> (*)(ImporterTypeEnum type, const ImpIESettings* settings);
void RegisterLogImporterMaker(LogImporterMaker maker);

}  // namespace loom
