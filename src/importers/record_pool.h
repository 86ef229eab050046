#pragma once

#include <cstddef>
#include <memory>
#include <memory_resource>
#include <vector>

#include "components/records/testdata.h"

namespace loom {

// The importers' record: its blocks, lists and texts live in the arena of its pool block.
class LogRecord final : public CTestdataBase {
 public:
  explicit LogRecord(std::pmr::memory_resource* record_arena) : CTestdataBase(false, 0) { arena = record_arena; }
};

// Hands out fresh records, 100 to a block. A block shares one arena and goes at once, without a free per record; its
// storage serves the next block.
class RecordPool {
 public:
  static constexpr std::size_t kBlockSize = 100;

  RecordPool() { records_.reserve(kBlockSize); }
  RecordPool(const RecordPool&) = delete;
  RecordPool& operator=(const RecordPool&) = delete;

  // Valid until Release. A full block is released first.
  LogRecord& Next() {
    if (IsBlockUsedUp()) Release();
    return records_.emplace_back(&arena_);
  }
  bool IsBlockUsedUp() const { return records_.size() == kBlockSize; }
  void Release() {
    records_.clear();
    arena_.release();
  }

 private:
  // Room for 100 records of about 10 kB each; what exceeds it comes from the heap.
  static constexpr std::size_t kArenaBytes = std::size_t{1} << 20;

  std::unique_ptr<std::byte[]> storage_ = std::make_unique_for_overwrite<std::byte[]>(kArenaBytes);
  std::pmr::monotonic_buffer_resource arena_{storage_.get(), kArenaBytes};
  std::vector<LogRecord> records_;
};

}  // namespace loom
