#include "host/project/stored_project.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "platform/encoding.h"
#include "platform/file.h"

namespace loom {
namespace {

ProjectContent ReadContent(const CString& path, Database& database) {
  try {
    return ReadProjectContent(database);
  } catch (const FormatError& error) {
    throw FileError(path, 0, std::string("the project file is damaged: ") + error.what());
  } catch (const DatabaseError& error) {
    throw FileError(path, 0, std::string("the project file is damaged: ") + error.what());
  }
}

auto FindText(const std::list<CProjectTxtFile>& files, const CString& name) {
  return std::find_if(files.begin(), files.end(),
                      [&](const CProjectTxtFile& file) { return file.GetTxtName() == name; });
}

// What opening a file came to: the project is held, or there is a reason why it is only read.
struct Holding {
  std::unique_ptr<ProjectLock> lock = nullptr;
  std::string read_only_reason = {};
};

std::unique_ptr<ProjectLock> WaitForLock(const CString& path, const ProjectAccess& access) {
  for (std::string holder;;) {
    if (auto lock = ProjectLock::TryTake(path, holder)) return lock;
    const ProjectInUse in_use(path, holder);
    if (access.mode != ProjectAccess::Mode::kWrite || !access.wait) throw in_use;
    access.wait(in_use);
  }
}

Holding Hold(const CString& path, const ProjectAccess& access) {
  if (access.mode == ProjectAccess::Mode::kRead) return {.read_only_reason = "it is open for reading"};
  try {
    RequireWritableProject(path);
    return {.lock = WaitForLock(path, access)};
  } catch (const ProjectInUse& in_use) {
    if (access.mode == ProjectAccess::Mode::kWrite) throw;
    return {.read_only_reason = "in use by " + in_use.holder};
  } catch (const FileError& error) {
    if (access.mode == ProjectAccess::Mode::kWrite) throw;
    return {.read_only_reason = error.reason()};
  }
}

}  // namespace

CString AbsoluteFolderOf(const CString& file_path) {
  const std::filesystem::path absolute = std::filesystem::current_path() / GbkPathToNative(file_path);
  return NativePathToGbk(absolute.lexically_normal().parent_path().native());
}

StoredProject::StoredProject(const IECatalogue& catalogue, const CString& folder)
    : catalogue_(catalogue), folder_(folder), database_(NewProjectDatabase()) {
  CountAsUnchanged();
}

StoredProject::StoredProject(const IECatalogue& catalogue, const CString& path, ProjectFile file)
    : catalogue_(catalogue),
      path_(path),
      folder_(AbsoluteFolderOf(path)),
      stamp_(file.stamp),
      database_(std::move(file.database)),
      content_(ReadContent(path, database_)) {
  IndexLogs();
  CountAsUnchanged();
}

void StoredProject::IndexLogs() {
  log_by_path_.clear();
  for (auto log = content_.logs.begin(); log != content_.logs.end(); ++log) log_by_path_[log->GetLogFilePath()] = log;
}

void StoredProject::CountAsUnchanged() {
  unchanged_content_ = ProjectContentStamp(content_);
  unchanged_count_ = database_.ChangeCount();
  modified = 0;
}

std::size_t StoredProject::ChangeStamp() const {
  return ProjectContentStamp(content_) + static_cast<std::size_t>(database_.ChangeCount() - unchanged_count_);
}

std::string StoredProject::Image() {
  const std::int64_t before = database_.ChangeCount();
  Transaction transaction(database_);
  WriteProjectContent(database_, content_);
  transaction.Commit();
  unchanged_count_ += database_.ChangeCount() - before;
  return database_.Image();
}

void StoredProject::TakeContentOf(const CString& path) {
  ProjectFile file = ReadProjectFile(path);
  ProjectContent content = ReadContent(path, file.database);
  database_ = std::move(file.database);
  content_ = std::move(content);
  IndexLogs();
  unchanged_count_ = -1;
}

bool StoredProject::HasChanged() const {
  return database_.ChangeCount() != unchanged_count_ || ProjectContentStamp(content_) != unchanged_content_;
}

void StoredProject::PutBack(const ProjectContent& earlier, const std::function<bool(const CString&)>& wanted) {
  PutBackEntries(content_, earlier, wanted);
  IndexLogs();
}

std::unique_ptr<StoredProject> StoredProject::Open(const IECatalogue& catalogue, const CString& path,
                                                   const ProjectAccess& access) {
  Holding holding = Hold(path, access);
  std::unique_ptr<StoredProject> project(new StoredProject(catalogue, path, ReadProjectFile(path)));
  project->lock_ = std::move(holding.lock);
  project->read_only_reason_ = std::move(holding.read_only_reason);
  return project;
}

std::int32_t StoredProject::GetIEID(const CString& name) const {
  const CIEEntry* const entry = catalogue_.FindByName(name);
  return entry != nullptr ? entry->id : kInvalidInt;
}

CString StoredProject::GetIEName(std::int32_t id) const {
  const CIEEntry* const entry = catalogue_.Find(id);
  return entry != nullptr ? entry->name : CString();
}

CString StoredProject::GetIEUnitByIEName(const CString& name) const {
  const CIEEntry* const entry = catalogue_.FindByName(name);
  return entry != nullptr ? entry->unit : CString();
}

bool StoredProject::GetIEValueRangeByName(const CString& name, double& maximum, double& minimum) const {
  const CIEEntry* const entry = catalogue_.FindByName(name);
  if (entry == nullptr || !entry->has_range) return false;
  maximum = entry->maximum;
  minimum = entry->minimum;
  return true;
}

void StoredProject::AddProjectLogFile(const CProjectLogfile& log) {
  const auto found = log_by_path_.find(log.GetLogFilePath());
  if (found != log_by_path_.end()) {
    *found->second = log;
  } else {
    log_by_path_[log.GetLogFilePath()] = content_.logs.insert(content_.logs.end(), log);
  }
}

void StoredProject::RemoveLogFile(const CString& path) {
  content_.binning.erase(path);
  RemoveFromImportSettings({path});
  const auto found = log_by_path_.find(path);
  if (found == log_by_path_.end()) return;
  content_.logs.erase(found->second);
  log_by_path_.erase(found);
}

const CProjectLogfile* StoredProject::GetProjectLogFileByPath(const CString& path) const {
  const auto found = log_by_path_.find(path);
  return found != log_by_path_.end() ? &*found->second : nullptr;
}

std::vector<const CProjectLogfile*> StoredProject::GetProjectLogFiles() const {
  std::vector<const CProjectLogfile*> logs;
  for (const CProjectLogfile& log : content_.logs) logs.push_back(&log);
  return logs;
}

void StoredProject::AddBinningSetting(const CString& name, const struct_BinningSetting& setting) {
  content_.binning.insert_or_assign(name, setting);
}

void StoredProject::GetBinningSetting(const CString& path, struct_BinningSetting& setting) const {
  const auto found = content_.binning.find(path);
  if (found != content_.binning.end()) setting = found->second;
}

void StoredProject::AddImpSetting(const CImportSetting& setting) {
  RemoveFromImportSettings(setting.GetLogFiles());
  content_.import_settings.push_back(setting);
}

void StoredProject::RemoveFromImportSettings(const std::vector<CString>& paths) {
  std::vector<CImportSetting> kept;
  for (const CImportSetting& batch : content_.import_settings) {
    CImportSetting rest;
    rest.SetParamSetting(batch.GetParamSetting());
    for (const CString& path : batch.GetLogFiles()) {
      if (std::find(paths.begin(), paths.end(), path) == paths.end()) rest.AddLogFile(path);
    }
    if (rest.GetLogFileNum() > 0) kept.push_back(std::move(rest));
  }
  content_.import_settings = std::move(kept);
}

ImpIESettings StoredProject::GetImpSettingByLogFile(const CString& path) const {
  for (const CImportSetting& batch : content_.import_settings) {
    const auto& paths = batch.GetLogFiles();
    if (std::find(paths.begin(), paths.end(), path) != paths.end()) return batch.GetParamSetting();
  }
  return {};
}

void StoredProject::AddTxtFile(const CProjectTxtFile& file) {
  auto& files = content_.text_files;
  const auto found = std::find_if(files.begin(), files.end(), [&](const CProjectTxtFile& other) {
    return other.GetTxtName() == file.GetTxtName();
  });
  if (found != files.end()) {
    *found = file;
  } else {
    files.push_back(file);
  }
}

void StoredProject::RemoveTxtFile(const CString& name) {
  const auto found = FindText(content_.text_files, name);
  if (found != content_.text_files.end()) content_.text_files.erase(found);
}

const CProjectTxtFile* StoredProject::GetProjectTxtFileByName(const CString& name) const {
  const auto found = FindText(content_.text_files, name);
  return found != content_.text_files.end() ? &*found : nullptr;
}

void StoredProject::Save() {
  if (IsTemporary()) throw std::logic_error("a temporary project has no file");
  if (!read_only_reason_.empty()) throw FileError(path_, 0, "is not saved: " + read_only_reason_);
  RequireFileThatWasRead();
  Write(path_);
}

void StoredProject::RequireFileThatWasRead() const {
  if (StampOfProjectFile(path_) != stamp_)
    throw FileError(path_, 0,
                    "is not the file that was read: another program has written or removed it meanwhile; it stays as "
                    "it is");
}

void StoredProject::SaveAs(const CString& path) {
  if (lock_ && lock_->IsOf(path)) return Save();
  std::string holder;
  std::unique_ptr<ProjectLock> lock = ProjectLock::TryTake(path, holder);
  if (!lock) throw ProjectInUse(path, holder);
  if (!IsTemporary() && lock->IsOf(path_)) RequireFileThatWasRead();
  Write(path);
  lock_ = std::move(lock);
  read_only_reason_.clear();
  path_ = path;
  folder_ = AbsoluteFolderOf(path);
}

void StoredProject::Write(const CString& path) {
  Transaction transaction(database_);
  WriteProjectContent(database_, content_);
  transaction.Commit();
  stamp_ = WriteProjectFile(path, database_);
  CountAsUnchanged();
}

}  // namespace loom
