#include "host/analysis/thinning.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

namespace loom::analysis {
namespace {

// The lowest and the highest valid value of a stretch, by the place of their samples; the first of equal ones.
class Extremes {
 public:
  void Take(std::uint32_t place, double value) {
    if (std::isnan(value)) return;
    if (!lowest_ || value < lowest_value_) {
      lowest_ = place;
      lowest_value_ = value;
    }
    if (!highest_ || value > highest_value_) {
      highest_ = place;
      highest_value_ = value;
    }
  }
  // Both in their order, once where they are the same.
  template <class Keep>
  void Give(Keep keep) const {
    if (!lowest_) return;
    keep(std::min(*lowest_, *highest_));
    if (*lowest_ != *highest_) keep(std::max(*lowest_, *highest_));
  }

 private:
  std::optional<std::uint32_t> lowest_;
  std::optional<std::uint32_t> highest_;
  double lowest_value_ = 0.0;
  double highest_value_ = 0.0;
};

// Visits the extremes of each stretch of the rows [first, end), cut into `buckets` ones.
template <class Keep>
void VisitExtremes(const Series& series, std::uint64_t first, std::uint64_t end, std::uint64_t buckets, Keep keep) {
  auto sample = static_cast<std::uint32_t>(std::ranges::lower_bound(series.at, first) - series.at.begin());
  for (std::uint64_t bucket = 1; bucket <= buckets; ++bucket) {
    const std::uint64_t border = first + (end - first) * bucket / buckets;
    Extremes extremes;
    for (; sample < series.at.size() && series.at[sample] < border; ++sample)
      extremes.Take(sample, series.values[sample]);
    extremes.Give(keep);
  }
}

constexpr int kMostRounds = 3;

// The first and the last row and the extremes of each stretch; without a series the first row of each.
std::vector<std::uint32_t> ExtremeRows(std::size_t rows, std::span<const Series> series, std::size_t stretches) {
  std::vector<bool> is_kept(rows);
  is_kept.front() = is_kept.back() = true;
  for (const Series& one : series)
    VisitExtremes(one, 0, rows, stretches, [&](std::uint32_t sample) { is_kept[one.at[sample]] = true; });
  for (std::size_t at = 0; series.empty() && at < stretches; ++at) is_kept[rows * at / stretches] = true;
  std::vector<std::uint32_t> kept;
  for (std::uint32_t row = 0; row < rows; ++row) {
    if (is_kept[row]) kept.push_back(row);
  }
  return kept;
}

}  // namespace

std::vector<std::uint32_t> ThinRows(std::size_t rows, std::span<const Series> series, std::size_t most) {
  if (rows <= most) {
    std::vector<std::uint32_t> all(rows);
    std::iota(all.begin(), all.end(), 0u);
    return all;
  }
  const std::size_t rows_a_stretch = std::max<std::size_t>(2 * series.size(), 1);
  std::size_t stretches = std::max<std::size_t>((std::max<std::size_t>(most, 2) - 2) / rows_a_stretch, 1);
  std::vector<std::uint32_t> kept = ExtremeRows(rows, series, stretches);
  // One row may be the extreme of many series: there is room for more stretches.
  for (int round = 0; round < kMostRounds && kept.size() < most - most / 8; ++round) {
    stretches = stretches * most / kept.size();
    std::vector<std::uint32_t> more = ExtremeRows(rows, series, stretches);
    if (more.size() > most) break;
    kept = std::move(more);
  }
  return kept;
}

std::vector<std::uint32_t> ThinSeries(const Series& series, std::uint32_t first_row, std::uint32_t end_row,
                                      std::uint32_t buckets) {
  std::vector<std::uint32_t> kept;
  if (first_row < end_row && buckets > 0)
    VisitExtremes(series, first_row, end_row, buckets, [&](std::uint32_t sample) { kept.push_back(sample); });
  return kept;
}

}  // namespace loom::analysis
