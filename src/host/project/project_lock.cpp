#include "host/project/project_lock.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <ctime>
#include <filesystem>

#include "platform/encoding.h"
#include "platform/log.h"
#include "platform/replace_file.h"

namespace loom {
namespace {

constexpr std::size_t kMostHolderBytes = 400;
// Behind everything that is ever written: where locks also keep readers out, the text in front stays readable.
constexpr off_t kLockedByte = 1 << 30;

std::string LockPathOf(const CString& project_path) {
  const std::filesystem::path target = ResolveLinks(GbkPathToNative(project_path));
  std::error_code failure;
  const auto folder = std::filesystem::weakly_canonical(std::filesystem::absolute(target).parent_path(), failure);
  return (failure ? target : folder / target.filename()).native() + ".lock";
}

std::string ThisProcess() {
  char host[HOST_NAME_MAX + 1] = "";
  gethostname(host, HOST_NAME_MAX);
  char time_text[32] = "";
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  if (localtime_r(&now, &local) != nullptr) std::strftime(time_text, sizeof time_text, "%Y-%m-%d %H:%M:%S", &local);
  return std::string(program_invocation_short_name) + " (process " + std::to_string(getpid()) + " on " + host +
         ", since " + time_text + ")";
}

// What the holder has written; control characters, which would reach a terminal, end it.
std::string HolderIn(const FileHandle& lock_file) {
  std::string text(kMostHolderBytes, '\0');
  const ssize_t count = pread(lock_file.get(), text.data(), text.size(), 0);
  text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
  std::size_t length = 0;
  while (length < text.size() && static_cast<unsigned char>(text[length]) >= ' ' && text[length] != '\x7F') ++length;
  text.resize(length);
  return text.empty() ? "another process" : text;
}

bool IsSameInode(const struct stat& a, const struct stat& b) { return a.st_dev == b.st_dev && a.st_ino == b.st_ino; }

// Whether the file is still the one that its name stands for. The name is opened, since file servers are asked anew
// then, and not for its attributes.
bool StandsAt(const FileHandle& lock_file, const std::string& native_path) {
  const FileHandle named(open(native_path.c_str(), O_RDONLY | O_CLOEXEC));
  struct stat locked {
  }, there{};
  return named.IsOpen() && fstat(lock_file.get(), &locked) == 0 && fstat(named.get(), &there) == 0 &&
         IsSameInode(locked, there);
}

// Whoever may write into the folder may take the lock that another user's process left behind.
void ShareWithFolder(const FileHandle& lock_file, const std::string& native_path) {
  struct stat folder {};
  if (stat(std::filesystem::path(native_path).parent_path().c_str(), &folder) != 0) return;
  const mode_t mode = 0644 | (folder.st_mode & S_IWGRP) | (folder.st_mode & S_IWOTH);
  if (fchmod(lock_file.get(), mode) != 0) Log(LogLevel::kDebug, native_path + ": cannot set its permissions");
}

}  // namespace

ProjectInUse::ProjectInUse(const CString& project_path, std::string holder_)
    : Error(GbkToUtf8(project_path) + ": is in use by " + holder_), holder(std::move(holder_)) {}

ProjectLock::ProjectLock(std::string native_path, FileHandle handle)
    : native_path_(std::move(native_path)), handle_(std::move(handle)) {
  const std::string text = ThisProcess() + '\n';
  if (ftruncate(handle_.get(), 0) != 0 || pwrite(handle_.get(), text.data(), text.size(), 0) < 0)
    Log(LogLevel::kDebug, native_path_ + ": the holder could not be written");  // the lock holds all the same
}

std::unique_ptr<ProjectLock> ProjectLock::TryTake(const CString& project_path, std::string& holder) {
  const std::string native = LockPathOf(project_path);
  for (;;) {
    FileHandle file(open(native.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
    const bool is_new = file.IsOpen();
    if (!is_new && errno == EEXIST) {
      file = FileHandle(open(native.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW));
      if (!file.IsOpen() && errno == ENOENT) continue;  // released meanwhile
    }
    if (!file.IsOpen()) throw SystemFileError(NativePathToGbk(native), 0, "cannot open the lock of the project", errno);
    if (is_new) ShareWithFolder(file, native);
    struct flock range {};
    range.l_type = F_WRLCK;
    range.l_whence = SEEK_SET;
    range.l_start = kLockedByte;
    range.l_len = 1;
    // Locks of the open file, not of the process: opening and closing the file elsewhere in it does not lose them.
    if (fcntl(file.get(), F_OFD_SETLK, &range) != 0) {
      if (errno != EAGAIN && errno != EACCES && errno != EINTR)
        throw SystemFileError(NativePathToGbk(native), 0, "cannot lock the project", errno);
      holder = HolderIn(file);
      return nullptr;
    }
    if (StandsAt(file, native)) return std::unique_ptr<ProjectLock>(new ProjectLock(native, std::move(file)));
  }
}

// Removed before it is released: who waits for this file finds that it no longer stands there.
ProjectLock::~ProjectLock() {
  if (StandsAt(handle_, native_path_) && unlink(native_path_.c_str()) != 0)
    Log(LogLevel::kDebug, native_path_ + ": cannot be removed");
}

bool ProjectLock::IsOf(const CString& project_path) const { return LockPathOf(project_path) == native_path_; }

}  // namespace loom
