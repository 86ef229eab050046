#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <queue>
#include <span>
#include <vector>

namespace loom::recordings {

// Holds coded records back until nothing earlier is to be expected, and gives them out in the order of their times;
// those of one time in the order in which they came. Holds at most kMostBytes, then the earliest ones have to go.
class RecordWindow {
 public:
  static constexpr std::size_t kMostBytes = 64U << 20;

  struct Record {
    std::int64_t time_ns = 0;
    std::span<std::byte> payload;  // valid until the next call
  };

  // Room for the payload of a record, which the caller fills before the next call.
  std::byte* Put(std::int64_t time_ns, std::size_t payload_bytes);
  // The earliest record, when it is not later than `until_ns` or room is needed.
  std::optional<Record> Take(std::int64_t until_ns);

 private:
  static constexpr std::size_t kChunkBytes = 1U << 20;

  struct Entry {
    std::int64_t time_ns;
    std::uint64_t number;
    std::uint64_t chunk;
    std::uint32_t offset;
    std::uint32_t bytes;
    friend bool operator>(const Entry& a, const Entry& b) {
      return a.time_ns != b.time_ns ? a.time_ns > b.time_ns : a.number > b.number;
    }
  };
  struct Chunk {
    std::unique_ptr<std::byte[]> bytes;
    std::size_t size = 0;
    std::size_t used = 0;
    std::size_t entries = 0;
  };

  Entry Store(std::int64_t time_ns, std::size_t payload_bytes);
  void Release(const Entry& entry);
  bool HasRun() const { return run_begin_ < run_.size(); }
  bool TakesFromRun() const;
  void PopRun();

  std::vector<Entry> run_;  // rising; those in front of run_begin_ are gone
  std::size_t run_begin_ = 0;
  std::priority_queue<Entry, std::vector<Entry>, std::greater<>> strays_;
  std::deque<Chunk> chunks_;
  std::uint64_t first_chunk_ = 0;  // number of the front one
  std::uint64_t next_number_ = 0;
  std::size_t held_bytes_ = 0;
  std::optional<Entry> given_;
  std::unique_ptr<std::byte[]> spare_;
};

}  // namespace loom::recordings
