#include "apps/qloom-desktop/shell/desktop_session.h"

#include <algorithm>

#include "apps/text_files/text_file_import.h"
#include "components/stream_manager.h"
#include "host/project/kept_entries.h"
#include "host/project/text_sources.h"
#include "platform/file.h"
#include "platform/path.h"

namespace loom {
namespace {

constexpr const char* kRecentLogs = "recent-logs";

}  // namespace

DesktopSession::DesktopSession(const CString& config_folder, const CString& state_folder)
    : config_folder_(config_folder),
      state_folder_(state_folder),
      recent_logs_file_(state_folder.IsEmpty() ? CString() : JoinPath(state_folder, kRecentLogs)),
      notes_scope_(notes_) {
  Start({}, {});
}

DesktopSession::~DesktopSession() = default;

void DesktopSession::Start(const CString& project_path, const CString& journal) {
  journal_.reset();
  manager_.reset();
  host_.reset();
  types_.clear();
  removals_.clear();
  host_ =
      std::make_unique<HostApplication>(HostOptions{.config_folder = config_folder_,
                                                    .project_path = project_path,
                                                    .recent_logs_path = recent_logs_file_,
                                                    .project_access = {.mode = ProjectAccess::Mode::kWriteIfPossible},
                                                    .journal_path = journal});
  manager_ = std::make_unique<CIOManager>();
  manager_->RegisterModuleCommunicator(&host_->communicator());
  manager_->SetLogListener([this](const LogOutcome& outcome) { Remember(outcome); });
  journal_ = std::make_unique<ProjectJournal>(project(), state_folder_);
  if (journal.IsEmpty()) return;
  journal_->Keep();
  if (journal_->path() != journal) ProjectJournal::Discard(journal);
}

void DesktopSession::NewProject(const CString& journal) { Start({}, journal); }

void DesktopSession::CheckProject(const CString& path) const {
  StoredProject::Open(host_->catalogue(), path, {.mode = ProjectAccess::Mode::kRead});
}

void DesktopSession::OpenProject(const CString& path, const CString& journal) { Start(path, journal); }

void DesktopSession::OpenLog(const CString& path) {
  KeepingEntries(project(), [&] { manager_->OpenLog(path, false); });
}

void DesktopSession::OpenText(const CString& name) {
  KeepingEntries(project(), [&] {
    RefreshConvertedText(project(), name);
    manager_->OpenTxt(name);
    RestoreProtocol(project(), name);
  });
}

bool DesktopSession::IsListed(const CString& entry) {
  return IsText(entry) || project().GetNTLog()->GetProjectLogFileByPath(entry) != nullptr;
}

// An intermediate file is loaded without being listed.
void DesktopSession::OpenEntry(const CString& entry) {
  if (IsText(entry)) return OpenText(entry);
  if (IsListed(entry)) return OpenLog(entry);
  std::vector<CString> files{entry};
  manager_->OpenImmediateLogFile(files);
}

std::vector<CString> DesktopSession::ReopenEverything(const GoesOn& goes_on) {
  std::vector<CString> entries;
  for (const CProjectLogfile& log : project().Content().logs) entries.push_back(log.GetLogFilePath());
  if (HasTextImport()) {
    for (const CProjectTxtFile& text : project().Content().text_files) entries.push_back(text.GetTxtName());
  }
  std::vector<CString> missing;
  for (std::size_t at = 0; at < entries.size(); ++at) {
    if (!goes_on(static_cast<int>(at) + 1, static_cast<int>(entries.size()))) break;
    if (FileExists(entries[at]) || FindTextSource(project(), entries[at]))
      OpenEntry(entries[at]);
    else
      missing.push_back(entries[at]);
  }
  return missing;
}

void DesktopSession::Save() {
  project().Save();
  journal_->Remove();
}

void DesktopSession::SaveAs(const CString& path) {
  project().SaveAs(path);
  journal_ = std::make_unique<ProjectJournal>(project(), state_folder_);
}

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

ImporterTypeEnum DesktopSession::NodeOf(const CProjectLogfile& unloaded) {
  const bool is_indoor = std::ranges::any_of(unloaded.GetStreams(), [](const auto& stream) {
    return stream.second.GetStreamType() == Format("%d", std::int32_t{kStreamIndoorHandset});
  });
  return is_indoor ? kImporterIndoorLog : kImporterOutdoorLog;
}

void DesktopSession::Remove(const std::vector<CString>& entries) {
  IStreamManager& streams = *CStreamManagerCreator::CreateStreamManager();
  Removal removal{.before = project().Content(), .entries = entries, .loaded = {}};
  for (const CString& entry : entries) {
    if (streams.FindLogfile(entry) != nullptr) {
      removal.loaded.push_back(entry);
      streams.DropLogfile(entry);
    }
    if (IsText(entry))
      project().RemoveTxtFile(entry);
    else
      project().RemoveLogFile(entry);
  }
  removals_.push_back(std::move(removal));
}

void DesktopSession::PutBack() {
  if (removals_.empty()) return;
  const Removal removal = std::move(removals_.back());
  removals_.pop_back();
  project().PutBack(removal.before, [&](const CString& path) { return std::ranges::count(removal.entries, path) > 0; });
  for (const CString& entry : removal.loaded) OpenEntry(entry);
}

}  // namespace loom
