#include "components/autotest.h"
#include "host/logstore/log_reader.h"
#include "platform/error.h"

namespace loom {
namespace {

LogImporterMaker& Maker() {
  static LogImporterMaker maker = nullptr;
  return maker;
}

// The settings that every importer of a kind reads when an import starts. They outlive every importer.
template <ImporterTypeEnum kType>
ImpIESettings& SettingsOf() {
  static ImpIESettings settings;
  return settings;
}

bool IsKind(const CString& path, LogKind kind) {
  const auto header = PeekLogHeader(path);
  return header && header->kind == kind;
}

template <ImporterTypeEnum kType>
IImporter* Make() {
  if (!Maker()) throw Error("the maker of log importers is not registered");
  return Maker()(kType, &SettingsOf<kType>()).release();
}

}  // namespace

void RegisterLogImporterMaker(LogImporterMaker maker) { Maker() = maker; }

bool CCSLogImportWrap::IsCSLog(const CString& path) const { return IsKind(path, LogKind::kAuto); }
void CCSLogImportWrap::SetImpSetting(const ImpIESettings& settings) { SettingsOf<kImporterAutoTestLog>() = settings; }
IImporter* CCSLogImportWrap::CreateImporter() { return Make<kImporterAutoTestLog>(); }

bool CCMCCLogImportWrap::IsCMCCLog(const CString& path) const { return IsKind(path, LogKind::kCmcc); }
void CCMCCLogImportWrap::SetImpSetting(const ImpIESettings& settings) {
  SettingsOf<kImporterChinaMobileLog>() = settings;
}
IImporter* CCMCCLogImportWrap::CreateImporter() { return Make<kImporterChinaMobileLog>(); }

}  // namespace loom
