#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace loom::recordings {

// One log packet of a baseband. `body` is what follows its header.
struct DiagPacket {
  std::uint8_t radio = 1;   // SIM of the handset, 1 when the packet does not tell
  std::uint16_t code = 0;   // what the packet holds
  std::uint64_t stamp = 0;  // upper 48 bits 1.25 ms from 1980-01-06, lower 16 bits 1/49152 of that
  std::span<const std::byte> body;
};

enum class PayloadKind : std::uint8_t { kLogPacket, kOtherCommand, kContradictory };

// Takes the payload of a frame (no escapes, no checksum) apart. A wrapped packet gives its inner one.
PayloadKind ReadPayload(std::span<const std::byte> payload, DiagPacket& packet);

// The same packets without frame and without the first four bytes of their header, as they stand in *.dlf files.
inline constexpr std::size_t kBareHeaderBytes = 12;  // length (2), code (2), time stamp (8)
bool ReadBarePacket(std::span<const std::byte> bytes, DiagPacket& packet);

// Most bytes of a packet with its header.
inline constexpr std::size_t kMostPacketBytes = 0xFFFF + 4;

enum class StampKind : std::uint8_t {
  kTime,
  kBeforeNetworkTime,  // before 2000: the handset counts from 1980 until it knows the time
  kNoTime,             // beyond 2100
};
StampKind KindOfStamp(std::uint64_t stamp);

// Nanoseconds since 1970; the stamp's clock runs like UTC. Not for kNoTime.
std::int64_t NanosecondsOf(std::uint64_t stamp);

}  // namespace loom::recordings
