#include "host/recordings/frame_checksum.h"

#include <array>
#include <bit>
#include <cstring>
#include <utility>

#include "platform/byte_reader.h"

namespace loom::recordings {
namespace {

constexpr std::uint16_t kPolynomial = 0x8408;
constexpr std::uint16_t kStart = 0xFFFF;
constexpr std::uint16_t kResidue = 0xF0B8;  // of every payload with its own checksum, before the final xor
constexpr std::size_t kSlices = 16;

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

// What the bytes of a word do to the checksum, `behind` bytes in front of the end of a slice.
template <class Word>
std::uint16_t Slice(std::uint16_t crc, const std::byte* at, std::size_t behind) {
  Word word;
  std::memcpy(&word, at, sizeof word);
  if constexpr (std::endian::native == std::endian::big) word = loom::detail::SwapBytes(word);
  word ^= crc;
  return [&]<std::size_t... kByte>(std::index_sequence<kByte...>) {
    return static_cast<std::uint16_t>(
        (... ^ kTables[behind + sizeof(Word) - 1 - kByte][static_cast<std::uint8_t>(word >> 8 * kByte)]));
  }
  (std::make_index_sequence<sizeof(Word)>());
}

std::uint16_t Update(std::uint16_t crc, std::span<const std::byte> bytes) {
  const std::byte* at = bytes.data();
  std::size_t left = bytes.size();
  for (; left >= kSlices; left -= kSlices, at += kSlices)
    crc = Slice<std::uint64_t>(crc, at, 8) ^ Slice<std::uint64_t>(0, at + 8, 0);
  if (left >= 8) {
    crc = Slice<std::uint64_t>(crc, at, 0);
    left -= 8;
    at += 8;
  }
  if (left >= 4) {
    crc = Slice<std::uint32_t>(crc, at, 0);
    left -= 4;
    at += 4;
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
