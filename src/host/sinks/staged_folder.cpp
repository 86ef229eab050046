#include "host/sinks/staged_folder.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/log.h"
#include "platform/path.h"
#include "platform/replace_file.h"

namespace loom {

StagedFolder::StagedFolder(const CString& beside)
    : folder_(FolderOf(beside)), native_(folder_.IsEmpty() ? "./" : GbkPathToNative(folder_)) {
  std::string name = native_ + ".qloom-XXXXXX";
  if (mkdtemp(name.data()) == nullptr) throw SystemFileError(beside, 0, "cannot create a folder beside it", errno);
  staged_ = name + "/";
}

StagedFolder::~StagedFolder() {
  std::error_code error;
  std::filesystem::remove_all(staged_, error);
  if (error) Log(LogLevel::kWarning, staged_ + ": a temporary folder could not be removed: " + error.message());
}

std::string StagedFolder::NativePath(const CString& name) const { return staged_ + GbkNameToNative(name); }

CString StagedFolder::TargetPath(const CString& name) const { return folder_ + name; }

std::vector<std::string> StagedFolder::NamesInside() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(staged_))
    names.push_back(entry.path().filename().native());
  std::ranges::sort(names);
  return names;
}

void StagedFolder::Sync(const std::string& name) const {
  const CString path = folder_ + NativeNameToGbk(name);
  FileHandle file(open((staged_ + name).c_str(), O_RDWR | O_CLOEXEC));
  if (!file.IsOpen()) throw SystemFileError(path, 0, "cannot open", errno);
  TakeOverPermissions(path, file.get(), ResolveLinks(native_ + name));
  int result;
  do result = fsync(file.get());
  while (result != 0 && errno == EINTR);
  if (result != 0) throw SystemFileError(path, 0, "cannot sync", errno);
  if (const int error = file.Close()) throw SystemFileError(path, 0, "cannot close", error);
}

void StagedFolder::Rename(const std::string& name) const {
  const CString path = folder_ + NativeNameToGbk(name);
  if (rename((staged_ + name).c_str(), ResolveLinks(native_ + name).c_str()) != 0)
    throw SystemFileError(path, 0, "cannot replace", errno);
}

void StagedFolder::Publish(std::span<const CString> last) {
  std::vector<std::string> names = NamesInside();
  for (const CString& name : last) {
    const auto found = std::ranges::find(names, GbkNameToNative(name));
    if (found == names.end()) throw FileError(TargetPath(name), 0, "was not written");
    std::rotate(found, found + 1, names.end());
  }
  for (const std::string& name : names) Sync(name);
  for (const std::string& name : names) Rename(name);
  SyncFolder(folder_, native_);
}

}  // namespace loom
