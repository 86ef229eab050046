#include "host/analysis/statistics.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "host/analysis/nice_step.h"

namespace loom::analysis {
namespace {

constexpr double kMostBars = 50.0;
constexpr double kOnBorder = 1e-9;  // of a bar's width: a value so near below a border is on it

// Percentiles asked for in ascending order: what lies below one is not looked at again.
class Percentiles {
 public:
  explicit Percentiles(std::vector<double>& values) : values_(values) {}

  double At(double share) {
    const double rank = share * static_cast<double>(values_.size() - 1);
    const auto below = static_cast<std::ptrdiff_t>(rank);
    const auto place = values_.begin() + below;
    std::nth_element(values_.begin() + done_, place, values_.end());
    done_ = below;
    const double part = rank - static_cast<double>(below);
    if (part == 0.0) return *place;
    return *place + part * (*std::min_element(place + 1, values_.end()) - *place);
  }

 private:
  std::vector<double>& values_;
  std::ptrdiff_t done_ = 0;
};

Histogram HistogramOf(const std::vector<double>& values, double minimum, double maximum) {
  const bool is_whole = std::ranges::all_of(values, [](double value) { return value == std::floor(value); });
  Histogram histogram;
  histogram.step = maximum > minimum ? NiceStep((maximum - minimum) / kMostBars) : 1.0;
  if (is_whole) histogram.step = std::max(histogram.step, 1.0);
  histogram.first = std::floor(minimum / histogram.step) * histogram.step;
  const auto bar_of = [&](double value) {
    return static_cast<std::size_t>(std::max((value - histogram.first) / histogram.step + kOnBorder, 0.0));
  };
  histogram.counts.resize(bar_of(maximum) + 1);
  for (const double value : values) ++histogram.counts[bar_of(value)];
  return histogram;
}

std::vector<std::uint64_t> CountClasses(const std::vector<double>& values, const Scale& scale) {
  std::vector<std::uint64_t> counts(scale.colours.size());
  for (const double value : values) ++counts[scale.ClassOf(value)];
  return counts;
}

}  // namespace

std::vector<double> Histogram::Cumulative() const {
  const auto total = static_cast<double>(std::accumulate(counts.begin(), counts.end(), std::uint64_t{0}));
  std::vector<double> shares;
  std::uint64_t below = 0;
  for (const std::uint64_t count : counts) shares.push_back(static_cast<double>(below += count) / total);
  return shares;
}

Statistics Summarise(std::vector<double> values, const Scale& scale) {
  Statistics result;
  result.invalid = std::erase_if(values, [](double value) { return std::isnan(value); });
  result.count = values.size();
  result.classes = CountClasses(values, scale);
  if (values.empty()) return result;
  const auto [minimum, maximum] = std::ranges::minmax(values);
  result.minimum = minimum;
  result.maximum = maximum;
  result.mean = std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
  result.histogram = HistogramOf(values, minimum, maximum);
  Percentiles percentiles(values);
  result.percentile_5 = percentiles.At(0.05);
  result.percentile_50 = percentiles.At(0.5);
  result.percentile_95 = percentiles.At(0.95);
  return result;
}

}  // namespace loom::analysis
