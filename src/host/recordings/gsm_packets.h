#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

// Packets that hold GSM messages: DIAG log codes and GSMTAP.
namespace loom::recordings {

inline constexpr std::uint16_t kCodeGsmRr = 0x512F;
inline constexpr std::uint16_t kCodeGsmNas = 0x713A;

struct GsmPacket {
  std::int8_t channel = 0;             // kChannel...
  std::int8_t direction = 0;           // kUp, kDown
  std::span<const std::byte> message;  // from its protocol discriminator on
};

// Nothing when the packet is shorter than its fields.
std::optional<GsmPacket> ReadGsmRr(std::span<const std::byte> body);
std::optional<GsmPacket> ReadGsmNas(std::span<const std::byte> body);
// Of a GSM Um packet. Nothing for channels without layer-3 messages and for frames that hold none.
std::optional<GsmPacket> ReadGsmUm(std::uint8_t sub_type, bool is_uplink, std::span<const std::byte> frame);

}  // namespace loom::recordings
