#include "manager/log_opener.h"

#include "components/autotest.h"
#include "components/project.h"
#include "importers/log_importer.h"
#include "manager/io_registry.h"
#include "manager/log_type.h"
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

// What speaks against a log of the type under the node; empty when nothing does.
CString Objection(ImporterTypeEnum node, ImporterTypeEnum type) {
  if (node == kImporterOutdoorLog && type == kImporterIndoorLog) return "室外日志节点下不能导入室内日志:%s."_gbk;
  if (node == kImporterIndoorLog && type == kImporterOutdoorLog) return "室内日志节点下不能导入室外日志:%s "_gbk;
  if (node == kImporterChinaMobileLog && type != node) return "中国移动日志节点下不能导入非中国移动日志:%s"_gbk;
  if (type == kImporterChinaMobileLog && type != node) return "该节点下不能导入中国移动日志:%s"_gbk;
  return {};
}

void TellResult(int result, const CString& path) {
  if (result == kImportFailed) Tell("导入日志文件：%s 失败! \n"_gbk, path, MessageIcon::kError);
  if (result == kImportAlreadyPresent) Tell("已有同名日志文件：%s ! \n"_gbk, NameOf(path), MessageIcon::kWarning);
}

}  // namespace

int LogOpener::OpenLogFile(const CString& path, const LogSettings& settings, LogNode node) {
  const struct Rearm {
    ~Rearm() { g_handset_question.Rearm(); }
  } rearm{};
  LogOutcome outcome{.path = path};
  try {
    Import(outcome, settings, node);
  } catch (...) {
    // What was imported and could not be registered does not stay behind.
    if (outcome.logfile) CStreamManagerCreator::CreateStreamManager()->DropLogfile(path);
    outcome.result = kImportFailed;
    outcome.logfile = nullptr;
    listener_(outcome);
    throw;
  }
  listener_(outcome);
  return outcome.result;
}

void LogOpener::Import(LogOutcome& outcome, const LogSettings& settings, LogNode node) {
  const CString& path = outcome.path;
  if (!FileExists(path)) return Tell("找不到日志文件：%s ，请确认路径! \n"_gbk, path, MessageIcon::kWarning);
  outcome.type = GetImporterType(path);
  outcome.version = CLogFileManager::GetLogFileVersion(path);
  outcome.test_type = CLogFileManager::GetLogTestType(path);
  if (!node.is_checked && outcome.type == kImporterChinaMobileLog) node.type = kImporterChinaMobileLog;
  const CString objection = Objection(node.type, outcome.type);
  if (!objection.IsEmpty()) return Tell(objection, NameOf(path), MessageIcon::kNone);
  RunImporter(outcome, settings);
}

void LogOpener::RunImporter(LogOutcome& outcome, const LogSettings& settings) {
  IImporter* const importer = Prepare(outcome.type, settings.ies);
  if (!importer) return;
  outcome.result = importer->Import(outcome.path, &outcome.logfile);
  if (outcome.logfile) outcome.version = outcome.logfile->GetVersion();
  if (const CLogImporter* const own = registry_.GetLogImporter(outcome.type)) outcome.skipped = own->SkippedCounts();
  if (outcome.result == kImportDone && outcome.logfile) {
    RegisterInProject(outcome.path, *outcome.logfile, settings.binning);
  }
  TellResult(outcome.result, outcome.path);
}

// Null when the type has no importer.
IImporter* LogOpener::Prepare(ImporterTypeEnum type, const ImpIESettings& settings) {
  if (type == kImporterOutdoorLog || type == kImporterIndoorLog) return PrepareOwn(type, settings);
  IImporter* const importer = registry_.GetImporterByType(type);
  if (type == kImporterAutoTestLog) CCSLogImportWrap().SetImpSetting(settings);
  if (type == kImporterChinaMobileLog) CCMCCLogImportWrap().SetImpSetting(settings);
  return importer;
}

IImporter* LogOpener::PrepareOwn(ImporterTypeEnum type, const ImpIESettings& settings) {
  CLogImporter* const importer = registry_.GetLogImporter(type);
  if (!importer) return nullptr;
  importer->SetTestType(type == kImporterIndoorLog ? kTestIndoor : kTestOutdoor);
  importer->SetImpIESetting(settings);
  return importer;
}

}  // namespace loom
