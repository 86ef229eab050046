#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/time_units.h"

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
// The same for the first bytes of a payload: the body is as much as there is of it. `length_bytes` is what the packet
// says of its length behind the first four bytes.
inline constexpr std::size_t kPayloadHeadBytes = 24;
PayloadKind ReadPayloadHead(std::span<const std::byte> payload, DiagPacket& packet, std::size_t& length_bytes);

// The same packets without frame and without the first four bytes of their header, as they stand in *.dlf files.
inline constexpr std::size_t kBareHeaderBytes = 12;  // length (2), code (2), time stamp (8)
bool ReadBarePacket(std::span<const std::byte> bytes, DiagPacket& packet);

// Most bytes of a packet with its header.
inline constexpr std::size_t kMostPacketBytes = 0xFFFF + 4;

// Time stamps.
inline constexpr std::int64_t kEpoch_s = 315'964'800;  // 1980-01-06
inline constexpr std::int64_t kTick_ns = 1'250'000;
inline constexpr std::uint64_t kPartsOfTick = 49'152;
inline constexpr std::uint64_t kTicksPerSecond = 800;
inline constexpr std::uint64_t kTicksOf2000 = (946'684'800 - kEpoch_s) * kTicksPerSecond;
inline constexpr std::uint64_t kTicksOf2100 = (4'102'444'800 - kEpoch_s) * kTicksPerSecond;

enum class StampKind : std::uint8_t {
  kTime,
  kBeforeNetworkTime,  // before 2000: the handset counts from 1980 until it knows the time
  kNoTime,             // beyond 2100
};
inline StampKind KindOfStamp(std::uint64_t stamp) {
  const std::uint64_t ticks = stamp >> 16;
  if (ticks >= kTicksOf2100) return StampKind::kNoTime;
  return ticks < kTicksOf2000 ? StampKind::kBeforeNetworkTime : StampKind::kTime;
}

// Nanoseconds since 1970; the stamp's clock runs like UTC. Not for kNoTime.
inline std::int64_t NanosecondsOf(std::uint64_t stamp) {
  const auto ticks = static_cast<std::int64_t>(stamp >> 16);
  const std::uint64_t parts = stamp & 0xFFFF;
  return kEpoch_s * kSecond_ns + ticks * kTick_ns + static_cast<std::int64_t>(parts * kTick_ns / kPartsOfTick);
}

}  // namespace loom::recordings
