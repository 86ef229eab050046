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

}  // namespace loom
