#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/cstring.h"
#include "platform/file.h"

namespace loom {

// Mapped views begin at multiples of this.
std::uint32_t AllocationGranularity();

// A part of a FileMap in memory, unmapped on destruction. Writing to it writes the file.
class FileMapView {
 public:
  FileMapView(FileMapView&& other) noexcept : bytes_(std::exchange(other.bytes_, {})) {}
  FileMapView& operator=(FileMapView&& other) noexcept {
    std::swap(bytes_, other.bytes_);
    return *this;
  }
  ~FileMapView();
  std::span<std::byte> bytes() const { return bytes_; }

 private:
  friend class FileMap;
  explicit FileMapView(std::span<std::byte> bytes) : bytes_(bytes) {}
  std::span<std::byte> bytes_;
};

// A file of fixed size whose content is written through mapped views.
class FileMap {
 public:
  // Makes the file, replacing one that exists, and reserves its blocks so that a full disk shows here instead of as a
  // signal while a view is written. A size of 0 is refused. Throws FileError; the file is gone then.
  FileMap(const CString& path, std::uint64_t size_bytes);

  const CString& path() const { return path_; }
  std::uint64_t Size() const { return size_bytes_; }
  // `offset_bytes` is a multiple of AllocationGranularity(); the view lies within the file. Throws FileError.
  FileMapView Map(std::uint64_t offset_bytes, std::size_t length_bytes) const;
  // Writes everything to disk and closes; throws FileError when that fails. Destruction closes without syncing.
  void Close();

 private:
  CString path_;
  FileHandle handle_;
  std::uint64_t size_bytes_;
};

// Makes sure of a file that can be opened for reading and writing: an empty one when there is none. Content that is
// there stays as it is. Throws FileError.
void MakeMappable(const CString& path);

}  // namespace loom
