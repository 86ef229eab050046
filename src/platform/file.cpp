#include "platform/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <filesystem>
#include <system_error>

#include "platform/byte_reader.h"
#include "platform/encoding.h"
#include "platform/log.h"
#include "platform/path.h"
#include "platform/replace_file.h"
#include "platform/time_units.h"

namespace loom {
namespace {

constexpr std::size_t kWriteBufferBytes = 256 * 1024;
constexpr std::size_t kCopyBlockBytes = 4 * 1024 * 1024;

// Runs a system call again while signals interrupt it.
template <class Call>
auto Retry(Call call) {
  decltype(call()) result;
  do result = call();
  while (result < 0 && errno == EINTR);
  return result;
}

std::string NativeFolderOf(const std::string& native) {
  const std::size_t slash = native.rfind('/');
  return slash == std::string::npos ? "./" : native.substr(0, slash + 1);
}

std::int64_t ChangeTime(const struct stat& info) { return info.st_mtim.tv_sec * kSecond_ns + info.st_mtim.tv_nsec; }

// Checked write at a position.
void WriteAt(const FileHandle& handle, const CString& path, std::uint64_t position_bytes,
             std::span<const std::byte> bytes) {
  while (!bytes.empty()) {
    const ssize_t count =
        Retry([&] { return pwrite(handle.get(), bytes.data(), bytes.size(), static_cast<off_t>(position_bytes)); });
    if (count < 0) throw SystemFileError(path, position_bytes, "cannot write", errno);
    position_bytes += static_cast<std::uint64_t>(count);
    bytes = bytes.subspan(static_cast<std::size_t>(count));
  }
}

}  // namespace

FileHandle::~FileHandle() { Close(); }

int FileHandle::Close() {
  if (!IsOpen()) return 0;
  return close(std::exchange(descriptor_, -1)) == 0 ? 0 : errno;
}

FileError SystemFileError(const CString& path, std::uint64_t position_bytes, const std::string& what,
                          int error_number) {
  return FileError(path, position_bytes, what + ": " + std::system_category().message(error_number));
}

InputFile::InputFile(const CString& path) : path_(path) {
  const std::string native = GbkPathToNative(path);
  // O_NONBLOCK: a pipe without a writer is refused below instead of being waited for.
  handle_ = FileHandle(Retry([&] { return open(native.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); }));
  if (!handle_.IsOpen()) throw SystemFileError(path, 0, "cannot open", errno);
  struct stat info {};
  if (fstat(handle_.get(), &info) != 0) throw SystemFileError(path, 0, "cannot get its size", errno);
  if (!S_ISREG(info.st_mode)) throw FileError(path, 0, S_ISDIR(info.st_mode) ? "is a folder" : "is not a regular file");
  size_ = static_cast<std::uint64_t>(info.st_size);
  changed_ns_ = ChangeTime(info);
}

void InputFile::RequireUnchanged() const {
  struct stat info {};
  if (fstat(handle_.get(), &info) != 0) throw SystemFileError(path_, 0, "cannot get its size", errno);
  if (static_cast<std::uint64_t>(info.st_size) != size_ || ChangeTime(info) != changed_ns_)
    throw FileError(path_, 0, "the file was written to while it was read");
}

std::size_t InputFile::ReadUpTo(std::uint64_t position_bytes, std::span<std::byte> out) const {
  std::size_t done = 0;
  while (done < out.size()) {
    const std::uint64_t at = position_bytes + done;
    if (at > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max())) break;
    const ssize_t got =
        Retry([&] { return pread(handle_.get(), out.data() + done, out.size() - done, static_cast<off_t>(at)); });
    if (got < 0) throw SystemFileError(path_, at, "cannot read", errno);
    if (got == 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

void InputFile::ReadAt(std::uint64_t position_bytes, std::span<std::byte> out) const {
  const std::size_t got = ReadUpTo(position_bytes, out);
  if (got == out.size()) return;
  const bool was_cut = position_bytes + out.size() <= size_;
  throw FileError(path_, position_bytes + got,
                  (was_cut ? "the file became shorter while it was read: " : "the file ends here: ") +
                      std::to_string(out.size() - got) + " more bytes expected");
}

void InputFile::ExpectSequentialReading() const { posix_fadvise(handle_.get(), 0, 0, POSIX_FADV_SEQUENTIAL); }

ScratchFile::ScratchFile(const CString& beside) : path_(beside) {
  std::string name = NativeFolderOf(ResolveLinks(GbkPathToNative(beside))) + ".qloom-XXXXXX";
  handle_ = FileHandle(mkostemp(name.data(), O_CLOEXEC));
  if (!handle_.IsOpen()) throw SystemFileError(beside, 0, "cannot create a file in its folder", errno);
  if (unlink(name.c_str()) != 0) throw SystemFileError(beside, 0, "a temporary file could not be removed", errno);
}

void ScratchFile::Append(std::span<const std::byte> bytes) {
  WriteAt(handle_, path_, size_, bytes);
  size_ += bytes.size();
}

void ScratchFile::ReadAt(std::uint64_t position_bytes, std::span<std::byte> out) const {
  while (!out.empty()) {
    const ssize_t got =
        Retry([&] { return pread(handle_.get(), out.data(), out.size(), static_cast<off_t>(position_bytes)); });
    if (got < 0) throw SystemFileError(path_, position_bytes, "cannot read", errno);
    if (got == 0) throw FileError(path_, position_bytes, "its temporary file ends here");
    position_bytes += static_cast<std::uint64_t>(got);
    out = out.subspan(static_cast<std::size_t>(got));
  }
}

AtomicFile::AtomicFile(const CString& path) : path_(path), target_(ResolveLinks(GbkPathToNative(path))) {
  if (NameOf(path).IsEmpty()) throw FileError(path, 0, "names no file");
  RequireReplaceable(path, target_);
  std::string name = NativeFolderOf(target_) + ".qloom-XXXXXX";
  handle_ = FileHandle(mkostemp(name.data(), O_CLOEXEC));
  if (!handle_.IsOpen()) throw SystemFileError(path, 0, "cannot create a file in its folder", errno);
  temporary_ = name;
  try {
    TakeOverPermissions(path, handle_.get(), target_);
  } catch (const FileError&) {
    Discard();
    throw;
  }
  buffer_.reserve(kWriteBufferBytes);
}

AtomicFile::~AtomicFile() { Discard(); }

void AtomicFile::Discard() {
  handle_.Close();
  if (temporary_.empty()) return;
  if (unlink(temporary_.c_str()) != 0)
    Log(LogLevel::kWarning, SystemFileError(path_, 0, "a temporary file could not be removed", errno).what());
  temporary_.clear();
}

void AtomicFile::Write(std::span<const std::byte> bytes) {
  if (buffer_.size() + bytes.size() > kWriteBufferBytes) Flush();
  if (bytes.size() >= kWriteBufferBytes)
    WriteOut(bytes);
  else
    buffer_.insert(buffer_.end(), bytes.begin(), bytes.end());
}

void AtomicFile::Write(std::string_view bytes) { Write(AsBytes(bytes)); }

void AtomicFile::Overwrite(std::uint64_t position_bytes, std::span<const std::byte> bytes) {
  if (position_bytes > Position() || bytes.size() > Position() - position_bytes)
    throw FileError(path_, position_bytes, "only what is written can be replaced");
  if (position_bytes >= written_) {
    std::copy(bytes.begin(), bytes.end(), buffer_.begin() + static_cast<std::ptrdiff_t>(position_bytes - written_));
    return;
  }
  if (position_bytes + bytes.size() > written_) Flush();
  WriteAt(handle_, path_, position_bytes, bytes);
}

void AtomicFile::Flush() {
  WriteOut(buffer_);
  buffer_.clear();
}

void AtomicFile::WriteOut(std::span<const std::byte> bytes) {
  while (!bytes.empty()) {
    const ssize_t count = Retry([&] { return write(handle_.get(), bytes.data(), bytes.size()); });
    if (count < 0) throw SystemFileError(path_, written_, "cannot write", errno);
    written_ += static_cast<std::uint64_t>(count);
    bytes = bytes.subspan(static_cast<std::size_t>(count));
  }
}

void AtomicFile::Commit() {
  Flush();
  if (Retry([&] { return fsync(handle_.get()); }) != 0) throw SystemFileError(path_, written_, "cannot sync", errno);
  if (const int error = handle_.Close()) throw SystemFileError(path_, written_, "cannot close", error);
  if (rename(temporary_.c_str(), target_.c_str()) != 0) throw SystemFileError(path_, 0, "cannot replace", errno);
  temporary_.clear();
  SyncFolder(path_, NativeFolderOf(target_));
}

bool FileExists(const CString& path) {
  struct stat info {};
  return stat(GbkPathToNative(path).c_str(), &info) == 0;
}

bool FolderExists(const CString& path) {
  struct stat info {};
  return stat(GbkPathToNative(path).c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

void CreateFolder(const CString& path) {
  std::error_code error;
  std::filesystem::create_directories(GbkPathToNative(path), error);
  if (error) throw FileError(path, 0, "cannot create the folder: " + error.message());
  if (!FolderExists(path)) throw FileError(path, 0, "is a file, a folder is needed");
}

void CreateOneFolder(const CString& path) {
  if (mkdir(GbkPathToNative(path).c_str(), 0777) != 0)
    throw SystemFileError(path, 0, "cannot create the folder", errno);
}

bool IsSameFile(const CString& a, const CString& b) {
  struct stat first {
  }, second{};
  return stat(GbkPathToNative(a).c_str(), &first) == 0 && stat(GbkPathToNative(b).c_str(), &second) == 0 &&
         first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

void RemoveFile(const CString& path) {
  if (unlink(GbkPathToNative(path).c_str()) != 0 && errno != ENOENT)
    throw SystemFileError(path, 0, "cannot remove", errno);
}

void CopyFile(const CString& from, const CString& to) {
  const InputFile source(from);
  AtomicFile target(to);
  std::vector<std::byte> block(std::min<std::uint64_t>(source.Size(), kCopyBlockBytes));
  for (std::uint64_t at = 0; at < source.Size();) {
    const std::span part(block.data(), std::min<std::uint64_t>(block.size(), source.Size() - at));
    source.ReadAt(at, part);
    target.Write(part);
    at += part.size();
  }
  target.Commit();
}

std::vector<std::byte> ReadWholeFile(const CString& path) {
  const InputFile file(path);
  std::vector<std::byte> bytes(file.Size());
  file.ReadAt(0, bytes);
  return bytes;
}

std::string ReadWholeText(const CString& path) {
  const InputFile file(path);
  std::string text(file.Size(), '\0');
  file.ReadAt(0, std::as_writable_bytes(std::span(text)));
  return text;
}

void WriteWholeFile(const CString& path, std::string_view bytes) {
  AtomicFile file(path);
  file.Write(bytes);
  file.Commit();
}

}  // namespace loom
