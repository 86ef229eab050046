#include "manager/io_manager.h"

#include <exception>

#include "components/autotest.h"
#include "excel/excel_exporter.h"
#include "importers/auto_test_log_importer.h"
#include "importers/indoor_log_importer.h"
#include "importers/outdoor_log_importer.h"
#include "netinfo/net_info_importer.h"
#include "platform/log.h"
#include "platform/ui/message_box.h"
#include "settings/handset_question.h"
#include "text/export/text_exporter.h"
#include "text/import/text_importer.h"

namespace loom {
namespace {

std::unique_ptr<IImporter> MakeImporter(ImporterTypeEnum type) {
  switch (type) {
    case kImporterOutdoorLog:
      return std::make_unique<COutdoorLogImporter>();
    case kImporterIndoorLog:
      return std::make_unique<CIndoorLogImporter>();
    case kImporterAutoTestLog:
      return std::unique_ptr<IImporter>(CCSLogImportWrap().CreateImporter());
    case kImporterChinaMobileLog:
      return std::unique_ptr<IImporter>(CCMCCLogImportWrap().CreateImporter());
    case kImporterText:
      return std::make_unique<CTextImporter>();
    case kImporterNetInfo:
      return std::make_unique<CNetInfoImporter>();
    default:
      return nullptr;
  }
}

std::unique_ptr<IExporter> MakeExporter(ExporterTypeEnum type) {
  switch (type) {
    case kExporterText:
      return std::make_unique<CTextExporter>();
    case kExporterExcel:
      return std::make_unique<CExcelExporter>();
    default:
      return nullptr;
  }
}

}  // namespace

CIOManager::CIOManager() { RegisterLogImporterMaker(&MakeAutoTestLogImporter); }

CIOManager::~CIOManager() { CIOManager::Release(); }

void CIOManager::Release() {
  importers_.Release();
  exporters_.Release();
}

IImporter* CIOManager::GetImporterByType(ImporterTypeEnum type) {
  return importers_.GetOrCreate(type, [this](ImporterTypeEnum wanted) { return CreateImporterByType(wanted); });
}

IExporter* CIOManager::GetExporterByType(ExporterTypeEnum type) {
  return exporters_.GetOrCreate(type, [this](ExporterTypeEnum wanted) { return CreateExporterByType(wanted); });
}

std::unique_ptr<IImporter> CIOManager::CreateImporterByType(ImporterTypeEnum type) {
  try {
    return MakeImporter(type);
  } catch (const std::exception& error) {
    Log(LogLevel::kError, error.what());
  } catch (...) {
    Log(LogLevel::kError, "an importer could not be made");
  }
  ShowMessageBox("导入操作出现错误，请重试或重启系统！"_gbk, MessageIcon::kError);
  return nullptr;
}

std::unique_ptr<IExporter> CIOManager::CreateExporterByType(ExporterTypeEnum type) {
  try {
    return MakeExporter(type);
  } catch (const std::exception& error) {
    Log(LogLevel::kError, error.what());
  } catch (...) {
    Log(LogLevel::kError, "an exporter could not be made");
  }
  ShowMessageBox("导出操作出现错误，请重试或重启系统！"_gbk, MessageIcon::kError);
  return nullptr;
}

void CIOManager::ResetIOFix() { g_handset_question.ResetFlags(); }

}  // namespace loom
