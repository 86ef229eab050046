#include "components/measures.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "platform/number.h"

namespace loom {
namespace {

// WGS-84.
constexpr double kSemiMajorAxis_m = 6378137.0;
constexpr double kFlattening = 1.0 / 298.257223563;
constexpr double kEccentricitySquared = kFlattening * (2.0 - kFlattening);
constexpr double kMeanRadius_m = 6371008.8;
constexpr double kRadians = std::numbers::pi / 180.0;

// Where the earth may be taken as flat: half a degree each way, away from the poles.
constexpr double kFlatSpan_degrees = 0.5;
constexpr double kFlatLatitude_degrees = 80.0;

struct Point {
  double x, y, z;  // metres from the centre of the earth
};

Point PointOf(double longitude, double latitude) {
  const double sin_latitude = std::sin(latitude * kRadians);
  const double cos_latitude = std::cos(latitude * kRadians);
  const double normal_m = kSemiMajorAxis_m / std::sqrt(1.0 - kEccentricitySquared * sin_latitude * sin_latitude);
  return {normal_m * cos_latitude * std::cos(longitude * kRadians),
          normal_m * cos_latitude * std::sin(longitude * kRadians),
          normal_m * (1.0 - kEccentricitySquared) * sin_latitude};
}

// The chord through the earth, bent to an arc.
double ArcDistance(double longitude1, double latitude1, double longitude2, double latitude2) {
  const Point a = PointOf(longitude1, latitude1);
  const Point b = PointOf(longitude2, latitude2);
  const double chord_m = std::hypot(a.x - b.x, a.y - b.y, a.z - b.z);
  return 2.0 * kMeanRadius_m * std::asin(std::min(chord_m / (2.0 * kMeanRadius_m), 1.0));
}

// With the radii of curvature halfway between the two latitudes.
double FlatDistance(double longitude_span, double latitude1, double latitude2) {
  const double middle = (latitude1 + latitude2) / 2.0 * kRadians;
  const double sin_middle = std::sin(middle);
  const double w_squared = 1.0 - kEccentricitySquared * sin_middle * sin_middle;
  const double normal_m = kSemiMajorAxis_m / std::sqrt(w_squared);
  const double meridian_m = normal_m * (1.0 - kEccentricitySquared) / w_squared;
  const double north_m = (latitude2 - latitude1) * kRadians * meridian_m;
  const double east_m = longitude_span * kRadians * normal_m * std::cos(middle);
  return std::sqrt(north_m * north_m + east_m * east_m);
}

}  // namespace

double CalDistance(double longitude1, double latitude1, double longitude2, double latitude2) {
  const double longitude_span = longitude2 - longitude1;
  const bool is_flat = std::abs(longitude_span) <= kFlatSpan_degrees &&
                       std::abs(latitude2 - latitude1) <= kFlatSpan_degrees &&
                       std::abs(latitude1) <= kFlatLatitude_degrees;
  return is_flat ? FlatDistance(longitude_span, latitude1, latitude2)
                 : ArcDistance(longitude1, latitude1, longitude2, latitude2);
}

bool IsEqualDouble(double a, double b) {
  constexpr double kTolerance = 1e-6;
  return a == b || std::abs(a - b) <= kTolerance;
}

CString ComposeFreqCPI(std::int32_t uarfcn, std::int32_t cell_parameter_id) {
  return Format("%d_%d", uarfcn, cell_parameter_id);
}

bool IsNumber(const CString& text) {
  constexpr std::string_view kDecimal = "+-.0123456789";
  return text.view().find_first_not_of(kDecimal) == std::string_view::npos && ParseDouble(text).has_value();
}

}  // namespace loom
