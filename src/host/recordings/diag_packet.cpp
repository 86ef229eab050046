#include "host/recordings/diag_packet.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace loom::recordings {
namespace {

constexpr std::uint8_t kLogCommand = 0x10;
constexpr std::uint8_t kWrappedCommand = 0x98;
constexpr std::size_t kWrapBytes = 8;           // command, 3 more, radio (4)
constexpr std::size_t kPacketHeaderBytes = 16;  // command, more, length (2), length (2), code (2), time stamp (8)
constexpr std::uint8_t kMostRadios = 8;

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

PayloadKind ReadPayloadHead(std::span<const std::byte> payload, DiagPacket& packet, std::size_t& length_bytes) {
  packet.radio = 1;
  if (payload.size() > kWrapBytes && payload[0] == std::byte{kWrappedCommand}) {
    const auto radio = Little<std::uint32_t>(payload.data() + 4);
    if (radio >= 1 && radio <= kMostRadios) packet.radio = static_cast<std::uint8_t>(radio);
    payload = payload.subspan(kWrapBytes);
  }
  if (payload.empty() || payload[0] != std::byte{kLogCommand}) return PayloadKind::kOtherCommand;
  if (payload.size() < kPacketHeaderBytes) return PayloadKind::kContradictory;
  const std::byte* const at = payload.data();
  length_bytes = Little<std::uint16_t>(at + 4);
  if (Little<std::uint16_t>(at + 2) != length_bytes) return PayloadKind::kContradictory;
  packet.code = Little<std::uint16_t>(at + 6);
  packet.stamp = Little<std::uint64_t>(at + 8);
  packet.body = payload.subspan(kPacketHeaderBytes);
  return PayloadKind::kLogPacket;
}

PayloadKind ReadPayload(std::span<const std::byte> payload, DiagPacket& packet) {
  std::size_t length_bytes = 0;
  const PayloadKind kind = ReadPayloadHead(payload, packet, length_bytes);
  if (kind != PayloadKind::kLogPacket) return kind;
  return length_bytes == kBareHeaderBytes + packet.body.size() ? kind : PayloadKind::kContradictory;
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

}  // namespace loom::recordings
