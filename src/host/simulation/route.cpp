#include "host/simulation/route.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "host/simulation/random.h"

namespace loom::simulation {
namespace {

constexpr GeoPoint kMiddle{116.3975, 39.9087};
constexpr double kMetresPerDegree = 111'195.0;  // of a meridian
constexpr double kTurnSpeedShare = 0.3;
constexpr double kGapChancePerSecond = 0.001;

// Moves from crossing to crossing.
class Vehicle {
 public:
  Vehicle(const RouteStyle& style, Random& random) : style_(style), random_(random) { LeaveCrossing(); }

  PlanePoint Move(double step_s) {
    if (waiting_s_ > 0.0) {
      waiting_s_ -= step_s;
      return at_;
    }
    const double braking_mps = std::sqrt(end_speed_ * end_speed_ + 2.0 * style_.acceleration * left_m_);
    const double wanted_mps = std::min(style_.speed_mps, braking_mps);
    const double change = style_.acceleration * step_s;
    speed_ = std::clamp(wanted_mps, speed_ - 2.0 * change, speed_ + change);
    double way_m = std::max(speed_, 0.1 * style_.speed_mps) * step_s;
    while (way_m >= left_m_) {
      Advance(left_m_);
      way_m -= left_m_;
      ReachCrossing();
      if (waiting_s_ > 0.0) return at_;
    }
    Advance(way_m);
    left_m_ -= way_m;
    return at_;
  }

 private:
  static constexpr std::array<PlanePoint, 4> kHeadings{{{0, 1}, {1, 0}, {0, -1}, {-1, 0}}};

  void Advance(double way_m) {
    at_.east_m += kHeadings[heading_].east_m * way_m;
    at_.north_m += kHeadings[heading_].north_m * way_m;
  }
  bool Leaves(const PlanePoint& from, const PlanePoint& way) const {
    return from.east_m * way.east_m + from.north_m * way.north_m >= style_.extent_m;
  }
  void ReachCrossing() {
    if (end_speed_ == 0.0) {
      waiting_s_ = random_.Between(0.2, 1.0) * style_.longest_stop_s;
      speed_ = 0.0;
    }
    heading_ = next_heading_;
    LeaveCrossing();
  }
  void LeaveCrossing() {
    left_m_ = style_.block_m;
    next_heading_ = (heading_ + std::array<std::size_t, 4>{0, 0, 1, 3}[random_.Below(4)]) % 4;
    const PlanePoint end{at_.east_m + kHeadings[heading_].east_m * left_m_,
                         at_.north_m + kHeadings[heading_].north_m * left_m_};
    for (int i = 0; i < 3 && Leaves(end, kHeadings[next_heading_]); ++i) next_heading_ = (next_heading_ + 1) % 4;
    const bool turns = next_heading_ != heading_;
    end_speed_ = random_.Chance(style_.stop_chance) ? 0.0 : style_.speed_mps * (turns ? kTurnSpeedShare : 1.0);
  }

  const RouteStyle& style_;
  Random& random_;
  PlanePoint at_;
  std::size_t heading_ = 0;
  std::size_t next_heading_ = 0;
  double left_m_ = 0.0;     // to the next crossing
  double end_speed_ = 0.0;  // there; 0: a stop
  double speed_ = 0.0;
  double waiting_s_ = 0.0;
};

}  // namespace

double DistanceBetween(const PlanePoint& a, const PlanePoint& b) {
  return std::hypot(a.east_m - b.east_m, a.north_m - b.north_m);
}

GeoPoint ToDegrees(const PlanePoint& point) {
  const double parallel = kMetresPerDegree * std::cos(kMiddle.latitude * std::numbers::pi / 180.0);
  return {kMiddle.longitude + point.east_m / parallel, kMiddle.latitude + point.north_m / kMetresPerDegree};
}

std::vector<RoutePoint> MakeRoute(const RouteStyle& style, std::size_t steps, double step_s, std::uint64_t seed) {
  Random random(seed);
  Vehicle vehicle(style, random);
  std::vector<RoutePoint> route(steps);
  double gap_s = 0.0;
  for (std::size_t step = 0; step < steps; ++step) {
    RoutePoint& point = route[step];
    point.at = vehicle.Move(step_s);
    point.reported = {point.at.east_m + random.Spread() * style.position_error_m,
                      point.at.north_m + random.Spread() * style.position_error_m};
    // One gap is certain, at six tenths of the way.
    if (step == steps * 6 / 10 || random.Chance(kGapChancePerSecond * step_s)) gap_s = random.Between(5.0, 25.0);
    point.has_position = gap_s <= 0.0;
    gap_s -= step_s;
  }
  return route;
}

}  // namespace loom::simulation
