#include "host/recordings/clock_map.h"

#include <algorithm>
#include <iterator>

#include "host/recordings/frame_checksum.h"
#include "platform/interrupt.h"
#include "platform/time_units.h"

namespace loom::recordings {
namespace {

constexpr std::int64_t kToldClockStep_ns = 10 * kSecond_ns;
constexpr std::int64_t kNewSegmentStep_ns = 60 * kSecond_ns;
constexpr std::int64_t kOrdinaryStep_ns = 3'600 * kSecond_ns;
constexpr std::int64_t kToldGap_ns = 24 * 3'600 * kSecond_ns;
constexpr std::uint64_t kFramesBetweenLooks = 65'536;
constexpr std::size_t kMostRuns = 4'096;

std::string SecondsText(std::int64_t ns) { return std::to_string(ns / kSecond_ns) + " s"; }

}  // namespace

ClockMap::ClockMap(const InputFile& file, RecordingFormat format, std::optional<std::int64_t> start_ns,
                   Findings& findings)
    : path_(file.path()), size_bytes_(file.Size()) {
  segments_.push_back({0, size_bytes_, INT64_MAX});
  Scan(file, format, findings);
  CloseLastRun(start_ns);
  for (const EarlyRun& run : runs_)
    findings.Add(Finding::kBeforeNetworkTime, path_, run.begin_bytes, "moved by " + SecondsText(run.shift_ns));
}

void ClockMap::Scan(const InputFile& file, RecordingFormat format, Findings& findings) {
  if (format == RecordingFormat::kFrames) return ScanFrames(file, findings);
  Findings untold;  // the second pass tells
  DiagReader reader(file, format, 0, size_bytes_, untold);
  for (DiagPacket packet; reader.Next(packet);) Take(packet, reader.PacketPosition(), findings);
}

// Frames are checked only where their stamp says something new: the second pass checks all of them.
void ClockMap::ScanFrames(const InputFile& file, Findings& findings) {
  FrameCutter frames(file, 0, size_bytes_);
  std::vector<std::byte> scratch;
  std::uint64_t frames_seen = 0;
  for (CutFrame frame; frames.Next(frame);) {
    if (++frames_seen % kFramesBetweenLooks == 0) StopIfInterrupted();
    DiagPacket packet;
    if (!PeekFrame(frame.bytes, packet) || !frame.is_ended) continue;
    if (!IsOrdinary(packet)) {
      const auto bytes = Unescape(frame.bytes, scratch);
      if (!HasGoodChecksum(bytes) || ReadPayload(bytes.first(bytes.size() - 2), packet) != PayloadKind::kLogPacket)
        continue;
    }
    Take(packet, frame.position_bytes, findings);
  }
}

bool ClockMap::IsOrdinary(const DiagPacket& packet) const {
  if (!last_ns_ || run_is_open_ || KindOfStamp(packet.stamp) != StampKind::kTime) return false;
  const std::int64_t step_ns = NanosecondsOf(packet.stamp) - *last_ns_;
  return step_ns >= -kSecond_ns && step_ns <= kOrdinaryStep_ns;
}

void ClockMap::Take(const DiagPacket& packet, std::uint64_t position_bytes, Findings& findings) {
  switch (KindOfStamp(packet.stamp)) {
    case StampKind::kNoTime:
      return;
    case StampKind::kBeforeNetworkTime:
      return TakeEarly(NanosecondsOf(packet.stamp), position_bytes);
    case StampKind::kTime:
      TakeTime(packet, NanosecondsOf(packet.stamp), position_bytes, findings);
  }
}

void ClockMap::TakeEarly(std::int64_t time_ns, std::uint64_t position_bytes) {
  if (!run_is_open_) {
    if (runs_.size() < kMostRuns) runs_.push_back({position_bytes, size_bytes_, time_ns, time_ns, time_ns, 0});
    run_is_open_ = true;
  }
  runs_.back().last_ns = time_ns;
  runs_.back().earliest_ns = std::min(runs_.back().earliest_ns, time_ns);
}

// The packets of the run get their distance to the one that is the first to know the time.
void ClockMap::EndRun(std::int64_t shift_ns) {
  EarlyRun& run = runs_.back();
  run.shift_ns = shift_ns;
  run_is_open_ = false;
  segments_.back().first_ns = std::min(segments_.back().first_ns, run.earliest_ns + shift_ns);
}

void ClockMap::TakeTime(const DiagPacket& packet, std::int64_t time_ns, std::uint64_t position_bytes,
                        Findings& findings) {
  if (run_is_open_) {
    runs_.back().end_bytes = position_bytes;
    EndRun(time_ns - runs_.back().last_ns);
  }
  auto& last_of_radio = last_of_radio_ns_[packet.radio];
  if (last_of_radio && *last_of_radio - time_ns > kToldClockStep_ns)
    findings.Add(Finding::kClockStep, path_, position_bytes, SecondsText(*last_of_radio - time_ns));
  if (last_ns_ && time_ns - *last_ns_ > kToldGap_ns)
    findings.Add(Finding::kGap, path_, position_bytes, SecondsText(time_ns - *last_ns_));
  last_of_radio = last_ns_ = time_ns;
  if (latest_ns_ != INT64_MIN && latest_ns_ - time_ns > kNewSegmentStep_ns && segments_.size() < kMostSegments) {
    segments_.back().end_bytes = position_bytes;
    segments_.push_back({position_bytes, size_bytes_, INT64_MAX});
    latest_ns_ = time_ns;
  }
  latest_ns_ = std::max(latest_ns_, time_ns);
  segments_.back().first_ns = std::min(segments_.back().first_ns, time_ns);
}

void ClockMap::CloseLastRun(std::optional<std::int64_t> start_ns) {
  if (!run_is_open_) return;
  if (last_ns_)
    EndRun(*last_ns_ - runs_.back().first_ns);
  else if (start_ns)
    EndRun(*start_ns - runs_.back().first_ns);
  else
    has_time_ = false;
}

const ClockMap::EarlyRun* ClockMap::RunAt(std::uint64_t position_bytes) const {
  const auto behind =
      std::upper_bound(runs_.begin(), runs_.end(), position_bytes,
                       [](std::uint64_t position, const EarlyRun& run) { return position < run.begin_bytes; });
  return behind == runs_.begin() ? nullptr : &*std::prev(behind);
}

std::int64_t ClockMap::TimeOf(std::uint64_t stamp, std::uint64_t position_bytes, std::int64_t previous_ns) const {
  switch (KindOfStamp(stamp)) {
    case StampKind::kTime:
      return NanosecondsOf(stamp);
    case StampKind::kBeforeNetworkTime: {
      const EarlyRun* const run = RunAt(position_bytes);
      return run != nullptr ? NanosecondsOf(stamp) + run->shift_ns : previous_ns;
    }
    case StampKind::kNoTime:
      break;
  }
  return previous_ns;
}

}  // namespace loom::recordings
