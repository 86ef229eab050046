#include "host/recordings/gsm_packets.h"

#include <iterator>

#include "host/recordings/bit_reader.h"
#include "host/recordings/layer3.h"
#include "host/recordings/packet_fields.h"

namespace loom::recordings {
namespace {

constexpr std::size_t kPseudoLengthBytes = 1;

// Channels of 512F by their number.
struct RrChannel {
  std::int8_t channel;
  bool has_pseudo_length;
};
constexpr RrChannel kRrChannels[] = {
    {kChannelDedicated, false},  // DCCH
    {kChannelBroadcast, true},   // BCCH
    {kChannelCommon, false},     // RACH
    {kChannelCommon, true},      // CCCH
    {kChannelDedicated, false},  // SACCH
};
constexpr std::uint8_t kDownBit = 0x80;

// Channels of GSM Um packets.
struct UmChannel {
  std::uint8_t sub_type;
  std::int8_t channel;
  bool is_dedicated;  // LAPDm frames instead of a pseudo length
};
constexpr UmChannel kUmChannels[] = {
    {1, kChannelBroadcast, false},                                // BCCH
    {2, kChannelCommon, false},    {4, kChannelCommon, false},    // CCCH, AGCH
    {5, kChannelPaging, false},                                   // PCH
    {6, kChannelDedicated, true},  {7, kChannelDedicated, true},  // SDCCH
    {8, kChannelDedicated, true},  {9, kChannelDedicated, true},  // SDCCH/8, FACCH/F
    {10, kChannelDedicated, true},                                // FACCH/H
};
constexpr std::uint8_t kSacchBit = 0x80;
constexpr std::size_t kLayer1Bytes = 2;  // in front of SACCH frames
constexpr std::size_t kLapdmBytes = 3;   // address, control, length

// The information field of a LAPDm frame that carries a whole layer-3 message (3GPP TS 44.006).
std::optional<std::span<const std::byte>> ReadLapdm(std::span<const std::byte> frame) {
  if (frame.size() < kLapdmBytes) return std::nullopt;
  const std::uint8_t control = ByteAt(frame, 1);
  const bool is_information = (control & 0x01) == 0;
  const bool is_unnumbered = (control & 0xEF) == 0x03 || (control & 0xEF) == 0x2F;  // UI, SABM
  const std::size_t length = ByteAt(frame, 2) >> 2;
  const bool is_segment = (ByteAt(frame, 2) & 0x02) != 0;
  if ((!is_information && !is_unnumbered) || length == 0 || is_segment) return std::nullopt;
  const auto rest = frame.subspan(kLapdmBytes);
  return rest.first(length < rest.size() ? length : rest.size());
}

}  // namespace

std::optional<GsmPacket> ReadGsmRr(std::span<const std::byte> body) {
  constexpr std::size_t kHeaderBytes = 3;  // channel, message type, length
  if (body.size() < kHeaderBytes) return std::nullopt;
  const std::uint8_t channel = ByteAt(body, 0) & 0x7F;
  const std::size_t length = ByteAt(body, 2);
  const auto rest = body.subspan(kHeaderBytes);
  if (channel >= std::size(kRrChannels) || length > rest.size()) return std::nullopt;
  const RrChannel& kind = kRrChannels[channel];
  const std::size_t skipped = kind.has_pseudo_length ? kPseudoLengthBytes : 0;
  if (length < skipped) return std::nullopt;
  const std::int8_t direction = (ByteAt(body, 0) & kDownBit) != 0 ? kDown : kUp;
  return GsmPacket{kind.channel, direction, rest.subspan(skipped, length - skipped)};
}

std::optional<GsmPacket> ReadGsmNas(std::span<const std::byte> body) {
  constexpr std::size_t kHeaderBytes = 5;  // direction, length (4)
  if (body.size() < kHeaderBytes) return std::nullopt;
  const std::size_t length = WordAt(body.data() + 1, 4);
  const auto rest = body.subspan(kHeaderBytes);
  if (length > rest.size()) return std::nullopt;
  return GsmPacket{kChannelDedicated, ByteAt(body, 0) == 0 ? kDown : kUp, rest.first(length)};
}

std::optional<GsmPacket> ReadGsmUm(std::uint8_t sub_type, bool is_uplink, std::span<const std::byte> frame) {
  const auto channel = static_cast<std::uint8_t>(sub_type & ~kSacchBit);
  const bool is_sacch = (sub_type & kSacchBit) != 0;
  for (const UmChannel& kind : kUmChannels) {
    if (kind.sub_type != channel) continue;
    GsmPacket packet{kind.channel, is_uplink ? kUp : kDown, frame};
    if (is_sacch) {
      if (frame.size() < kLayer1Bytes) return std::nullopt;
      packet.message = frame.subspan(kLayer1Bytes);
    }
    if (kind.is_dedicated || is_sacch) {
      const auto message = ReadLapdm(packet.message);
      if (!message) return std::nullopt;
      packet.message = *message;
    } else {
      if (packet.message.size() <= kPseudoLengthBytes) return std::nullopt;
      packet.message = packet.message.subspan(kPseudoLengthBytes);
    }
    return packet;
  }
  return std::nullopt;
}

}  // namespace loom::recordings
