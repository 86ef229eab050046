#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace loom::simulation {

// Metres east and north of the middle of the town.
struct PlanePoint {
  double east_m = 0.0;
  double north_m = 0.0;
};
double DistanceBetween(const PlanePoint& a, const PlanePoint& b);

struct GeoPoint {
  double longitude = 0.0;  // degrees
  double latitude = 0.0;
};
GeoPoint ToDegrees(const PlanePoint& point);

struct RoutePoint {
  PlanePoint at;
  PlanePoint reported;       // with the error of the receiver
  bool has_position = true;  // the receiver knows where it is
};

// How somebody moves on a grid of streets or corridors.
struct RouteStyle {
  double block_m;   // between two crossings
  double extent_m;  // turns back there
  double speed_mps;
  double acceleration;  // m/s^2
  double stop_chance;   // per crossing
  double longest_stop_s;
  double position_error_m;
};
inline constexpr RouteStyle kDrive{250.0, 2500.0, 13.0, 1.5, 0.35, 40.0, 2.0};
inline constexpr RouteStyle kWalk{20.0, 80.0, 1.2, 1.0, 0.15, 15.0, 0.3};

// The points of a route, one per step.
std::vector<RoutePoint> MakeRoute(const RouteStyle& style, std::size_t steps, double step_s, std::uint64_t seed);

}  // namespace loom::simulation
