#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "host/recordings/gsmtap.h"
#include "platform/cstring.h"

namespace loom::recordings {

enum class PacketKind : std::uint8_t { kDiag, kGsmtap };

// One packet of a recording, whatever file it came in. Its bytes are valid until the next one is read.
struct RecordedPacket {
  PacketKind kind = PacketKind::kDiag;
  std::uint8_t radio = 1;            // SIM of the handset, 1 when the recording does not tell
  std::uint16_t code = 0;            // DIAG log code
  std::int64_t time_ns = 0;          // since 1970, UTC
  std::uint64_t position_bytes = 0;  // in its file; of a capture the number of the packet, from 1
  std::span<const std::byte> body;
  GsmtapHeader gsmtap;
};

// The first byte of most packets. 255 without one.
inline std::uint8_t VersionOf(const RecordedPacket& packet) {
  return packet.body.empty() ? std::uint8_t{0xFF} : static_cast<std::uint8_t>(packet.body[0]);
}

// Packets in the order of their file.
class PacketSource {
 public:
  virtual ~PacketSource() = default;
  virtual bool Next(RecordedPacket& packet) = 0;  // false at the end
  virtual const CString& path() const = 0;
  virtual std::uint64_t PositionBytes() const = 0;  // how far the file has been read
};

}  // namespace loom::recordings
