#include "components/autotest.h"
#include "components/project.h"
#include "importers/log_importer.h"
#include "manager/io_manager.h"
#include "platform/file.h"
#include "platform/path.h"
#include "platform/ui/message_box.h"
#include "settings/handset_question.h"

namespace loom {
namespace {

void Tell(const CString& pattern, const CString& argument, MessageIcon icon) {
  ShowMessageBox(Format(pattern, argument), icon);
}

CProjectStream DescribeStream(const IDataStream& stream) {
  CProjectStream described;
  described.SetFilterOperator(stream.GetFilterOperator());
  described.SetProtocol(stream.GetProtocol());
  described.SetStreamName(stream.GetName());
  described.SetStreamType(Format("%d", stream.GetStreamType()));
  return described;
}

void RegisterInProject(const CString& path, ILogfile& logfile, const struct_BinningSetting& binning) {
  CProjectLogfile log;
  log.SetLogFileName(logfile.GetName());
  log.SetLogFilePath(path);
  log.SetFacType(logfile.GetHandsetType());
  g_project->AddBinningSetting(log.GetLogFileName(), binning);
  std::map<CString, CProjectStream> streams;
  for (IDataStream* stream : logfile.GetStreams()) {
    stream->FinishRows();
    stream->FinishStream();
    streams[stream->GetName()] = DescribeStream(*stream);
  }
  log.SetStreams(streams);
  g_project->AddProjectLogFile(log);
  g_project->modified = 1;
}

}  // namespace

int CIOManager::OpenLogFile(const CString& path, const ImpIESettings& settings, struct_BinningSetting& binning,
                            bool node_check) {
  struct Rearm {
    ImporterTypeEnum& node_type;
    ~Rearm() {
      g_handset_question.Rearm();
      node_type = kImporterNone;
    }
  } const rearm{import_node_type_};

  LogOutcome outcome{.path = path};
  try {
    ImportChecked(outcome, settings, binning, node_check);
  } catch (...) {
    // What was imported and could not be registered does not stay behind.
    if (outcome.logfile) CStreamManagerCreator::CreateStreamManager()->DropLogfile(path);
    outcome.result = kImportFailed;
    outcome.logfile = nullptr;
    Report(outcome);
    throw;
  }
  Report(outcome);
  return outcome.result;
}

void CIOManager::ImportChecked(LogOutcome& outcome, const ImpIESettings& settings, const struct_BinningSetting& binning,
                               bool node_check) {
  const CString& path = outcome.path;
  if (!FileExists(path)) return Tell("找不到日志文件：%s ，请确认路径! \n"_gbk, path, MessageIcon::kWarning);
  const CString file_name = NameOf(path);
  outcome.type = GetImporterType(path);
  outcome.version = CLogFileManager::GetLogFileVersion(path);
  outcome.test_type = CLogFileManager::GetLogTestType(path);
  if (!node_check && outcome.type == kImporterChinaMobileLog) import_node_type_ = kImporterChinaMobileLog;
  if (!IsAllowedUnderNode(outcome.type, file_name)) return;
  IImporter* importer = PrepareImporter(outcome.type, settings);
  if (!importer) return;

  outcome.result = importer->Import(path, &outcome.logfile);
  if (outcome.logfile) outcome.version = outcome.logfile->GetVersion();
  if (const auto* log_importer = dynamic_cast<const CLogImporter*>(importer)) {
    outcome.skipped = log_importer->SkippedCounts();
  }
  switch (outcome.result) {
    case kImportDone:
      if (outcome.logfile) RegisterInProject(path, *outcome.logfile, binning);
      break;
    case kImportFailed:
      Tell("导入日志文件：%s 失败! \n"_gbk, path, MessageIcon::kError);
      break;
    case kImportAlreadyPresent:
      Tell("已有同名日志文件：%s ! \n"_gbk, file_name, MessageIcon::kWarning);
      break;
    default:
      break;
  }
}

bool CIOManager::IsAllowedUnderNode(ImporterTypeEnum type, const CString& file_name) const {
  const ImporterTypeEnum node = import_node_type_;
  CString objection;
  if (node == kImporterOutdoorLog && type == kImporterIndoorLog) {
    objection = "室外日志节点下不能导入室内日志:%s."_gbk;
  } else if (node == kImporterIndoorLog && type == kImporterOutdoorLog) {
    objection = "室内日志节点下不能导入室外日志:%s "_gbk;
  } else if (node == kImporterChinaMobileLog && type != kImporterChinaMobileLog) {
    objection = "中国移动日志节点下不能导入非中国移动日志:%s"_gbk;
  } else if (node != kImporterChinaMobileLog && type == kImporterChinaMobileLog) {
    objection = "该节点下不能导入中国移动日志:%s"_gbk;
  } else {
    return true;
  }
  Tell(objection, file_name, MessageIcon::kNone);
  return false;
}

// Null when the type has no importer.
IImporter* CIOManager::PrepareImporter(ImporterTypeEnum type, const ImpIESettings& settings) {
  IImporter* importer = GetImporterByType(type);
  if (type == kImporterAutoTestLog) CCSLogImportWrap().SetImpSetting(settings);
  if (type == kImporterChinaMobileLog) CCMCCLogImportWrap().SetImpSetting(settings);
  if (type == kImporterOutdoorLog || type == kImporterIndoorLog) {
    if (auto* log_importer = dynamic_cast<CLogImporter*>(importer)) {
      log_importer->SetTestType(type == kImporterIndoorLog ? kTestIndoor : kTestOutdoor);
      log_importer->SetImpIESetting(settings);
    }
  }
  return importer;
}

void CIOManager::Report(const LogOutcome& outcome) {
  if (log_listener_) log_listener_(outcome);
}

}  // namespace loom
