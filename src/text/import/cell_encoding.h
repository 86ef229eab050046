#pragma once

#include <algorithm>
#include <string_view>

#include "text/import/byte_words.h"

namespace loom {

inline bool IsAscii(std::string_view text) {
  for (; text.size() >= kWordBytes; text.remove_prefix(kWordBytes)) {
    if ((WordAt(text.data()) & kHighBits) != 0) return false;
  }
  return std::ranges::none_of(text, [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

// Whether a text that is to be GBK is UTF-8: it is well formed and holds a character of three bytes or more, as Chinese
// ones are. Such bytes are next to never meant in GBK. Pairs of bytes are no sign: they may be either.
bool IsWideUtf8(std::string_view text);

// At most the first `most` bytes of a well-formed text, whole characters only.
std::string_view Utf8Prefix(std::string_view utf8, std::size_t most);

}  // namespace loom
