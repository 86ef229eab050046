#include "platform/error.h"

#include "platform/encoding.h"

namespace loom {

FileError::FileError(const CString& path, std::uint64_t position_bytes, const std::string& reason)
    : Error(GbkNameToUtf8(path) + (position_bytes > 0 ? " at byte " + std::to_string(position_bytes) : std::string()) +
            ": " + reason),
      path_(path),
      position_bytes_(position_bytes),
      reason_(reason) {}

}  // namespace loom
