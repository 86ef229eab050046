#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace loom::recordings {

// CRC of DIAG frames: polynomial 0x1021 reflected, start and final xor 0xFFFF. "123456789" has 0x906E.
std::uint16_t FrameChecksum(std::span<const std::byte> bytes);

// Of a payload with its checksum behind it, low byte first.
bool HasGoodChecksum(std::span<const std::byte> frame);

}  // namespace loom::recordings
