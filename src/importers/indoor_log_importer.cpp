#include "importers/indoor_log_importer.h"

namespace loom {

CIndoorLogImporter::CIndoorLogImporter() {
  importer_type_ = kImporterIndoorLog;
  test_type_ = kTestIndoor;
}

int CIndoorLogImporter::BeginImport(const CString& path, ILogfile** logfile) {
  const int result = COutdoorLogImporter::BeginImport(path, logfile);
  if (result == kImportDone && *logfile) (*logfile)->SetOutdoor(0);
  converter_->SetSettingsEmpty(false);
  return result;
}

}  // namespace loom
