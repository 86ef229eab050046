#include "apps/qloom-desktop/shell/desktop_session.h"

#include "components/stream_manager.h"

namespace loom {

DesktopSession::DesktopSession(const CString& config_folder, const CString& recent_logs_file)
    : config_folder_(config_folder), recent_logs_file_(recent_logs_file), notes_scope_(notes_) {
  Start({});
}

DesktopSession::~DesktopSession() = default;

void DesktopSession::Start(const CString& project_path) {
  manager_.reset();
  host_.reset();
  types_.clear();
  host_ =
      std::make_unique<HostApplication>(HostOptions{.config_folder = config_folder_,
                                                    .project_path = project_path,
                                                    .recent_logs_path = recent_logs_file_,
                                                    .project_access = {.mode = ProjectAccess::Mode::kWriteIfPossible}});
  manager_ = std::make_unique<CIOManager>();
  manager_->RegisterModuleCommunicator(&host_->communicator());
  manager_->SetLogListener([this](const LogOutcome& outcome) { Remember(outcome); });
}

void DesktopSession::NewProject() { Start({}); }

void DesktopSession::CheckProject(const CString& path) const {
  StoredProject::Open(host_->catalogue(), path, {.mode = ProjectAccess::Mode::kRead});
}

void DesktopSession::OpenProject(const CString& path) { Start(path); }

void DesktopSession::ReopenLogs() {
  std::vector<CString> paths;
  for (const CProjectLogfile* log : g_project->GetNTLog()->GetProjectLogFiles()) paths.push_back(log->GetLogFilePath());
  for (const CString& path : paths) manager_->OpenLog(path, false);
  if (!HasTextImport()) return;
  std::vector<CString> names;
  for (const CProjectTxtFile& text : project().Content().text_files) names.push_back(text.GetTxtName());
  for (const CString& name : names) manager_->OpenTxt(name);
}

void DesktopSession::Save() { project().Save(); }

void DesktopSession::SaveAs(const CString& path) { project().SaveAs(path); }

void DesktopSession::Remember(const LogOutcome& outcome) {
  if (outcome.logfile) types_[outcome.logfile->GetName()] = outcome.type;
  if (listener_) listener_(outcome);
}

std::vector<ILogfile*> DesktopSession::LoadedLogs() const {
  std::map<CString, ILogfile*> by_name;
  CStreamManagerCreator::CreateStreamManager()->GetLogfileNames(by_name);
  std::vector<ILogfile*> logs;
  for (const auto& [name, logfile] : by_name) logs.push_back(logfile);
  return logs;
}

ImporterTypeEnum DesktopSession::NodeOf(const ILogfile& logfile) const {
  const auto type = types_.find(logfile.GetName());
  if (type != types_.end() && type->second == kImporterChinaMobileLog) return kImporterChinaMobileLog;
  return logfile.IsIndoor() ? kImporterIndoorLog : kImporterOutdoorLog;
}

void DesktopSession::RemoveLog(const CString& path) {
  CStreamManagerCreator::CreateStreamManager()->DropLogfile(path);
  project().RemoveLogFile(path);
  project().modified = 1;
}

}  // namespace loom
