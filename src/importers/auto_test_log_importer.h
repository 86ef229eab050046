#pragma once

#include "importers/outdoor_log_importer.h"

namespace loom {

// Logs of the automatic test systems (importer types 3 and 5): the outdoor import with the IE settings that the
// automatic-test library holds when an import starts.
class CAutoTestLogImporter final : public COutdoorLogImporter {
 public:
  CAutoTestLogImporter(ImporterTypeEnum type, const ImpIESettings* settings);
  int BeginImport(const CString& path, ILogfile** logfile) override;

 private:
  const ImpIESettings* settings_;
};

// The LogImporterMaker of this module; null for a type that is no automatic-test log.
std::unique_ptr<IImporter> MakeAutoTestLogImporter(ImporterTypeEnum type, const ImpIESettings* settings);

}  // namespace loom
