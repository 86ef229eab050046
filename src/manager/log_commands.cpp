#include "manager/log_commands.h"

#include "components/project.h"
#include "importers/intermediate_file_importer.h"
#include "manager/log_batch.h"
#include "manager/present_titles.h"
#include "platform/completes.h"
#include "platform/file.h"
#include "platform/path.h"
#include "platform/ui/message_box.h"
#include "settings/handset_question.h"

namespace loom {
namespace {

constexpr const char* kIndoorFolder = "Indoor Test";
constexpr const char* kOutdoorFolder = "Outdoor Test";

// A log that lies in an indoor folder of another place than the project.
bool IsForeignIndoorLog(const CString& path, const CString& indoor_folder) {
  const CString outdoor_folder = JoinPath(g_project->GetPath(), kOutdoorFolder);
  CString folder = FolderOf(path);
  folder = folder.Left(folder.GetLength() - 1);
  const bool is_in_project = folder.Left(indoor_folder.GetLength()) == indoor_folder || folder == outdoor_folder;
  return !is_in_project && path.Find(kIndoorFolder) > 1;
}

// Where the log is to be read: an indoor log of another place is copied into the project. Whether that worked shows
// when the copy is opened.
CString PlaceOf(const CString& path) {
  const CString indoor_folder = JoinPath(g_project->GetPath(), kIndoorFolder);
  if (!IsForeignIndoorLog(path, indoor_folder)) return path;
  const CString copy = JoinPath(indoor_folder, NameOf(path));
  Completes([&] {
    CreateFolder(indoor_folder);
    CopyFile(path, copy);
  });
  return copy;
}

LogSettings StoredSettings(const CString& path) {
  LogSettings settings;
  g_project->GetBinningSetting(path, settings.binning);
  return settings;
}

}  // namespace

int LogCommands::ImportLog(ImporterTypeEnum node_type) {
  return LogBatch(node_type, opener_, listener_).ImportChosen();
}

int LogCommands::ImportLogByName(const CString& path) {
  if (path.IsEmpty()) return kBatchNothing;
  return LogBatch(kImporterIndoorLog, opener_, listener_).ImportOne(path);
}

int LogCommands::OpenLog(const CString& path, bool node_check) {
  return ResultOr<int>(kImportFailed, [&] { return OpenListed(path, node_check); });
}

int LogCommands::OpenListed(const CString& path, bool node_check) {
  LogSettings settings = StoredSettings(path);
  settings.ies = g_project->GetImpSettingByLogFile(path);
  const int result = opener_.OpenLogFile(path, settings, {.is_checked = node_check});
  if (result != kImportDone && result != kImportAlreadyPresent) {
    g_project->RemoveLogFile(path);
    g_project->modified = 1;
  }
  return result;
}

int LogCommands::OpenRecentLog(const CString& path) {
  return ResultOr<int>(kImportFailed, [&] { return OpenRecent(path); });
}

int LogCommands::OpenRecent(const CString& path) {
  if (!FileExists(path)) {
    ShowMessageBox("未找到文件，请检查文件是否存在！"_gbk, MessageIcon::kWarning);
    g_project->RemoveLogFile(path);
    listener_({.path = path});
    return kImportFailed;
  }
  const CString place = PlaceOf(path);
  g_handset_question.ResetFlags();
  const int result = opener_.OpenLogFile(place, StoredSettings(place), {.is_checked = false});
  if (result == kImportFailed) g_project->RemoveLogFile(place);
  return result;
}

int LogCommands::OpenImmediateLogFile(const std::vector<CString>& paths, IModuleCommunicator* communicator) {
  Completes([&] {
    const PresentTitles present_titles(listener_);
    for (const CString& path : paths) {
      if (!present_titles.Refuse(path)) OpenIntermediate(path, communicator);
    }
  });
  return kImportDone;
}

void LogCommands::OpenIntermediate(const CString& path, IModuleCommunicator* communicator) {
  LogOutcome outcome{.path = path};
  CIntermediateFileImporter importer(communicator);
  Completes([&] { importer.Import(path, &outcome.logfile); });
  outcome.version = importer.FileVersion().value_or(kUnreadableVersion);
  const bool has_streams = outcome.logfile != nullptr && !outcome.logfile->GetStreams().empty();
  outcome.result = has_streams ? kImportDone : kImportFailed;
  listener_(outcome);
}

}  // namespace loom
