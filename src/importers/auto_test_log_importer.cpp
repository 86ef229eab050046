#include "importers/auto_test_log_importer.h"

namespace loom {

CAutoTestLogImporter::CAutoTestLogImporter(ImporterTypeEnum type, const ImpIESettings* settings) : settings_(settings) {
  importer_type_ = type;
}

int CAutoTestLogImporter::BeginImport(const CString& path, ILogfile** logfile) {
  SetImpIESetting(*settings_);
  return COutdoorLogImporter::BeginImport(path, logfile);
}

std::unique_ptr<IImporter> MakeAutoTestLogImporter(ImporterTypeEnum type, const ImpIESettings* settings) {
  if (type != kImporterAutoTestLog && type != kImporterChinaMobileLog) return nullptr;
  return std::make_unique<CAutoTestLogImporter>(type, settings);
}

}  // namespace loom
