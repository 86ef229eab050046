#include "host/sinks/text_layers/kml_lines.h"

#include <cmath>

namespace loom {
namespace {

constexpr double kGap_s = 60;

}  // namespace

bool KmlLines::IsSameTile(const GeoPoint& a, const GeoPoint& b) const {
  if (tile_degrees_ == 0) return true;
  return std::floor(a.longitude / tile_degrees_) == std::floor(b.longitude / tile_degrees_) &&
         std::floor(a.latitude / tile_degrees_) == std::floor(b.latitude / tile_degrees_);
}

void KmlLines::Append(const GeoPoint& point, double time_s) {
  line_.points.push_back(point);
  if (std::isnan(line_.first_s)) line_.first_s = time_s;
  if (!std::isnan(time_s)) line_.last_s = time_s;
}

void KmlLines::Break() {
  if (!line_.points.empty()) done_(line_);
  line_ = {};
}

void KmlLines::StartAnew(const GeoPoint& point, double time_s, std::optional<std::size_t> value_class) {
  line_.value_class = value_class;
  Append(point, time_s);
}

// Both sides get the point at which the line crosses.
void KmlLines::CrossAntimeridian(const GeoPoint& to, double time_s) {
  const GeoPoint from = line_.points.back();
  const double side = from.longitude > 0 ? 180 : -180;
  const double before = side - from.longitude;
  const double behind = to.longitude + side;
  const double share = before + behind != 0 ? before / (before + behind) : 0;
  const double latitude = from.latitude + share * (to.latitude - from.latitude);
  Append({side, latitude}, time_s);
  const auto value_class = line_.value_class;
  Break();
  StartAnew({-side, latitude}, time_s, value_class);
  extra_points_ += 2;
}

void KmlLines::Add(const GeoPoint& point, double time_s, std::optional<std::size_t> value_class) {
  const bool is_gap = std::abs(time_s - line_.last_s) > kGap_s;
  if (line_.points.empty() || is_gap) {
    if (is_gap) last_class_ = {};
    Break();
  }
  if (value_class) last_class_ = value_class;
  if (line_.points.empty()) return StartAnew(point, time_s, last_class_);
  if (std::abs(point.longitude - line_.points.back().longitude) > 180) CrossAntimeridian(point, time_s);
  const bool goes_on = line_.value_class == last_class_ && IsSameTile(line_.points.back(), point);
  Append(point, time_s);
  if (goes_on) return;
  Break();
  StartAnew(point, time_s, last_class_);
  ++extra_points_;
}

}  // namespace loom
