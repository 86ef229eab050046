#pragma once

#include <cstdint>
#include <vector>

#include "host/analysis/classes.h"
#include "host/analysis/series.h"

namespace loom::analysis {

// Bar k counts the values from first + k * step up to below first + (k + 1) * step.
struct Histogram {
  double first = 0.0;
  double step = 0.0;
  std::vector<std::uint64_t> counts;

  // Share of all values below the upper end of each bar.
  std::vector<double> Cumulative() const;
};

// Of the valid ones among the values. All are NaN when there is none.
struct Statistics {
  std::uint64_t count = 0;
  std::uint64_t invalid = 0;  // values that are NaN
  double minimum = kNoValue;
  double mean = kNoValue;
  double maximum = kNoValue;
  double percentile_5 = kNoValue;  // between the two nearest ranks in proportion (rank 1 + p * (count - 1))
  double percentile_50 = kNoValue;
  double percentile_95 = kNoValue;
  std::vector<std::uint64_t> classes;  // how many values are in each class of the scale
  Histogram histogram;
};

Statistics Summarise(std::vector<double> values, const Scale& scale);

}  // namespace loom::analysis
