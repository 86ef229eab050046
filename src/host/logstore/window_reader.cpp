#include "host/logstore/window_reader.h"

#include <string>

#include "platform/interrupt.h"

namespace loom {

WindowReader::WindowReader(LogReader& reader, const TimeIndex& index, const TimeWindow& window)
    : reader_(reader), index_(index), window_(window) {
  LogPacket packet;
  const std::uint64_t first_bytes = index.stretches.front().position_bytes;
  if (!reader_.Next(packet) || packet.position_bytes != first_bytes)
    throw FormatError(first_bytes, "the log's first record does not stand here");
}

std::uint64_t WindowReader::EndOf(std::size_t stretch) const {
  return stretch + 1 < index_.stretches.size() ? index_.stretches[stretch + 1].position_bytes : index_.end_bytes;
}

// Goes to the next stretch that may hold records of the window.
bool WindowReader::EnterStretch() {
  for (; next_stretch_ < index_.stretches.size(); ++next_stretch_) {
    stretch_ = index_.stretches[next_stretch_];
    if (stretch_.latest_ns < window_.start_ns || stretch_.earliest_ns >= window_.end_ns) continue;
    ++next_stretch_;
    left_ = stretch_.record_count;
    expected_bytes_ = stretch_.position_bytes;
    reader_.ContinueAt(expected_bytes_);
    return true;
  }
  return false;
}

void WindowReader::LeaveStretch() const {
  if (expected_bytes_ != EndOf(next_stretch_ - 1))
    throw FormatError(expected_bytes_,
                      "a stretch has more bytes than its " + std::to_string(stretch_.record_count) + " records");
}

void WindowReader::CheckRecord(const LogPacket& packet) const {
  if (packet.position_bytes != expected_bytes_) throw FormatError(expected_bytes_, "no record stands here");
  if (packet.time_ns < stretch_.earliest_ns || packet.time_ns > stretch_.latest_ns)
    throw FormatError(expected_bytes_, "a record's time is not among those of its stretch");
}

bool WindowReader::Next(LogPacket& packet) {
  for (;; StopIfInterrupted()) {
    if (left_ == 0 && !EnterStretch()) return false;
    if (!reader_.Next(packet)) throw FormatError(expected_bytes_, "the log ends before its index says so");
    CheckRecord(packet);
    expected_bytes_ += packet.block.size();
    if (--left_ == 0) LeaveStretch();
    if (window_.Holds(packet.time_ns)) return true;
  }
}

}  // namespace loom
