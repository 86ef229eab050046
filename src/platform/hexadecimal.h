#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

// Bytes as two hexadecimal digits each.
namespace loom {

inline constexpr std::string_view kCapitalHex = "0123456789ABCDEF";
inline constexpr std::string_view kSmallHex = "0123456789abcdef";

inline void AppendHex(std::string& out, std::uint8_t byte, std::string_view digits = kCapitalHex) {
  out += digits[byte >> 4];
  out += digits[byte & 15];
}

inline std::string HexText(std::span<const std::byte> bytes, std::string_view digits = kCapitalHex) {
  std::string text;
  text.reserve(2 * bytes.size());
  for (const std::byte byte : bytes) AppendHex(text, std::to_integer<std::uint8_t>(byte), digits);
  return text;
}

// The byte whose digits, small or capital, stand at `at`.
inline std::optional<std::uint8_t> HexByteAt(std::string_view text, std::size_t at) {
  if (at > text.size() || text.size() - at < 2) return std::nullopt;
  unsigned byte = 0;
  for (const char c : text.substr(at, 2)) {
    const std::size_t small = kSmallHex.find(c), capital = kCapitalHex.find(c);
    if (small == kSmallHex.npos && capital == kCapitalHex.npos) return std::nullopt;
    byte = byte * 16 + static_cast<unsigned>(small != kSmallHex.npos ? small : capital);
  }
  return static_cast<std::uint8_t>(byte);
}

}  // namespace loom
