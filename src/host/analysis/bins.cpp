#include "host/analysis/bins.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <unordered_map>
#include <utility>

#include "components/measures.h"

namespace loom::analysis {
namespace {

// Numbers keys in the order in which they come; most come again at once.
class KeyNumbers {
 public:
  std::uint32_t Of(std::int64_t key) {
    if (numbers_.empty() || key != last_key_) {
      last_key_ = key;
      last_ = numbers_.try_emplace(key, static_cast<std::uint32_t>(numbers_.size())).first->second;
    }
    return last_;
  }
  std::uint32_t Count() const { return static_cast<std::uint32_t>(numbers_.size()); }

 private:
  std::unordered_map<std::int64_t, std::uint32_t> numbers_;
  std::int64_t last_key_ = 0;
  std::uint32_t last_ = 0;
};

std::int64_t Whole(double value) { return static_cast<std::int64_t>(std::floor(value)); }

// Metres in a degree at a latitude on the WGS-84 ellipsoid, by its radii of curvature.
struct DegreeLength {
  double longitude_m;
  double latitude_m;
};
DegreeLength DegreesAt(double latitude) {
  constexpr double kRadians = std::numbers::pi / 180.0;
  constexpr double kSemiMajorAxis_m = 6378137.0;
  constexpr double kFlattening = 1.0 / 298.257223563;
  constexpr double kEccentricitySquared = kFlattening * (2.0 - kFlattening);
  const double sine = std::sin(latitude * kRadians);
  const double w_squared = 1.0 - kEccentricitySquared * sine * sine;
  const double normal_m = kSemiMajorAxis_m / std::sqrt(w_squared);
  return {kRadians * normal_m * std::cos(latitude * kRadians),
          kRadians * normal_m * (1.0 - kEccentricitySquared) / w_squared};
}

double MiddleLatitude(const Samples& samples) {
  double south = 90.0;
  double north = -90.0;
  for (std::size_t row = 0; row < samples.RowCount(); ++row) {
    if (!samples.HasPosition(row)) continue;
    south = std::min(south, samples.latitude[row]);
    north = std::max(north, samples.latitude[row]);
  }
  return south <= north ? (south + north) / 2.0 : 0.0;
}

}  // namespace

Bins TimeBins(const Samples& samples, double size_s) {
  Bins bins;
  KeyNumbers numbers;
  bins.of_row.reserve(samples.RowCount());
  for (const double time_s : samples.time_s)
    bins.of_row.push_back(std::isnan(time_s) ? kNoBin : numbers.Of(Whole(time_s / size_s)));
  bins.count = numbers.Count();
  return bins;
}

Bins DistanceBins(const Samples& samples, double size_m) {
  Bins bins;
  bins.of_row.assign(samples.RowCount(), kNoBin);
  std::size_t start = 0;
  for (std::size_t row = 0; row < samples.RowCount(); ++row) {
    if (!samples.HasPosition(row)) continue;
    const double way_m = bins.count == 0 ? 0.0
                                         : CalDistance(samples.longitude[start], samples.latitude[start],
                                                       samples.longitude[row], samples.latitude[row]);
    if (bins.count == 0 || way_m >= size_m) {
      bins.length_m += way_m;
      ++bins.count;
      start = row;
    }
    bins.of_row[row] = bins.count - 1;
  }
  return bins;
}

Bins GridBins(const Samples& samples, double size_m) {
  Bins bins;
  KeyNumbers numbers;
  const DegreeLength degree = DegreesAt(MiddleLatitude(samples));
  bins.of_row.reserve(samples.RowCount());
  for (std::size_t row = 0; row < samples.RowCount(); ++row) {
    if (!samples.HasPosition(row)) {
      bins.of_row.push_back(kNoBin);
      continue;
    }
    const std::int64_t east = Whole(samples.longitude[row] * degree.longitude_m / size_m);
    const std::int64_t north = Whole(samples.latitude[row] * degree.latitude_m / size_m);
    bins.of_row.push_back(numbers.Of(east * (std::int64_t{1} << 32) + north));
  }
  bins.count = numbers.Count();
  return bins;
}

Bins MakeBins(const Samples& samples, Weighting weighting, const BinSizes& sizes) {
  switch (weighting) {
    case Weighting::kTime:
      return TimeBins(samples, sizes.time_s);
    case Weighting::kDistance:
      return DistanceBins(samples, sizes.distance_m);
    case Weighting::kGrid:
      return GridBins(samples, sizes.grid_m);
    default:
      return {};
  }
}

std::vector<double> MeansByBin(const Series& series, const Bins& bins) {
  std::vector<double> sums(bins.count);
  std::vector<std::uint32_t> counts(bins.count);
  for (std::size_t i = 0; i < series.at.size(); ++i) {
    const std::uint32_t bin = bins.of_row[series.at[i]];
    if (bin == kNoBin || std::isnan(series.values[i])) continue;
    sums[bin] += series.values[i];
    ++counts[bin];
  }
  std::size_t kept = 0;
  for (std::size_t bin = 0; bin < sums.size(); ++bin) {
    if (counts[bin] > 0) sums[kept++] = sums[bin] / counts[bin];
  }
  sums.resize(kept);
  return sums;
}

}  // namespace loom::analysis
