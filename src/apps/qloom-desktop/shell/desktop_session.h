#pragma once

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "host/application.h"
#include "manager/io_manager.h"
#include "platform/notes.h"

namespace loom {

// The open project with its host and the facade: what the main window works on.
class DesktopSession {
 public:
  // Starts with an empty temporary project. Throws Error when the catalogue cannot be used.
  DesktopSession(const CString& config_folder, const CString& recent_logs_file);
  ~DesktopSession();

  HostApplication& host() { return *host_; }
  StoredProject& project() { return host_->project(); }
  CIOManager& manager() { return *manager_; }
  Notes& notes() { return notes_; }

  // Throws Error when the file is no usable project.
  void CheckProject(const CString& path) const;
  // What was imported goes; opening throws Error. A project that another process holds, or that cannot be written, is
  // opened for reading: project().ReadOnlyReason() says why.
  void NewProject();
  void OpenProject(const CString& path);
  // Imports again everything that the project lists; what cannot be opened leaves the list.
  void ReopenLogs();
  // Both throw Error when the file cannot be written, Save() also for a project that is open for reading.
  void Save();
  void SaveAs(const CString& path);
  bool IsModified() { return project().modified != 0; }

  void SetLogListener(LogListener listener) { listener_ = std::move(listener); }

  // The logs that are loaded, and the project node that a log hangs under.
  std::vector<ILogfile*> LoadedLogs() const;
  ImporterTypeEnum NodeOf(const ILogfile& logfile) const;
  void RemoveLog(const CString& path);

  // Which commands this build has.
  bool HasTextImport() { return manager_->GetImporterByType(kImporterText) != nullptr; }
  bool HasNetworkImport() { return manager_->GetImporterByType(kImporterNetInfo) != nullptr; }
  bool HasTextExport() { return manager_->GetExporterByType(kExporterText) != nullptr; }
  bool HasExcelExport() { return manager_->GetExporterByType(kExporterExcel) != nullptr; }

 private:
  void Start(const CString& project_path);
  void Remember(const LogOutcome& outcome);

  CString config_folder_;
  CString recent_logs_file_;
  Notes notes_;
  NotesScope notes_scope_;
  std::unique_ptr<HostApplication> host_;
  std::unique_ptr<CIOManager> manager_;
  LogListener listener_;
  std::map<CString, ImporterTypeEnum> types_;  // of logs by their path
};

}  // namespace loom
