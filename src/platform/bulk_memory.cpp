#include "platform/bulk_memory.h"

#include <sys/mman.h>

#include <algorithm>
#include <new>

namespace loom {
namespace {

constexpr std::size_t kStepBytes = 256 * 1024;
constexpr std::size_t kBlockBytes = 128 * kStepBytes;
constexpr std::size_t kLargestPieceBytes = SIZE_MAX / 2;

std::size_t StepsFor(std::size_t bytes) { return (bytes + kStepBytes - 1) / kStepBytes * kStepBytes; }

}  // namespace

BulkMemory::~BulkMemory() {
  for (const Block& block : blocks_) munmap(block.start, block.bytes);
}

// Extends the part of the newest block that may be used by at least `bytes`; a new block when it has not that much
// left.
void BulkMemory::MakeReady(std::size_t bytes) {
  if (bytes > kLargestPieceBytes) throw std::bad_alloc();
  const std::size_t step = StepsFor(bytes);
  if (static_cast<std::size_t>(end_ - ready_end_) < step) {
    const std::size_t length = std::max(step, kBlockBytes);
    blocks_.reserve(blocks_.size() + 1);
    void* const mapped = mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) throw std::bad_alloc();
    next_ = ready_end_ = static_cast<std::byte*>(mapped);
    end_ = next_ + length;
    blocks_.push_back({next_, length});
  }
  madvise(ready_end_, step, MADV_POPULATE_WRITE);  // where it cannot, pages come one by one
  ready_end_ += step;
}

}  // namespace loom
