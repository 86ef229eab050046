#pragma once

#include <cmath>
#include <cstdint>
#include <numbers>

namespace loom::simulation {

// A sequence of numbers that depends on its seed alone (splitmix64), on every machine.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  std::uint64_t Next() {
    std::uint64_t z = state_ += 0x9E3779B97F4A7C15U;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
    return z ^ (z >> 31);
  }
  double Unit() { return static_cast<double>(Next() >> 11) * 0x1p-53; }  // [0, 1)
  double Between(double low, double high) { return low + (high - low) * Unit(); }
  int Below(int limit) { return static_cast<int>(Next() % static_cast<std::uint64_t>(limit)); }
  bool Chance(double probability) { return Unit() < probability; }
  // Mean 0, deviation 1; the sum of four uniform numbers, so never beyond 3.5.
  double Spread() { return (Unit() + Unit() + Unit() + Unit() - 2.0) * std::numbers::sqrt3; }

 private:
  std::uint64_t state_;
};

}  // namespace loom::simulation
