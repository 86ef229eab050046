#pragma once

#include <cstdint>

// Information elements that analyses read by themselves.
namespace loom::analysis {

inline constexpr std::int32_t kEventId = 10;
inline constexpr std::int32_t kEventName = 20;
inline constexpr std::int32_t kMessageDirection = 33;  // in GSM rows
inline constexpr std::int32_t kMessageName = 35;
inline constexpr std::int32_t kMessageLength = 36;
inline constexpr std::int32_t kMessageBytes = 37;
inline constexpr std::int32_t kMessageChannel = 39;
inline constexpr std::int32_t kLongitude = 2379;
inline constexpr std::int32_t kLatitude = 2380;
inline constexpr std::int32_t kFileMark = 32284;

}  // namespace loom::analysis
