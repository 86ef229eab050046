#include "host/recordings/lte_packets.h"

#include <array>
#include <iterator>

// Messages and cell information.
namespace loom::recordings {
namespace {

using Rrc = LteRrcPacket;
using Info = LteCellInfo;
using RrcField = PacketField<Rrc>;
using InfoField = PacketField<Info>;

// clang-format off
// word, bytes, first bit, bits, scale, value
constexpr RrcField kRrc7[] = {
    {4,  2, 0, 16, kPlain, &Rrc::physical_cell_id},
    {6,  2, 0, 16, kPlain, &Rrc::earfcn},
    {10, 1, 0, 8,  kPlain, &Rrc::channel_code},
    {15, 2, 0, 16, kPlain, &Rrc::length},
};
constexpr RrcField kRrc8[] = {
    {4,  2, 0, 16, kPlain, &Rrc::physical_cell_id},
    {6,  4, 0, 31, kPlain, &Rrc::earfcn},
    {12, 1, 0, 8,  kPlain, &Rrc::channel_code},
    {17, 2, 0, 16, kPlain, &Rrc::length},
};
constexpr RrcField kRrc26[] = {
    {6,  2, 0, 16, kPlain, &Rrc::physical_cell_id},
    {8,  4, 0, 31, kPlain, &Rrc::earfcn},
    {14, 1, 0, 8,  kPlain, &Rrc::channel_code},
    {19, 2, 0, 16, kPlain, &Rrc::length},
};

// Codes of the channels in the order of LteRrcChannel.
using ChannelCodes = std::array<std::uint8_t, kLteRrcChannels>;
constexpr ChannelCodes kCodes7{1, 2, 3, 4, 5, 6, 7, 8};
constexpr ChannelCodes kCodes9{8, 9, 10, 11, 12, 13, 14, 15};
constexpr ChannelCodes kCodes15{1, 2, 4, 5, 6, 7, 8, 9};
constexpr ChannelCodes kCodes26{1, 3, 6, 7, 8, 9, 10, 11};

struct RrcLayout {
  std::uint8_t version;
  PacketFields<LteRrcPacket> fields;
  const ChannelCodes& codes;
};
constexpr RrcLayout kRrcLayouts[] = {
    {7, kRrc7, kCodes7},   {8, kRrc8, kCodes7},   {9, kRrc8, kCodes9},
    {15, kRrc8, kCodes15}, {20, kRrc8, kCodes15}, {26, kRrc26, kCodes26},
};

constexpr InfoField kMib1[] = {
    {1, 2, 0, 16, kPlain, &Info::physical_cell_id},
    {3, 2, 0, 16, kPlain, &Info::earfcn},
    {7, 1, 0, 8,  kPlain, &Info::antenna_ports},
    {8, 1, 0, 8,  kPlain, &Info::bandwidth_prb},
};
constexpr InfoField kMib2[] = {
    {1,  2, 0, 16, kPlain, &Info::physical_cell_id},
    {3,  4, 0, 31, kPlain, &Info::earfcn},
    {9,  1, 0, 8,  kPlain, &Info::antenna_ports},
    {10, 1, 0, 8,  kPlain, &Info::bandwidth_prb},
};
constexpr InfoField kServingCell2[] = {
    {1,  2, 0, 16, kPlain, &Info::physical_cell_id},
    {3,  2, 0, 16, kPlain, &Info::earfcn},
    {7,  1, 0, 8,  kPlain, &Info::bandwidth_prb},
    {9,  4, 0, 28, kPlain, &Info::cell_identity},
    {13, 2, 0, 16, kPlain, &Info::tac},
    {19, 2, 0, 16, kPlain, &Info::mcc},
    {21, 1, 0, 8,  kPlain, &Info::mnc_digits},
    {22, 2, 0, 16, kPlain, &Info::mnc},
};
constexpr InfoField kServingCell3[] = {
    {1,  2, 0, 16, kPlain, &Info::physical_cell_id},
    {3,  4, 0, 31, kPlain, &Info::earfcn},
    {11, 1, 0, 8,  kPlain, &Info::bandwidth_prb},
    {13, 4, 0, 28, kPlain, &Info::cell_identity},
    {17, 2, 0, 16, kPlain, &Info::tac},
    {23, 2, 0, 16, kPlain, &Info::mcc},
    {25, 1, 0, 8,  kPlain, &Info::mnc_digits},
    {26, 2, 0, 16, kPlain, &Info::mnc},
};
constexpr InfoField kCellInfo2[] = {
    {1, 1, 0, 8,  kPlain, &Info::bandwidth_prb},
    {4, 4, 0, 31, kPlain, &Info::earfcn},
    {8, 4, 0, 9,  kPlain, &Info::physical_cell_id},
};
// clang-format on

struct InfoLayout {
  std::uint8_t version;
  PacketFields<Info> fields;
};
constexpr InfoLayout kMibLayouts[] = {{1, kMib1}, {2, kMib2}};
constexpr InfoLayout kServingCellLayouts[] = {{2, kServingCell2}, {3, kServingCell3}};
constexpr InfoLayout kCellInfoLayouts[] = {{2, kCellInfo2}};

constexpr std::uint8_t kNasVersion = 1;
constexpr std::size_t kNasHeaderBytes = 4;  // version, release, major, minor

PacketResult ReadInfo(std::span<const std::byte> body, std::span<const InfoLayout> layouts, Info& info) {
  if (body.empty()) return PacketResult::kTooShort;
  for (const InfoLayout& layout : layouts)
    if (layout.version == static_cast<std::uint8_t>(body[0]))
      return ReadFields(body, layout.fields, info) ? PacketResult::kRead : PacketResult::kTooShort;
  return PacketResult::kUnknownVersion;
}

std::optional<LteRrcChannel> ChannelOf(const ChannelCodes& codes, std::int32_t code) {
  for (std::size_t channel = 0; channel < codes.size(); ++channel)
    if (codes[channel] == code) return static_cast<LteRrcChannel>(channel);
  return std::nullopt;
}

}  // namespace

PacketResult ReadLteRrc(std::span<const std::byte> body, LteRrcPacket& packet) {
  if (body.empty()) return PacketResult::kTooShort;
  for (const RrcLayout& layout : kRrcLayouts) {
    if (layout.version != static_cast<std::uint8_t>(body[0])) continue;
    if (!ReadFields(body, layout.fields, packet)) return PacketResult::kTooShort;
    const auto message = body.subspan(layout.fields.bytes);
    if (static_cast<std::size_t>(packet.length) > message.size()) return PacketResult::kTooShort;
    packet.message = message.first(static_cast<std::size_t>(packet.length));
    packet.channel = ChannelOf(layout.codes, packet.channel_code);
    return PacketResult::kRead;
  }
  return PacketResult::kUnknownVersion;
}

PacketResult ReadLteMib(std::span<const std::byte> body, LteCellInfo& info) {
  return ReadInfo(body, kMibLayouts, info);
}

PacketResult ReadLteServingCell(std::span<const std::byte> body, LteCellInfo& info) {
  return ReadInfo(body, kServingCellLayouts, info);
}

PacketResult ReadLteCellInfo(std::span<const std::byte> body, LteCellInfo& info) {
  return ReadInfo(body, kCellInfoLayouts, info);
}

PacketResult ReadLteNas(std::span<const std::byte> body, std::span<const std::byte>& message) {
  if (body.size() <= kNasHeaderBytes) return PacketResult::kTooShort;
  if (static_cast<std::uint8_t>(body[0]) != kNasVersion) return PacketResult::kUnknownVersion;
  message = body.subspan(kNasHeaderBytes);
  return PacketResult::kRead;
}

}  // namespace loom::recordings
