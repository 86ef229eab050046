#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "host/recordings/diag_packet.h"
#include "host/recordings/findings.h"
#include "host/recordings/frame_cutter.h"
#include "platform/file.h"

namespace loom::recordings {

enum class RecordingFormat : std::uint8_t {
  kNone,
  kFrames,       // HDLC frames: *.qmdl, *.mi2log
  kBarePackets,  // *.dlf
  kCapture,      // pcap and pcapng
};

// Reads the log packets of a range of a DIAG recording and tells of everything else.
class DiagReader {
 public:
  DiagReader(const InputFile& file, RecordingFormat format, std::uint64_t begin_bytes, std::uint64_t end_bytes,
             Findings& findings);

  // The bytes are valid until the next call; false at the end.
  bool Next(DiagPacket& packet);
  std::uint64_t PacketPosition() const { return packet_position_; }  // of the packet that was read last
  std::uint64_t PositionBytes() const;                               // how far the file has been read

 private:
  bool NextFramed(DiagPacket& packet);
  bool NextBare(DiagPacket& packet);
  bool IsSoundFrame(const CutFrame& frame, std::span<const std::byte> bytes);
  bool FillBare();

  const InputFile& file_;
  RecordingFormat format_;
  std::uint64_t end_;
  Findings& findings_;
  std::uint64_t packet_position_ = 0;
  std::unique_ptr<FrameCutter> frames_;
  std::vector<std::byte> scratch_;
  // Of bare packets.
  std::vector<std::byte> buffer_;
  std::uint64_t buffer_begin_ = 0;
  std::size_t filled_ = 0;
  std::size_t at_ = 0;
};

// Enough of a frame to see its time stamp, without checking more of it. False for what is certainly no log packet.
bool PeekFrame(std::span<const std::byte> frame, DiagPacket& packet);

}  // namespace loom::recordings
