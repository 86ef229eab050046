#pragma once

#include <cstdint>

namespace loom {

inline constexpr std::int64_t kSecond_ns = 1'000'000'000;
inline constexpr std::int64_t kDay_s = 86'400;

}  // namespace loom
