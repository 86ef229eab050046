#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace loom {

// The bytes of a compound file's stream (MS-CFB) of one of these ASCII names; nothing when there is none or when
// the file is damaged.
std::optional<std::string> ReadCompoundStream(const std::vector<std::byte>& file,
                                              std::initializer_list<std::string_view> names);

}  // namespace loom
