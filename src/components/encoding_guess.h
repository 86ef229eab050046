#pragma once

#include <string>
#include <string_view>

// Guess of a text's encoding by an outside library. Defined by the host's library.
namespace loom {

// Name of the encoding as iconv knows it; empty where the library cannot say. `bytes` are no valid UTF-8.
std::string GuessEncoding(std::string_view bytes);

}  // namespace loom
