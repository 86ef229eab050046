#include <set>

#include "components/project.h"
#include "components/resource_handle.h"
#include "importers/intermediate_file_importer.h"
#include "manager/import_file_dialog.h"
#include "manager/io_manager.h"
#include "platform/completes.h"
#include "platform/file.h"
#include "platform/path.h"
#include "platform/ui/message_box.h"
#include "platform/ui/template.h"
#include "settings/handset_question.h"

namespace loom {
namespace {

constexpr std::size_t kNameBufferBytes = 65535;
constexpr const char* kIndoorFolder = "Indoor Test";
constexpr const char* kOutdoorFolder = "Outdoor Test";

std::set<CString> PresentTitles() {
  std::map<CString, ILogfile*> logs;
  CStreamManagerCreator::CreateStreamManager()->GetLogfileNames(logs);
  std::set<CString> titles;
  for (const auto& [name, logfile] : logs) titles.insert(TitleOf(name));
  return titles;
}

// The paths up to the first whose file cannot be found.
std::vector<CString> FoundPaths(const std::vector<CString>& picked) {
  std::vector<CString> found;
  for (const CString& path : picked) {
    if (!FileExists(path)) {
      ShowMessageBox("无法找到日志文件:"_gbk + path);
      break;
    }
    found.push_back(path);
  }
  return found;
}

// Copies an indoor log into the project; whether that worked shows when the copy is opened.
CString CopyIntoProject(const CString& path, const CString& indoor_folder) {
  const CString copy = JoinPath(indoor_folder, NameOf(path));
  Completes([&] {
    CreateFolder(indoor_folder);
    CopyFile(path, copy);
  });
  return copy;
}

// A log that lies in an indoor folder of another place than the project.
bool IsForeignIndoorLog(const CString& path, const CString& indoor_folder, const CString& outdoor_folder) {
  CString folder = FolderOf(path);
  folder = folder.Left(folder.GetLength() - 1);
  const bool is_in_project = folder.Left(indoor_folder.GetLength()) == indoor_folder || folder == outdoor_folder;
  return !is_in_project && path.Find(kIndoorFolder) > 1;
}

}  // namespace

// What the person chose for one batch.
struct CIOManager::LogSelection {
  std::vector<CString> paths;
  ImpIESettings settings;
  struct_BinningSetting binning;
};

// Results of the files of one batch.
class CIOManager::Batch {
 public:
  void Add(int result, const CString& path) {
    if (result == kImportDone) {
      imported_.AddLogFile(path);
      g_systemConfig->SetRecentLogFile(path);
    }
    in_part_ |= result == kImportCancelled || result == kImportAlreadyPresent;
  }
  void CutShort() { in_part_ = true; }
  CImportSetting& imported() { return imported_; }
  int Result() const {
    if (imported_.GetLogFileNum() == 0) return kBatchNothing;
    return in_part_ ? kBatchInPart : kBatchDone;
  }

 private:
  CImportSetting imported_;
  bool in_part_ = false;
};

int CIOManager::ImportLog(ImporterTypeEnum node_type) {
  Batch batch;
  const bool completed = Completes([&] {
    LogSelection selection;
    if (ChooseLogs(node_type, selection)) ImportSelected(node_type, selection, batch);
  });
  if (!completed) batch.CutShort();
  return batch.Result();
}

// False when nothing was chosen.
bool CIOManager::ChooseLogs(ImporterTypeEnum node_type, LogSelection& selection) {
  const CResourceHandle resources;
  CImportFileDialog dialog(true, CString(), CString(),
                           CFileDialog::kAllowMultiSelect | CFileDialog::kFileMustExist | CFileDialog::kHideReadOnly,
                           GetLogFilter(node_type));
  dialog.SetTitle("选择日志文件"_gbk);
  dialog.SetNameBufferSize(kNameBufferBytes);
  const CString recent = g_systemConfig->GetRecentLogFile(0);
  if (!recent.IsEmpty()) dialog.SetInitialFolder(FolderOf(recent));
  while (dialog.DoModal() != kIdOk) {
    if (!dialog.IsNameBufferTooSmall()) return false;
    ShowMessageBox("选择文件个数过多，请减少文件个数后重试!"_gbk, MessageIcon::kWarning);
  }
  const std::vector<CString>& picked = dialog.GetPathList();
  selection.paths = FoundPaths(picked);
  if (selection.paths.size() < picked.size()) Report({.path = picked[selection.paths.size()]});
  selection.settings = dialog.GetIESettings();
  selection.binning = dialog.GetBinningSetting();
  return !selection.paths.empty();
}

void CIOManager::ImportSelected(ImporterTypeEnum node_type, LogSelection& selection, Batch& batch) {
  g_handset_question.ResetFlags();
  const HandsetQuestion::Batch question_batch(g_handset_question);
  const std::set<CString> present_titles = PresentTitles();
  for (const CString& path : selection.paths) {
    if (!IsTitleFree(path, present_titles)) continue;
    batch.Add(ImportUnderNode(node_type, path, selection.settings, selection.binning, true), path);
  }
  if (selection.settings.empty() || batch.imported().GetLogFileNum() == 0) return;
  batch.imported().SetParamSetting(selection.settings);
  g_project->AddImpSetting(batch.imported());
}

// False when a log of the same title was there before the batch, which a message says.
bool CIOManager::IsTitleFree(const CString& path, const std::set<CString>& present_titles) {
  const CString title = TitleOf(path);
  if (!present_titles.contains(title)) return true;
  ShowMessageBox(Format("已导入同名日志文件:%s !"_gbk, title), MessageIcon::kWarning);
  Report({.path = path, .result = kImportAlreadyPresent});
  return false;
}

int CIOManager::OpenImmediateLogFile(std::vector<CString>& paths) {
  Completes([&] {
    const std::set<CString> present_titles = PresentTitles();
    for (const CString& path : paths) {
      if (!IsTitleFree(path, present_titles)) continue;
      LogOutcome outcome{.path = path};
      CIntermediateFileImporter importer(communicator_);
      Completes([&] { importer.Import(path, &outcome.logfile); });
      outcome.version = importer.FileVersion().value_or(kUnreadableVersion);
      const bool has_streams = outcome.logfile != nullptr && !outcome.logfile->GetStreams().empty();
      outcome.result = has_streams ? kImportDone : kImportFailed;
      Report(outcome);
    }
  });
  return kImportDone;
}

int CIOManager::ImportLogByName(const CString& path) {
  if (path.IsEmpty()) return kBatchNothing;
  Batch batch;
  const bool completed = Completes([&] {
    struct_BinningSetting binning;
    batch.Add(ImportUnderNode(kImporterIndoorLog, path, {}, binning, true), path);
  });
  if (!completed) batch.CutShort();
  return batch.Result();
}

int CIOManager::OpenLog(const CString& path, bool node_check) {
  int result = kImportFailed;
  const bool completed = Completes([&] {
    const ImpIESettings settings = g_project->GetImpSettingByLogFile(path);
    struct_BinningSetting binning;
    g_project->GetBinningSetting(path, binning);
    result = ImportUnderNode(kImporterNone, path, settings, binning, node_check);
    if (result == kImportDone || result == kImportAlreadyPresent) return;
    g_project->RemoveLogFile(path);
    g_project->modified = 1;
  });
  return completed ? result : kImportFailed;
}

int CIOManager::OpenRecentLog(CString path) {
  int result = kImportFailed;
  const bool completed = Completes([&] {
    if (!FileExists(path)) {
      ShowMessageBox("未找到文件，请检查文件是否存在！"_gbk, MessageIcon::kWarning);
      g_project->RemoveLogFile(path);
      return Report({.path = path});
    }
    const CString indoor_folder = JoinPath(g_project->GetPath(), kIndoorFolder);
    const CString outdoor_folder = JoinPath(g_project->GetPath(), kOutdoorFolder);
    if (IsForeignIndoorLog(path, indoor_folder, outdoor_folder)) path = CopyIntoProject(path, indoor_folder);
    g_handset_question.ResetFlags();
    struct_BinningSetting binning;
    g_project->GetBinningSetting(path, binning);
    result = ImportUnderNode(kImporterNone, path, {}, binning, false);
    if (result == kImportFailed) g_project->RemoveLogFile(path);
  });
  return completed ? result : kImportFailed;
}

int CIOManager::ImportUnderNode(ImporterTypeEnum node_type, const CString& path, const ImpIESettings& settings,
                                struct_BinningSetting& binning, bool node_check) {
  import_node_type_ = node_type;
  return OpenLogFile(path, settings, binning, node_check);
}

}  // namespace loom
