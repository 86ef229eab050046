#include "text/import/cell_encoding.h"

namespace loom {
namespace {

bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// Bytes of the character at the front, by its first two bytes; 0 when they are no start of one (RFC 3629).
std::size_t LengthOfFirst(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  if (lead < 0x80) return 1;
  const auto second = static_cast<unsigned char>(text.size() > 1 ? text[1] : '\0');
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ? 0 : 3;
  if (lead >= 0xF0 && lead <= 0xF4) return (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F) ? 0 : 4;
  return 0;
}

}  // namespace

bool IsWideUtf8(std::string_view text) {
  bool is_wide = false;
  while (!text.empty()) {
    const std::size_t length = LengthOfFirst(text);
    if (length == 0 || length > text.size()) return false;
    if (!std::ranges::all_of(text.substr(1, length - 1), IsContinuation)) return false;
    is_wide |= length > 2;
    text.remove_prefix(length);
  }
  return is_wide;
}

std::string_view Utf8Prefix(std::string_view utf8, std::size_t most) {
  if (utf8.size() <= most) return utf8;
  while (most > 0 && IsContinuation(utf8[most])) --most;
  return utf8.substr(0, most);
}

}  // namespace loom
