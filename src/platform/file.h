#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/cstring.h"
#include "platform/error.h"

// Files by their GBK paths. Everything that fails throws FileError with path, position and reason.
namespace loom {

// An open file of the operating system.
class FileHandle {
 public:
  FileHandle() = default;
  explicit FileHandle(int descriptor) : descriptor_(descriptor) {}
  FileHandle(FileHandle&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileHandle& operator=(FileHandle&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~FileHandle();
  int get() const { return descriptor_; }
  bool IsOpen() const { return descriptor_ >= 0; }
  int Close();  // 0 or an errno value

 private:
  int descriptor_ = -1;
};

// FileError for an errno value.
FileError SystemFileError(const CString& path, std::uint64_t position_bytes, const std::string& what, int error_number);

// A regular file opened for reading at any position.
class InputFile {
 public:
  explicit InputFile(const CString& path);

  const CString& path() const { return path_; }
  std::uint64_t Size() const { return size_; }  // when it was opened
  // Fills `out` from `position_bytes` on. A file that ends before (it was cut meanwhile) is an error.
  void ReadAt(std::uint64_t position_bytes, std::span<std::byte> out) const;
  // As much of `out` as the file still has; returns the number of bytes.
  std::size_t ReadUpTo(std::uint64_t position_bytes, std::span<std::byte> out) const;
  // Tells the system that reading goes forward.
  void ExpectSequentialReading() const;
  // An error when somebody has written to the file since it was opened.
  void RequireUnchanged() const;

 private:
  CString path_;
  FileHandle handle_;
  std::uint64_t size_ = 0;
  std::int64_t changed_ns_ = 0;  // when it was written last, as of the opening
};

// Writes a file that is complete or absent: the bytes go into a file beside the target, which Commit() syncs and
// renames over it. Without Commit() nothing of it stays. A target that is a folder or a device is refused; a link is
// followed.
class AtomicFile {
 public:
  explicit AtomicFile(const CString& path);
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;
  ~AtomicFile();

  const CString& path() const { return path_; }
  void Write(std::span<const std::byte> bytes);
  void Write(std::string_view bytes);
  // Replaces bytes that were written before.
  void Overwrite(std::uint64_t position_bytes, std::span<const std::byte> bytes);
  std::uint64_t Position() const { return written_ + buffer_.size(); }  // bytes written so far
  void Commit();

 private:
  void Flush();
  void WriteOut(std::span<const std::byte> bytes);
  void Discard();

  CString path_;
  std::string target_;     // native, links resolved
  std::string temporary_;  // native; empty once it was renamed or removed
  FileHandle handle_;
  std::vector<std::byte> buffer_;
  std::uint64_t written_ = 0;
};

// A file without a name in the folder of another, for what is written and read back; gone with the object.
class ScratchFile {
 public:
  explicit ScratchFile(const CString& beside);  // `beside` names it in errors
  std::uint64_t Size() const { return size_; }
  void Append(std::span<const std::byte> bytes);
  void ReadAt(std::uint64_t position_bytes, std::span<std::byte> out) const;

 private:
  CString path_;
  FileHandle handle_;
  std::uint64_t size_ = 0;
};

bool FileExists(const CString& path);                 // anything of that name, folders included
bool FolderExists(const CString& path);               // links to folders included
void CreateFolder(const CString& path);               // with the folders above it; one that exists is fine
void CreateOneFolder(const CString& path);            // in a folder that is there
bool IsSameFile(const CString& a, const CString& b);  // by whatever names; false unless both are there
void RemoveFile(const CString& path);                 // a missing one is fine
void CopyFile(const CString& from, const CString& to);
std::vector<std::byte> ReadWholeFile(const CString& path);
std::string ReadWholeText(const CString& path);
void WriteWholeFile(const CString& path, std::string_view bytes);

}  // namespace loom
