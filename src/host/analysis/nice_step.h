#pragma once

#include <cmath>

namespace loom::analysis {

// The smallest of 1, 2 and 5 times a power of ten that is not below `least` (above 0).
inline double NiceStep(double least) {
  const double power = std::pow(10.0, std::floor(std::log10(least)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= least * (1.0 - 1e-12)) return factor * power;
  }
  return 10.0 * power;
}

}  // namespace loom::analysis
