#include "host/recordings/frame_checksum.h"

#include <array>
#include <bit>
#include <cstring>

namespace loom::recordings {
namespace {

constexpr std::uint16_t kPolynomial = 0x8408;
constexpr std::uint16_t kStart = 0xFFFF;
constexpr std::uint16_t kResidue = 0xF0B8;  // of every payload with its own checksum, before the final xor
constexpr std::size_t kSlices = 8;

using Slices = std::array<std::array<std::uint16_t, 256>, kSlices>;

// kTables[n][b]: what byte b, n bytes in front of the end of a slice, does to the checksum.
constexpr Slices MakeTables() {
  Slices tables{};
  for (std::uint32_t byte = 0; byte < 256; ++byte) {
    std::uint32_t crc = byte;
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ ((crc & 1) != 0 ? kPolynomial : 0u);
    tables[0][byte] = static_cast<std::uint16_t>(crc);
  }
  for (std::size_t slice = 1; slice < kSlices; ++slice)
    for (std::size_t byte = 0; byte < 256; ++byte) {
      const std::uint16_t before = tables[slice - 1][byte];
      tables[slice][byte] = static_cast<std::uint16_t>(before >> 8 ^ tables[0][before & 0xFF]);
    }
  return tables;
}
constexpr Slices kTables = MakeTables();

std::uint16_t Update(std::uint16_t crc, std::span<const std::byte> bytes) {
  const std::byte* at = bytes.data();
  std::size_t left = bytes.size();
  for (; left >= kSlices; left -= kSlices, at += kSlices) {
    std::uint64_t eight;
    std::memcpy(&eight, at, sizeof eight);
    if constexpr (std::endian::native == std::endian::big) eight = __builtin_bswap64(eight);
    eight ^= crc;
    crc = static_cast<std::uint16_t>(kTables[7][eight & 0xFF] ^ kTables[6][eight >> 8 & 0xFF] ^
                                     kTables[5][eight >> 16 & 0xFF] ^ kTables[4][eight >> 24 & 0xFF] ^
                                     kTables[3][eight >> 32 & 0xFF] ^ kTables[2][eight >> 40 & 0xFF] ^
                                     kTables[1][eight >> 48 & 0xFF] ^ kTables[0][eight >> 56]);
  }
  for (; left > 0; --left, ++at)
    crc = static_cast<std::uint16_t>(crc >> 8 ^ kTables[0][(crc ^ static_cast<std::uint8_t>(*at)) & 0xFF]);
  return crc;
}

}  // namespace

std::uint16_t FrameChecksum(std::span<const std::byte> bytes) {
  return static_cast<std::uint16_t>(Update(kStart, bytes) ^ 0xFFFF);
}

bool HasGoodChecksum(std::span<const std::byte> frame) { return frame.size() > 2 && Update(kStart, frame) == kResidue; }

}  // namespace loom::recordings
