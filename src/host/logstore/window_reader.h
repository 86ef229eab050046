#pragma once

#include <cstddef>
#include <cstdint>

#include "host/logstore/log_reader.h"
#include "host/logstore/time_index.h"

namespace loom {

// Times of records from `start_ns` up to but not `end_ns`, since 1970, local clock.
struct TimeWindow {
  std::int64_t start_ns = 0;
  std::int64_t end_ns = 0;

  bool Holds(std::int64_t time_ns) const { return time_ns >= start_ns && time_ns < end_ns; }
};

// The records of a window in their order, read from the stretches of the log's index that may hold them.
class WindowReader {
 public:
  // `reader` and `index` stay with their owner; the reader has read nothing yet. Throws FormatError as Next.
  WindowReader(LogReader& reader, const TimeIndex& index, const TimeWindow& window);

  // False behind the last one. Throws FormatError, with position and reason, when the log is not what the index says;
  // then nothing that was read counts. Throws Interrupted.
  bool Next(LogPacket& packet);

 private:
  bool EnterStretch();
  void CheckRecord(const LogPacket& packet) const;
  void LeaveStretch() const;
  std::uint64_t EndOf(std::size_t stretch) const;

  LogReader& reader_;
  const TimeIndex& index_;
  TimeWindow window_;
  std::size_t next_stretch_ = 0;
  LogStretch stretch_;  // the one that is read
  std::uint32_t left_ = 0;
  std::uint64_t expected_bytes_ = 0;  // position of the next record
};

}  // namespace loom
