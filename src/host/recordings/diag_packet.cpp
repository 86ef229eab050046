#include "host/recordings/diag_packet.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "platform/time_units.h"

namespace loom::recordings {
namespace {

constexpr std::uint8_t kLogCommand = 0x10;
constexpr std::uint8_t kWrappedCommand = 0x98;
constexpr std::size_t kWrapBytes = 8;           // command, 3 more, radio (4)
constexpr std::size_t kPacketHeaderBytes = 16;  // command, more, length (2), length (2), code (2), time stamp (8)
constexpr std::uint8_t kMostRadios = 8;

constexpr std::int64_t kEpoch_s = 315'964'800;  // 1980-01-06
constexpr std::int64_t kTick_ns = 1'250'000;
constexpr std::uint64_t kPartsOfTick = 49'152;
constexpr std::uint64_t kTicksPerSecond = 800;
constexpr std::uint64_t kTicksOf2000 = (946'684'800 - kEpoch_s) * kTicksPerSecond;
constexpr std::uint64_t kTicksOf2100 = (4'102'444'800 - kEpoch_s) * kTicksPerSecond;

template <class T>
T Little(const std::byte* at) {
  T value;
  std::memcpy(&value, at, sizeof value);
  if constexpr (std::endian::native == std::endian::big) {
    auto bytes = std::as_writable_bytes(std::span(&value, 1));
    std::reverse(bytes.begin(), bytes.end());
  }
  return value;
}

}  // namespace

PayloadKind ReadPayload(std::span<const std::byte> payload, DiagPacket& packet) {
  packet.radio = 1;
  if (payload.size() > kWrapBytes && payload[0] == std::byte{kWrappedCommand}) {
    const auto radio = Little<std::uint32_t>(payload.data() + 4);
    if (radio >= 1 && radio <= kMostRadios) packet.radio = static_cast<std::uint8_t>(radio);
    payload = payload.subspan(kWrapBytes);
  }
  if (payload.empty() || payload[0] != std::byte{kLogCommand}) return PayloadKind::kOtherCommand;
  if (payload.size() < kPacketHeaderBytes) return PayloadKind::kContradictory;
  const std::byte* const at = payload.data();
  const std::size_t length = Little<std::uint16_t>(at + 4);
  if (Little<std::uint16_t>(at + 2) != length || length + 4 != payload.size()) return PayloadKind::kContradictory;
  packet.code = Little<std::uint16_t>(at + 6);
  packet.stamp = Little<std::uint64_t>(at + 8);
  packet.body = payload.subspan(kPacketHeaderBytes);
  return PayloadKind::kLogPacket;
}

bool ReadBarePacket(std::span<const std::byte> bytes, DiagPacket& packet) {
  if (bytes.size() < kBareHeaderBytes) return false;
  const std::size_t length = Little<std::uint16_t>(bytes.data());
  if (length < kBareHeaderBytes || length > bytes.size()) return false;
  packet.radio = 1;
  packet.code = Little<std::uint16_t>(bytes.data() + 2);
  packet.stamp = Little<std::uint64_t>(bytes.data() + 4);
  packet.body = bytes.subspan(kBareHeaderBytes, length - kBareHeaderBytes);
  return true;
}

StampKind KindOfStamp(std::uint64_t stamp) {
  const std::uint64_t ticks = stamp >> 16;
  if (ticks >= kTicksOf2100) return StampKind::kNoTime;
  return ticks < kTicksOf2000 ? StampKind::kBeforeNetworkTime : StampKind::kTime;
}

std::int64_t NanosecondsOf(std::uint64_t stamp) {
  const auto ticks = static_cast<std::int64_t>(stamp >> 16);
  const std::uint64_t parts = stamp & 0xFFFF;
  return kEpoch_s * kSecond_ns + ticks * kTick_ns + static_cast<std::int64_t>(parts * kTick_ns / kPartsOfTick);
}

}  // namespace loom::recordings
