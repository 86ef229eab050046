#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

// Decimal digits written through a pointer, in groups of three from a table. Every function returns the end of its
// text and may write up to kDigitsSlack bytes behind it.
namespace loom {

inline constexpr std::size_t kDigitsSlack = 3;

namespace digits {

// "000" to "999", each followed by the number of its leading zeros, of which the last digit is none.
inline constexpr auto kGroups = [] {
  std::array<char, 4 * 1000 + kDigitsSlack> groups{};
  for (std::size_t number = 0; number < 1000; ++number) {
    char* const group = groups.data() + 4 * number;
    group[0] = static_cast<char>('0' + number / 100);
    group[1] = static_cast<char>('0' + number / 10 % 10);
    group[2] = static_cast<char>('0' + number % 10);
    group[3] = static_cast<char>(number < 10 ? 2 : number < 100 ? 1 : 0);
  }
  return groups;
}();

}  // namespace digits

// Three digits of a number below 1000.
inline char* PutThreeDigits(std::uint32_t number, char* out) {
  std::memcpy(out, digits::kGroups.data() + 4 * number, 4);
  return out + 3;
}

// Two digits of a number below 100.
inline char* PutTwoDigits(std::uint32_t number, char* out) {
  std::memcpy(out, digits::kGroups.data() + 4 * number + 1, 2);
  return out + 2;
}

// A number below 1000 without leading zeros.
inline char* PutUpToThreeDigits(std::uint32_t number, char* out) {
  const char* const group = digits::kGroups.data() + 4 * number;
  const auto zeros = static_cast<unsigned char>(group[3]);
  std::memcpy(out, group + zeros, 4);
  return out + 3 - zeros;
}

// A number without leading zeros: at most 10 digits.
inline char* PutInteger(std::uint32_t number, char* out) {
  if (number < 1000) return PutUpToThreeDigits(number, out);
  const std::uint32_t thousands = number / 1000;
  if (thousands < 1000) {
    out = PutUpToThreeDigits(thousands, out);
  } else {
    const std::uint32_t millions = thousands / 1000;
    if (millions < 1000) {
      out = PutUpToThreeDigits(millions, out);
    } else {
      *out++ = static_cast<char>('0' + millions / 1000);
      out = PutThreeDigits(millions % 1000, out);
    }
    out = PutThreeDigits(thousands - millions * 1000, out);
  }
  return PutThreeDigits(number - thousands * 1000, out);
}

}  // namespace loom
