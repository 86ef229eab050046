#include "host/project/project_journal.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "platform/encoding.h"
#include "platform/log.h"
#include "platform/path.h"

namespace loom {
namespace {

constexpr const char* kEnding = ".journal";
constexpr const char* kUntitled = "untitled-";

CString UntitledPath(const CString& folder) {
  return JoinPath(folder, kUntitled + CString(std::to_string(getpid())) + kEnding);
}

std::unique_ptr<ProjectLock> LockOf(const CString& path) {
  std::string holder;
  return ProjectLock::TryTake(path, holder);
}

}  // namespace

ProjectJournal::ProjectJournal(StoredProject& project, const CString& state_folder) : project_(project) {
  if (!project.IsTemporary()) {
    if (project.ReadOnlyReason().empty()) path_ = project.FilePath() + kEnding;
  } else if (!state_folder.IsEmpty()) {
    path_ = UntitledPath(state_folder);
  }
}

ProjectJournal::~ProjectJournal() {
  try {
    Remove();
  } catch (const Error& error) {
    Log(LogLevel::kWarning, error.what());
  }
}

void ProjectJournal::Keep() {
  if (path_.IsEmpty()) return;
  if (!project_.HasChanged()) return Remove();
  const std::size_t stamp = project_.ChangeStamp();
  if (stamp == kept_) return;
  if (project_.IsTemporary() && !lock_) lock_ = LockOf(path_);
  WriteWholeFile(path_, project_.Image());
  kept_ = stamp;
}

void ProjectJournal::Remove() {
  if (!kept_) return;
  Discard(path_);
  lock_.reset();
  kept_.reset();
}

void ProjectJournal::Abandon() {
  lock_.reset();
  kept_.reset();
}

CString ProjectJournal::LeftBehind(const CString& project_path) {
  const CString path = project_path + kEnding;
  return FileExists(path) ? path : CString();
}

std::vector<CString> ProjectJournal::LeftUntitled(const CString& state_folder) {
  std::vector<std::pair<std::filesystem::file_time_type, CString>> found;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(GbkPathToNative(state_folder), error)) {
    const std::string name = entry.path().filename().native();
    const CString path = NativePathToGbk(entry.path().native());
    if (name.starts_with(kUntitled) && name.ends_with(kEnding) && LockOf(path))
      found.emplace_back(entry.last_write_time(error), path);
  }
  std::ranges::sort(found, {}, [](const auto& journal) { return journal.first; });
  std::vector<CString> journals;
  for (const auto& [time, path] : found) journals.push_back(path);
  return journals;
}

void ProjectJournal::Discard(const CString& journal) { std::filesystem::remove(GbkPathToNative(journal)); }

}  // namespace loom
