#include "platform/replace_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <system_error>

#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/path.h"

namespace loom {
namespace {

mode_t ModeOfNewFiles() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

// Permissions do not hold root back: a file that its owner may not write is protected from root, too.
void RequireWritable(const CString& path, const std::string& native, const struct stat& info) {
  if (geteuid() == 0) {
    if ((info.st_mode & S_IWUSR) == 0) throw FileError(path, 0, "is write-protected: its mode lets nobody write");
  } else if (faccessat(AT_FDCWD, native.c_str(), W_OK, AT_EACCESS) != 0) {
    throw SystemFileError(path, 0, "is write-protected", errno);
  }
}

// Before the mode, since a change of the owner takes bits of the mode away.
void TakeOverOwner(const CString& path, int descriptor, const struct stat& target) {
  struct stat info {};
  if (fstat(descriptor, &info) != 0) throw SystemFileError(path, 0, "cannot get the owner of the new file", errno);
  if (info.st_uid == target.st_uid && info.st_gid == target.st_gid) return;
  if (fchown(descriptor, target.st_uid, target.st_gid) != 0)
    throw SystemFileError(path, 0,
                          "is not replaced, its owner and group (" + std::to_string(target.st_uid) + ":" +
                              std::to_string(target.st_gid) + ") could not be kept",
                          errno);
}

}  // namespace

std::string ResolveLinks(const std::string& native) {
  const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(native.c_str(), nullptr), &std::free);
  if (resolved) return resolved.get();
  std::error_code failure;  // the file is new, or a link to one that is
  const std::filesystem::path target = std::filesystem::read_symlink(native, failure);
  return failure ? native : (std::filesystem::path(native).parent_path() / target).native();
}

void RequireReplaceable(const CString& path, const std::string& native_target) {
  struct stat info {};
  if (stat(native_target.c_str(), &info) != 0) return;
  if (S_ISDIR(info.st_mode)) throw FileError(path, 0, "is a folder");
  if (!S_ISREG(info.st_mode)) throw FileError(path, 0, "is not a regular file");
  RequireWritable(path, native_target, info);
}

void TakeOverPermissions(const CString& path, int descriptor, const std::string& native_target) {
  RequireReplaceable(path, native_target);
  struct stat info {};
  const bool replaces = stat(native_target.c_str(), &info) == 0;
  if (replaces) TakeOverOwner(path, descriptor, info);
  if (fchmod(descriptor, replaces ? info.st_mode & 07777 : ModeOfNewFiles()) != 0)
    throw SystemFileError(path, 0, "cannot set its permissions", errno);
}

void SyncFolder(const CString& path, const std::string& native_folder) {
  const FileHandle folder(open(native_folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder.IsOpen()) throw SystemFileError(path, 0, "cannot open its folder for syncing", errno);
  int result;
  do result = fsync(folder.get());
  while (result != 0 && errno == EINTR);
  // A file system that cannot sync folders says EINVAL; the rename is as durable there as it gets.
  if (result != 0 && errno != EINVAL) throw SystemFileError(path, 0, "cannot sync its folder", errno);
}

void ReplaceFile(const CString& path, const CString& target) {
  const std::string native = GbkPathToNative(path);
  const FileHandle written(open(native.c_str(), O_RDONLY | O_CLOEXEC));
  if (!written.IsOpen()) throw SystemFileError(path, 0, "cannot open", errno);
  TakeOverPermissions(target, written.get(), GbkPathToNative(target));
  if (rename(native.c_str(), GbkPathToNative(target).c_str()) != 0)
    throw SystemFileError(target, 0, "cannot replace", errno);
  const CString folder = FolderOf(target);
  SyncFolder(target, folder.IsEmpty() ? "./" : GbkPathToNative(folder));
}

}  // namespace loom
