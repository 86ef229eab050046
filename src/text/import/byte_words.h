#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

// Eight bytes of a text at a time, where the first of them is the lowest of the word.
namespace loom {

inline constexpr bool kHasWords = std::endian::native == std::endian::little;
inline constexpr std::size_t kWordBytes = sizeof(std::uint64_t);

inline constexpr std::uint64_t kEach = 0x0101010101010101;  // times a byte: that byte eight times
inline constexpr std::uint64_t kHighBits = 0x80 * kEach;

inline std::uint64_t WordAt(const char* bytes) {
  std::uint64_t word;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

// The high bit of each byte that equals the one repeated in `pattern`.
inline std::uint64_t EqualBytes(std::uint64_t word, std::uint64_t pattern) {
  word ^= pattern;
  return ~(((word & ~kHighBits) + ~kHighBits) | word | ~kHighBits);
}

// One bit for each of 64 bytes that equals the one repeated in `pattern`, the first one lowest.
inline std::uint64_t EqualBytesOf64(const char* bytes, std::uint64_t pattern) {
  constexpr std::uint64_t kToTopByte = 0x0102040810204080;  // bit 0 of byte n goes to bit 56 + n
  std::uint64_t equal = 0;
  for (std::size_t word = 0; word < 8; ++word) {
    const std::uint64_t bits = EqualBytes(WordAt(bytes + word * kWordBytes), pattern) >> 7;
    equal |= (bits * kToTopByte >> 56) << 8 * word;
  }
  return equal;
}

}  // namespace loom
