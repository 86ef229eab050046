#pragma once

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "host/application.h"
#include "host/project/project_journal.h"
#include "manager/io_manager.h"
#include "platform/notes.h"

namespace loom {

// The open project with its host and the facade: what the main window works on.
class DesktopSession {
 public:
  // Starts with an empty temporary project. The recent logs and journals are kept in the state folder; nowhere when
  // that is empty. Throws Error when the catalogue cannot be used.
  DesktopSession(const CString& config_folder, const CString& state_folder);
  ~DesktopSession();

  HostApplication& host() { return *host_; }
  StoredProject& project() { return host_->project(); }
  CIOManager& manager() { return *manager_; }
  Notes& notes() { return notes_; }

  // Throws Error when the file is no usable project.
  void CheckProject(const CString& path) const;
  // What was imported goes; opening throws Error. A project that another process holds, or that cannot be written, is
  // opened for reading: project().ReadOnlyReason() says why. With a journal the content is that one's.
  void NewProject(const CString& journal = {});
  void OpenProject(const CString& path, const CString& journal = {});
  // Imports again everything that the project lists and that is there. Before each, `goes_on` hears its place and how
  // many there are. Gives what is not there. Whatever it comes to, the list stays as it is, settings included.
  using GoesOn = std::function<bool(int part, int parts)>;
  std::vector<CString> ReopenEverything(const GoesOn& goes_on);
  void OpenLog(const CString& path);
  void OpenText(const CString& name);
  // Both throw Error when the file cannot be written, Save() also for a project that is open for reading.
  void Save();
  void SaveAs(const CString& path);
  bool IsModified() { return project().HasChanged(); }

  void SetLogListener(LogListener listener) { listener_ = std::move(listener); }

  // The logs that are loaded, and the project node that a log hangs under.
  std::vector<ILogfile*> LoadedLogs() const;
  ImporterTypeEnum NodeOf(const ILogfile& logfile) const;
  static ImporterTypeEnum NodeOf(const CProjectLogfile& unloaded);

  // Logs by their paths and texts by their names leave the project, with their streams, until they are put back; then
  // those that were loaded are opened again. What was removed last is put back first.
  void Remove(const std::vector<CString>& entries);
  bool CanPutBack() const { return !removals_.empty(); }
  void PutBack();

  // What was done since the last save, in a file beside the project or for an untitled one among the user's own.
  ProjectJournal& journal() { return *journal_; }
  const CString& state_folder() const { return state_folder_; }

  // Which commands this build has.
  bool HasTextImport() { return manager_->GetImporterByType(kImporterText) != nullptr; }
  bool HasNetworkImport() { return manager_->GetImporterByType(kImporterNetInfo) != nullptr; }
  bool HasTextExport() { return manager_->GetExporterByType(kExporterText) != nullptr; }
  bool HasExcelExport() { return manager_->GetExporterByType(kExporterExcel) != nullptr; }

 private:
  struct Removal {
    ProjectContent before;
    std::vector<CString> entries;
    std::vector<CString> loaded;
  };
  void Start(const CString& project_path, const CString& journal);
  void Remember(const LogOutcome& outcome);
  bool IsText(const CString& name) { return project().GetProjectTxtFileByName(name) != nullptr; }
  bool IsListed(const CString& entry);
  void OpenEntry(const CString& entry);

  CString config_folder_;
  CString state_folder_;
  CString recent_logs_file_;
  Notes notes_;
  NotesScope notes_scope_;
  std::unique_ptr<HostApplication> host_;
  std::unique_ptr<CIOManager> manager_;
  LogListener listener_;
  std::map<CString, ImporterTypeEnum> types_;  // of logs by their path
  std::vector<Removal> removals_;
  std::unique_ptr<ProjectJournal> journal_;
};

}  // namespace loom
