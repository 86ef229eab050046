#pragma once

#include <cstddef>
#include <span>

namespace loom::AUTOTEST {

// A raw message. Borrows its bytes from whoever made the record.
class CAutoBuffer {
 public:
  CAutoBuffer() = default;
  explicit CAutoBuffer(std::span<const std::byte> bytes) : bytes_(bytes) {}

  // Bytes from `offset` on; null when there are none.
  const char* GetBuffer(int offset) const {
    const bool inside = offset >= 0 && static_cast<std::size_t>(offset) < bytes_.size();
    return inside ? reinterpret_cast<const char*>(bytes_.data()) + offset : nullptr;
  }
  int GetBufferLen() const { return static_cast<int>(bytes_.size()); }
  std::span<const std::byte> bytes() const { return bytes_; }

 private:
  std::span<const std::byte> bytes_;
};

}  // namespace loom::AUTOTEST
