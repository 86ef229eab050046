#pragma once

#include <string>
#include <string_view>

namespace loom {

// A text in a code page by its number (1252, 936, 10000 ...) as UTF-8. Throws EncodingError for bytes that have no
// place in it, Error for a code page that this system does not know.
std::string CodePageToUtf8(unsigned code_page, std::string_view bytes);

}  // namespace loom
