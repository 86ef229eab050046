#include "platform/file_map.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>

#include "platform/encoding.h"

namespace loom {

std::uint32_t AllocationGranularity() {
  static const auto granularity = static_cast<std::uint32_t>(sysconf(_SC_PAGESIZE));
  return granularity;
}

FileMapView::~FileMapView() {
  if (!bytes_.empty()) munmap(bytes_.data(), bytes_.size());
}

FileMap::FileMap(const CString& path, std::uint64_t size_bytes) : path_(path), size_bytes_(size_bytes) {
  if (size_bytes == 0) throw FileError(path, 0, "an empty file cannot be mapped");
  const std::string native = GbkPathToNative(path);
  handle_ = FileHandle(open(native.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
  if (!handle_.IsOpen()) throw SystemFileError(path, 0, "cannot create", errno);
  if (const int error = posix_fallocate(handle_.get(), 0, static_cast<off_t>(size_bytes))) {
    handle_.Close();
    unlink(native.c_str());
    throw SystemFileError(path, 0, "cannot reserve " + std::to_string(size_bytes) + " bytes", error);
  }
}

FileMapView FileMap::Map(std::uint64_t offset_bytes, std::size_t length_bytes) const {
  if (length_bytes == 0 || offset_bytes > size_bytes_ || length_bytes > size_bytes_ - offset_bytes)
    throw FileError(path_, offset_bytes, "a view of " + std::to_string(length_bytes) + " bytes is not within the file");
  void* const start =
      mmap(nullptr, length_bytes, PROT_READ | PROT_WRITE, MAP_SHARED, handle_.get(), static_cast<off_t>(offset_bytes));
  if (start == MAP_FAILED) throw SystemFileError(path_, offset_bytes, "cannot map", errno);
  return FileMapView({static_cast<std::byte*>(start), length_bytes});
}

void FileMap::Close() {
  if (!handle_.IsOpen()) return;
  const int sync_error = fsync(handle_.get()) == 0 ? 0 : errno;
  const int close_error = handle_.Close();
  if (sync_error) throw SystemFileError(path_, 0, "cannot sync", sync_error);
  if (close_error) throw SystemFileError(path_, 0, "cannot close", close_error);
}

void MakeMappable(const CString& path) {
  const FileHandle handle(open(GbkPathToNative(path).c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0666));
  if (!handle.IsOpen()) throw SystemFileError(path, 0, "cannot open for reading and writing", errno);
}

}  // namespace loom
