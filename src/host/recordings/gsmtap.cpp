#include "host/recordings/gsmtap.h"

namespace loom::recordings {
namespace {

constexpr std::size_t kGsmtapHeaderBytes = 16;
constexpr std::uint8_t kVersion = 2;
constexpr std::uint16_t kUplinkBit = 0x4000;
constexpr std::uint16_t kArfcnBits = 0x3FFF;

}  // namespace

GsmtapResult ReadGsmtap(std::span<const std::byte> datagram, GsmtapHeader& header,
                        std::span<const std::byte>& message) {
  if (datagram.size() < 2) return GsmtapResult::kTooShort;
  const auto at = [&](std::size_t offset) { return static_cast<std::uint8_t>(datagram[offset]); };
  if (at(0) != kVersion) return GsmtapResult::kOtherVersion;
  const std::size_t header_bytes = std::size_t{at(1)} * 4;
  if (header_bytes < kGsmtapHeaderBytes || header_bytes > datagram.size()) return GsmtapResult::kTooShort;
  const auto arfcn = static_cast<std::uint16_t>(at(4) << 8 | at(5));
  header = {.type = at(2),
            .sub_type = at(12),
            .arfcn = static_cast<std::uint16_t>(arfcn & kArfcnBits),
            .is_uplink = (arfcn & kUplinkBit) != 0};
  message = datagram.subspan(header_bytes);
  return GsmtapResult::kRead;
}

}  // namespace loom::recordings
