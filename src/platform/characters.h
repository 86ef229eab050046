#pragma once

#include <string_view>

// Kinds of characters, the same under every locale.
namespace loom {

constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool IsSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}  // blank, tab, what ends lines and pages

// Without the space in front, behind, or at both ends.
constexpr std::string_view TrimmedLeft(std::string_view text) {
  while (!text.empty() && IsSpace(text.front())) text.remove_prefix(1);
  return text;
}
constexpr std::string_view TrimmedRight(std::string_view text) {
  while (!text.empty() && IsSpace(text.back())) text.remove_suffix(1);
  return text;
}
constexpr std::string_view Trimmed(std::string_view text) { return TrimmedLeft(TrimmedRight(text)); }

}  // namespace loom
