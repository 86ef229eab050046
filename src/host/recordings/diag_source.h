#pragma once

#include "host/recordings/clock_map.h"
#include "host/recordings/recorded_packet.h"

namespace loom::recordings {

// Packets of one segment of a DIAG recording, with their times. The file and the clock outlive it.
class DiagSource final : public PacketSource {
 public:
  DiagSource(const InputFile& file, RecordingFormat format, const ClockMap& clock, const ClockSegment& segment,
             Findings& findings)
      : file_(file),
        clock_(clock),
        findings_(findings),
        last_ns_(segment.first_ns),
        reader_(file, format, segment.begin_bytes, segment.end_bytes, findings) {}

  bool Next(RecordedPacket& packet) override {
    DiagPacket diag;
    if (!reader_.Next(diag)) return false;
    packet.position_bytes = reader_.PacketPosition();
    if (KindOfStamp(diag.stamp) == StampKind::kNoTime) [[unlikely]]
      findings_.Add(Finding::kUnreadStamp, file_.path(), packet.position_bytes, "");
    last_ns_ = clock_.TimeOf(diag.stamp, packet.position_bytes, last_ns_);
    packet.kind = PacketKind::kDiag;
    packet.radio = diag.radio;
    packet.code = diag.code;
    packet.time_ns = last_ns_;
    packet.body = diag.body;
    return true;
  }
  const CString& path() const override { return file_.path(); }
  std::uint64_t PositionBytes() const override { return reader_.PositionBytes(); }

 private:
  const InputFile& file_;
  const ClockMap& clock_;
  Findings& findings_;
  std::int64_t last_ns_;
  DiagReader reader_;
};

}  // namespace loom::recordings
