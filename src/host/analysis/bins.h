#pragma once

#include <cstdint>
#include <limits>
#include <vector>

#include "host/analysis/series.h"

namespace loom::analysis {

// What weighs the same in a statistic: every sample, every stretch of time, every stretch of the way, or every square
// of a grid. Except for the first, the values of a bin count as one, their mean.
enum class Weighting { kSample, kTime, kDistance, kGrid };

struct BinSizes {
  double time_s = 1.0;
  double distance_m = 10.0;
  double grid_m = 50.0;
};

inline constexpr std::uint32_t kNoBin = std::numeric_limits<std::uint32_t>::max();

struct Bins {
  std::vector<std::uint32_t> of_row;  // kNoBin for a row without time or position
  std::uint32_t count = 0;
  double length_m = 0.0;  // of the way, as far as stretches measure it
};

// Stretches of equal length that begin at whole multiples of it since 1970.
Bins TimeBins(const Samples& samples, double size_s);

// A bin begins at the first position, and wherever the position is at least `size_m` away from where the last bin
// began: whoever stands still stays in a bin, whatever the receiver's error below that.
Bins DistanceBins(const Samples& samples, double size_m);

// Squares of `size_m` north and east of the equator and the meridian of Greenwich, with degrees as long as they are in
// the middle between the southernmost and the northernmost position.
Bins GridBins(const Samples& samples, double size_m);

// None for Weighting::kSample.
Bins MakeBins(const Samples& samples, Weighting weighting, const BinSizes& sizes);

// The mean of the valid samples in each bin that has some.
std::vector<double> MeansByBin(const Series& series, const Bins& bins);

}  // namespace loom::analysis
