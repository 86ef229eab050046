#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <vector>

namespace loom {

// Memory for very many small objects that are given back together: single pieces are never freed, all of it is when the
// object goes. The system is asked for many pages at once before they are used: being interrupted for each of them
// takes longer than filling it.
class BulkMemory final : public std::pmr::memory_resource {
 public:
  BulkMemory() = default;
  BulkMemory(const BulkMemory&) = delete;
  BulkMemory& operator=(const BulkMemory&) = delete;
  ~BulkMemory() override;

 private:
  struct Block {
    std::byte* start;
    std::size_t bytes;
  };

  // Throws std::bad_alloc.
  void* do_allocate(std::size_t bytes, std::size_t alignment) override {
    for (;; MakeReady(std::max<std::size_t>(bytes, 1))) {
      const std::size_t gap = -reinterpret_cast<std::uintptr_t>(next_) & (alignment - 1);
      const auto left = static_cast<std::size_t>(ready_end_ - next_);
      if (left < gap || left - gap < bytes || next_ == nullptr) continue;
      std::byte* const start = next_ + gap;
      next_ = start + bytes;
      return start;
    }
  }
  void do_deallocate(void*, std::size_t, std::size_t) override {}
  bool do_is_equal(const memory_resource& other) const noexcept override { return this == &other; }
  void MakeReady(std::size_t bytes);

  std::byte* next_ = nullptr;  // what is free of the newest block
  std::byte* ready_end_ = nullptr;
  std::byte* end_ = nullptr;
  std::vector<Block> blocks_;
};

}  // namespace loom
