#include "host/project/stored_project.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "host/project/project_file.h"
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

}  // namespace

CString AbsoluteFolderOf(const CString& file_path) {
  const std::filesystem::path absolute = std::filesystem::current_path() / GbkPathToNative(file_path);
  return NativePathToGbk(absolute.lexically_normal().parent_path().native());
}

StoredProject::StoredProject(const IECatalogue& catalogue, const CString& folder)
    : catalogue_(catalogue), folder_(folder), database_(NewProjectDatabase()) {}

StoredProject::StoredProject(const IECatalogue& catalogue, const CString& path, Database database)
    : catalogue_(catalogue),
      path_(path),
      folder_(AbsoluteFolderOf(path)),
      database_(std::move(database)),
      content_(ReadContent(path, database_)) {
  for (auto log = content_.logs.begin(); log != content_.logs.end(); ++log) log_by_path_[log->GetLogFilePath()] = log;
}

std::unique_ptr<StoredProject> StoredProject::Open(const IECatalogue& catalogue, const CString& path) {
  Database database = FileExists(path) ? ReadProjectFile(path) : NewProjectDatabase();
  return std::unique_ptr<StoredProject>(new StoredProject(catalogue, path, std::move(database)));
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
  SaveAs(path_);
}

void StoredProject::SaveAs(const CString& path) {
  Transaction transaction(database_);
  WriteProjectContent(database_, content_);
  transaction.Commit();
  WriteProjectFile(path, database_);
  path_ = path;
  folder_ = AbsoluteFolderOf(path);
  modified = 0;
}

}  // namespace loom
