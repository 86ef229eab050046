#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "host/recordings/diag_reader.h"

namespace loom::recordings {

// A range of a recording whose times run forward, but for steps back of up to a minute.
struct ClockSegment {
  std::uint64_t begin_bytes = 0;
  std::uint64_t end_bytes = 0;
  std::int64_t first_ns = INT64_MAX;  // earliest time
};

// How the time stamps of one recording become times, found by a first pass over it.
class ClockMap {
 public:
  static constexpr std::size_t kMostSegments = 256;

  // `start_ns` is the time of the first packet of a recording without network time. Tells of clock steps and gaps.
  ClockMap(const InputFile& file, RecordingFormat format, std::optional<std::int64_t> start_ns, Findings& findings);

  // False when there are packets, but none of them knows the time.
  bool HasTime() const { return has_time_; }
  const std::vector<ClockSegment>& segments() const { return segments_; }
  // Nanoseconds since 1970, UTC, of a packet; `previous_ns` stands in for a stamp that is no time.
  std::int64_t TimeOf(std::uint64_t stamp, std::uint64_t position_bytes, std::int64_t previous_ns) const;

 private:
  // Packets whose stamps are from before network time.
  struct EarlyRun {
    std::uint64_t begin_bytes;
    std::uint64_t end_bytes;
    std::int64_t first_ns;
    std::int64_t earliest_ns;
    std::int64_t last_ns;
    std::int64_t shift_ns;
  };

  void Scan(const InputFile& file, RecordingFormat format, Findings& findings);
  void ScanFrames(const InputFile& file, Findings& findings);
  bool IsOrdinary(const DiagPacket& packet) const;
  void Take(const DiagPacket& packet, std::uint64_t position_bytes, Findings& findings);
  void TakeEarly(std::int64_t time_ns, std::uint64_t position_bytes);
  void TakeTime(const DiagPacket& packet, std::int64_t time_ns, std::uint64_t position_bytes, Findings& findings);
  void EndRun(std::int64_t shift_ns);
  void CloseLastRun(std::optional<std::int64_t> start_ns);
  const EarlyRun* RunAt(std::uint64_t position_bytes) const;

  const CString path_;
  std::vector<ClockSegment> segments_;
  std::vector<EarlyRun> runs_;
  bool run_is_open_ = false;
  bool has_time_ = true;
  std::optional<std::int64_t> last_ns_;              // of the packet before
  std::optional<std::int64_t> last_of_radio_ns_[9];  // by radio
  std::int64_t latest_ns_ = INT64_MIN;               // in the current segment
  std::uint64_t size_bytes_ = 0;
};

}  // namespace loom::recordings
