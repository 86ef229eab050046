#pragma once

#include <cstdint>

// What the TD-SCDMA measurements have in common.
namespace loom {

inline constexpr std::int32_t kTimeslots = 7;
inline constexpr std::int32_t kFirstDpchTimeslot = 2;
inline constexpr std::int32_t kDpchTimeslots = kTimeslots - kFirstDpchTimeslot;
inline constexpr std::int32_t kMaxNeighbours = 32;
inline constexpr std::int32_t kLevelOffset = -116;  // reported levels are 116 above dBm (3GPP TS 25.123)

}  // namespace loom
