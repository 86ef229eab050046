#pragma once

#include "importers/outdoor_log_importer.h"

namespace loom {

// Importer type 2: tests inside buildings. Streams are named after the log's place in the project's folder.
class CIndoorLogImporter final : public COutdoorLogImporter {
 public:
  CIndoorLogImporter();
  int BeginImport(const CString& path, ILogfile** logfile) override;
};

}  // namespace loom
