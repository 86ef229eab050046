#pragma once

#include <memory>

#include "host/catalogue/catalogue.h"
#include "host/project/stored_project.h"
#include "platform/cstring.h"

namespace loom {

class IModuleCommunicator;
class NetworkDatabase;
class WorkbookServer;

struct HostOptions {
  CString config_folder;     // of the catalogue files
  CString project_path;      // *.qlp, made by the first Save() when missing; empty = a temporary project
  CString recent_logs_path;  // file of the user's that remembers recent logs; empty = the project remembers them
  ProjectAccess project_access = {};
  CString journal_path = {};  // project file whose content is that of the project, changed; empty: none
};

// The host of the module: opens catalogue and project and installs g_project, g_sysProject, g_memDataType,
// g_systemConfig and the database mapper's tables. One at a time; its destructor drops every log, stream and pointer,
// so that a process may have several one after the other. Unsaved changes are dropped too.
class HostApplication {
 public:
  // Throws Error when the catalogue or the project cannot be used; nothing is installed then.
  explicit HostApplication(const HostOptions& options);
  HostApplication(IECatalogue catalogue, const HostOptions& options);
  ~HostApplication();
  HostApplication(const HostApplication&) = delete;
  HostApplication& operator=(const HostApplication&) = delete;

  StoredProject& project() { return *project_; }
  const IECatalogue& catalogue() const { return catalogue_; }
  NetworkDatabase& network() { return *network_; }
  // The spreadsheet server; workbooks go into the project's folder unless it is told otherwise.
  WorkbookServer& workbooks() { return *workbooks_; }
  // For CIOManager::RegisterModuleCommunicator.
  IModuleCommunicator& communicator() { return *communicator_; }

  // A temporary project lives in the folder of the log that is worked on; others stay where their file is.
  void UseFolderOfLog(const CString& log_path);

 private:
  const IECatalogue catalogue_;
  std::unique_ptr<StoredProject> project_;
  std::unique_ptr<StoredProject> system_project_;
  std::unique_ptr<CMemDataType> data_types_;
  std::unique_ptr<CSystemConfig> system_config_;
  std::unique_ptr<NetworkDatabase> network_;
  std::unique_ptr<IModuleCommunicator> communicator_;
  std::unique_ptr<WorkbookServer> workbooks_;
};

}  // namespace loom
