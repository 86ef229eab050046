#include "platform/bulk_memory.h"

#include <sys/mman.h>

#include <algorithm>
#include <new>

namespace loom {
namespace {

constexpr std::size_t kFirstBlockBytes = 64 * 1024;  // blocks are multiples of that, each twice as long as the last
constexpr std::size_t kLargestBlockBytes = 512 * kFirstBlockBytes;  // unless a single piece needs more
constexpr std::size_t kReadyBytes = 4 * kFirstBlockBytes;
constexpr std::size_t kLargestPieceBytes = SIZE_MAX / 2;

std::size_t RoundedUp(std::size_t bytes) {
  return (bytes + kFirstBlockBytes - 1) / kFirstBlockBytes * kFirstBlockBytes;
}

}  // namespace

BulkMemory::~BulkMemory() {
  for (const Block& block : blocks_) munmap(block.start, block.bytes);
}

// Extends the part of the newest block that may be used by at least `bytes`; a new block when it has not that much
// left.
void BulkMemory::MakeReady(std::size_t bytes) {
  if (bytes > kLargestPieceBytes) throw std::bad_alloc();
  auto left = static_cast<std::size_t>(end_ - ready_end_);
  if (left < bytes) {
    const std::size_t usual =
        blocks_.empty() ? kFirstBlockBytes : std::min(2 * blocks_.back().bytes, kLargestBlockBytes);
    const std::size_t length = std::max(RoundedUp(bytes), usual);
    blocks_.reserve(blocks_.size() + 1);
    void* const mapped = mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) throw std::bad_alloc();
    next_ = ready_end_ = static_cast<std::byte*>(mapped);
    end_ = next_ + length;
    blocks_.push_back({next_, length});
    left = length;
  }
  const std::size_t step = std::min(left, RoundedUp(std::max(bytes, kReadyBytes)));
  madvise(ready_end_, step, MADV_POPULATE_WRITE);  // where it cannot, pages come one by one
  ready_end_ += step;
}

}  // namespace loom
