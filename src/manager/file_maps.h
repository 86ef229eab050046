#pragma once

#include <cstdint>
#include <string>

#include "platform/cstring.h"

namespace loom {

// Files of fixed size that are filled through mapped views, for callers that hold them as handles.
class FileMaps {
 public:
  void* Create(const CString& path, std::uint32_t size_bytes);  // null when the file cannot be made
  // Copies the bytes to an offset of the file and gives their number.
  std::uint32_t Write(void* mapping, std::uint32_t offset_bytes, const void* data, std::uint32_t length_bytes);
  void Close(void* mapping);  // null: nothing
  // What went wrong first while the newest file was filled and closed, UTF-8; empty when nothing did.
  const std::string& Failure() const { return failure_; }

 private:
  template <class Work>
  void Attempt(Work work);

  std::string failure_;
};

}  // namespace loom
