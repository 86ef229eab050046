#include "platform/replace_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/path.h"

namespace loom {

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
  if (rename(GbkPathToNative(path).c_str(), GbkPathToNative(target).c_str()) != 0)
    throw SystemFileError(target, 0, "cannot replace", errno);
  const CString folder = FolderOf(target);
  SyncFolder(target, folder.IsEmpty() ? "./" : GbkPathToNative(folder));
}

}  // namespace loom
