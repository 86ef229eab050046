#pragma once

#include <array>
#include <cstdint>

namespace loom {

// Downlink channel numbers of an E-UTRA band and the frequency of the first one; steps of 0.1 MHz (3GPP
// TS 36.101, 5.7.3).
struct EarfcnRange {
  std::uint16_t first;
  std::uint16_t last;
  std::int32_t first_mhz;
};

// clang-format off
inline constexpr std::array kEarfcnRanges{
    EarfcnRange{38650, 39649, 2300},  // band 40
    EarfcnRange{37750, 38249, 2570},  // band 38
};
// clang-format on

// Downlink frequency in whole MHz, rounded down; 0 for a channel number of any other band, or one that is missing.
constexpr std::int32_t EarfcnToMHz(std::uint16_t earfcn) {
  for (const EarfcnRange& range : kEarfcnRanges) {
    if (earfcn >= range.first && earfcn <= range.last) return range.first_mhz + (earfcn - range.first) / 10;
  }
  return 0;
}

// Key of an LTE cell: the physical cell id in the high 16 bits, the downlink frequency in MHz (0 where it is not known)
// in the low ones.
constexpr std::int32_t LteCellKey(std::uint16_t physical_cell_id, std::uint16_t earfcn) {
  return static_cast<std::int32_t>((std::uint32_t{physical_cell_id} << 16) +
                                   static_cast<std::uint32_t>(EarfcnToMHz(earfcn)));
}

}  // namespace loom
