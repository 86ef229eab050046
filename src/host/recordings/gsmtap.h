#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace loom::recordings {

inline constexpr std::uint16_t kGsmtapPort = 4729;

// Packet types of GSMTAP.
inline constexpr std::uint8_t kGsmtapGsmUm = 1;
inline constexpr std::uint8_t kGsmtapGsmAbis = 2;  // DTAP messages
inline constexpr std::uint8_t kGsmtapUmtsRrc = 12;
inline constexpr std::uint8_t kGsmtapLteRrc = 13;
inline constexpr std::uint8_t kGsmtapLteNas = 18;

struct GsmtapHeader {
  std::uint8_t type = 0;
  std::uint8_t sub_type = 0;
  std::uint16_t arfcn = 0;  // 14 bits; 0: not told
  bool is_uplink = false;
};

enum class GsmtapResult : std::uint8_t { kRead, kTooShort, kOtherVersion };

// Reads the header of a datagram; `message` becomes what follows it.
GsmtapResult ReadGsmtap(std::span<const std::byte> datagram, GsmtapHeader& header, std::span<const std::byte>& message);

}  // namespace loom::recordings
