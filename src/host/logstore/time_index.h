#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/byte_reader.h"
#include "platform/file.h"

namespace loom {

// Records that follow each other in a log, nothing between them. Times are since 1970, local clock.
struct LogStretch {
  std::uint64_t position_bytes = 0;  // of the first one's block
  std::int64_t earliest_ns = 0;
  std::int64_t latest_ns = 0;
  std::uint32_t record_count = 0;
};

// Which times lie where in a log: stretches in file order that hold all of its records.
struct TimeIndex {
  std::vector<LogStretch> stretches;
  std::uint64_t end_bytes = 0;  // behind the last stretch
};

// Makes the index of a log while it is written. A stretch ends with the first record that makes it reach
// `stretch_bytes`; when there would be more than kMostStretches, two of them become one, and new ones twice as long.
class TimeIndexBuilder {
 public:
  static constexpr std::uint64_t kStretchBytes = 1U << 20;
  static constexpr std::size_t kMostStretches = 1U << 15;

  explicit TimeIndexBuilder(std::uint64_t stretch_bytes = kStretchBytes) : stretch_bytes_(stretch_bytes) {}

  void Add(std::uint64_t position_bytes, std::int64_t time_ns) {
    if (stretches_.empty() || position_bytes - stretches_.back().position_bytes >= stretch_bytes_) [[unlikely]]
      Begin(position_bytes, time_ns);
    LogStretch& stretch = stretches_.back();
    stretch.earliest_ns = std::min(stretch.earliest_ns, time_ns);
    stretch.latest_ns = std::max(stretch.latest_ns, time_ns);
    ++stretch.record_count;
  }

  // An index of one stretch tells nothing.
  bool IsWorthWriting() const { return stretches_.size() > 1; }
  std::size_t BlockBytes() const;
  // The body of the index's block for a log of that size.
  void WriteBody(ByteWriter& block, std::uint64_t file_size_bytes) const;

 private:
  void Begin(std::uint64_t position_bytes, std::int64_t time_ns);

  std::uint64_t stretch_bytes_;
  std::vector<LogStretch> stretches_;
};

// The index at the end of a log whose statements about file size, positions and times fit together; nothing where there
// is none, or, with a note, where it is not to be believed. That the records are where it says shows when they are
// read.
std::optional<TimeIndex> ReadTimeIndex(const InputFile& file);

}  // namespace loom
