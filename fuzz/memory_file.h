#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "platform/cstring.h"

namespace loom {

// A file in memory with a path.
class MemoryFile {
 public:
  MemoryFile(const std::uint8_t* data, std::size_t size) : descriptor_(memfd_create("fuzz", MFD_CLOEXEC)) {
    if (descriptor_ < 0 || write(descriptor_, data, size) != static_cast<ssize_t>(size)) std::abort();
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile() { close(descriptor_); }
  CString Folder() const { return "/proc/self/fd/"; }
  CString Name() const { return CString(std::to_string(descriptor_)); }
  CString Path() const { return Folder() + Name(); }

 private:
  int descriptor_;
};

}  // namespace loom
