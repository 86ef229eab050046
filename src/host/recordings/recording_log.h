#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "components/records/testdata.h"
#include "host/logstore/log_writer.h"
#include "host/recordings/findings.h"
#include "host/recordings/record_window.h"
#include "host/recordings/track.h"

namespace loom::recordings {

// Where a packet stands.
struct PacketPlace {
  const CString* file = nullptr;
  std::uint64_t position_bytes = 0;
};

// The log that recordings become: gives records their place, time and number, and writes them in the order of their
// times.
class RecordingLog {
 public:
  struct Options {
    CString path;
    std::optional<std::int32_t> utc_offset_s;  // of local time; nothing: that of TZ when the log begins
    std::optional<std::int64_t> from_ns;       // records of before and of `until_ns` and behind are left out
    std::optional<std::int64_t> until_ns;
  };

  RecordingLog(Options options, const Track& track, Findings& findings);

  // Before the first record: the time of the earliest packet.
  void Begin(std::int64_t time_ns);
  // Header fields of the record beyond its kind, device and message are filled here.
  void Put(CTestdataBase& record, std::int64_t time_ns, const PacketPlace& place);
  // From now on nothing is expected that is more than a minute earlier than `time_ns`.
  void Advance(std::int64_t time_ns);
  // False, with no file written, when there is no record.
  bool Finish();
  const std::map<std::int32_t, std::uint64_t>& records() const { return records_; }  // by kind
  bool HasPositions() const { return has_positions_; }
  std::int64_t FirstNs() const { return first_ns_; }  // of the records' times
  std::int64_t LastNs() const { return last_ns_; }

 private:
  void Write(const RecordWindow::Record& record);
  void WriteUntil(std::int64_t until_ns);
  void Open(std::int64_t local_ns);

  Options options_;
  const Track& track_;
  Findings& findings_;
  RecordWindow window_;
  std::unique_ptr<LogWriter> log_;
  std::int64_t offset_ns_ = 0;    // local time less UTC
  std::int64_t midnight_ns_ = 0;  // of the day that coded times count from, local
  std::int64_t shift_s_ = 0;      // from there to the day of the log
  std::int64_t written_until_ns_ = INT64_MIN;
  std::int32_t next_id_ = 1;
  bool has_positions_ = false;
  std::int64_t first_ns_ = INT64_MAX;
  std::int64_t last_ns_ = INT64_MIN;
  std::map<std::int32_t, std::uint64_t> records_;
  std::pair<const std::int32_t, std::uint64_t>* counted_ = nullptr;  // the one that counted last
};

// Local time less UTC at a moment, by TZ; seconds.
std::int32_t UtcOffsetOf(std::int64_t time_s);

}  // namespace loom::recordings
