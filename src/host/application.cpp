#include "host/application.h"

#include <stdexcept>

#include "host/communicator/module_communicator.h"
#include "host/host_folders.h"
#include "host/netdb/db_mapper.h"
#include "host/netdb/network_database.h"
#include "host/project/recent_logs.h"
#include "host/streams/stream_store.h"
#include "host/workbook/workbook_server.h"

namespace loom {

CProject* g_project = nullptr;
CProject* g_sysProject = nullptr;
CMemDataType* g_memDataType = nullptr;
CSystemConfig* g_systemConfig = nullptr;

namespace {

class CatalogueTypes final : public CMemDataType {
 public:
  explicit CatalogueTypes(const IECatalogue& catalogue) : catalogue_(catalogue) {}
  MemTableFieldTypeEnum GetType(std::int32_t ie_id) const override { return catalogue_.TypeOf(ie_id); }

 private:
  const IECatalogue& catalogue_;
};

// A log is recorded as recent when a batch has imported it: with every element, unless the batch stores its selection
// behind that. A log that is opened again is not recorded, and keeps the selection that it was opened with.
class RecordedLogs final : public CSystemConfig {
 public:
  RecordedLogs(StoredProject& project, std::unique_ptr<RecentLogs> recent)
      : project_(project), recent_(std::move(recent)) {}
  CString GetRecentLogFile(std::int32_t index) const override { return recent_->GetRecentLogFile(index); }
  void SetRecentLogFile(const CString& path) override {
    project_.DropImpSetting(path);
    recent_->SetRecentLogFile(path);
  }

 private:
  StoredProject& project_;
  std::unique_ptr<RecentLogs> recent_;
};

}  // namespace

HostApplication::HostApplication(const HostOptions& options)
    : HostApplication(IECatalogue::Load(options.config_folder), options) {}

HostApplication::HostApplication(IECatalogue catalogue, const HostOptions& options) : catalogue_(std::move(catalogue)) {
  if (g_project != nullptr) throw std::logic_error("another application runs in this process");
  project_ = options.project_path.IsEmpty()
                 ? std::make_unique<StoredProject>(catalogue_, AbsoluteFolderOf(""))
                 : StoredProject::Open(catalogue_, options.project_path, options.project_access);
  if (!options.journal_path.IsEmpty()) project_->TakeContentOf(options.journal_path);
  system_project_ = std::make_unique<StoredProject>(catalogue_, options.config_folder);
  data_types_ = std::make_unique<CatalogueTypes>(catalogue_);
  auto recent = options.recent_logs_path.IsEmpty() ? std::make_unique<RecentLogs>(project_->RecentLogs())
                                                   : std::make_unique<RecentLogs>(options.recent_logs_path);
  system_config_ = std::make_unique<RecordedLogs>(*project_, std::move(recent));
  network_ = std::make_unique<NetworkDatabase>(project_->WorkingCopy());
  communicator_ = std::make_unique<ModuleCommunicator>(StreamStore::Instance());
  workbooks_ = std::make_unique<WorkbookServer>(project_->GetPath());
  DBMapper::Instance().Use(network_.get());
  SetChosenConfigFolder(options.config_folder);
  g_project = project_.get();
  g_sysProject = system_project_.get();
  g_memDataType = data_types_.get();
  g_systemConfig = system_config_.get();
}

HostApplication::~HostApplication() {
  StreamStore::Instance().DropEverything();
  DBMapper::Instance().Use(nullptr);
  SetChosenConfigFolder({});
  g_project = nullptr;
  g_sysProject = nullptr;
  g_memDataType = nullptr;
  g_systemConfig = nullptr;
}

void HostApplication::UseFolderOfLog(const CString& log_path) {
  if (!project_->IsTemporary()) return;
  project_->SetFolder(AbsoluteFolderOf(log_path));
  workbooks_->UseFolder(project_->GetPath());
}

}  // namespace loom
