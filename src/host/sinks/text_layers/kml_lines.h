#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/sinks/layer.h"

namespace loom {

// A run of neighbouring samples of one class.
struct KmlLine {
  std::optional<std::size_t> value_class;
  std::vector<GeoPoint> points;
  double first_s = kNoNumber;
  double last_s = kNoNumber;
};

// Joins the samples of a layer to lines. A sample without a value belongs to the class of the one before. A line ends
// where the class changes or its tile ends, with the sample that begins the next one, at the antimeridian, where it is
// cut, at a row without a position and at a gap in time.
class KmlLines {
 public:
  using Done = std::function<void(const KmlLine&)>;
  // Tiles are squares of so many degrees; 0: no tiles.
  KmlLines(double tile_degrees, Done done) : tile_degrees_(tile_degrees), done_(std::move(done)) {}

  void Add(const GeoPoint& point, double time_s, std::optional<std::size_t> value_class);
  void Break();  // a row without a position
  // Points that lines have beside one for every sample.
  std::int64_t ExtraPoints() const { return extra_points_; }

 private:
  bool IsSameTile(const GeoPoint& a, const GeoPoint& b) const;
  void Append(const GeoPoint& point, double time_s);
  void CrossAntimeridian(const GeoPoint& to, double time_s);
  void StartAnew(const GeoPoint& point, double time_s, std::optional<std::size_t> value_class);

  double tile_degrees_;
  Done done_;
  KmlLine line_;
  std::optional<std::size_t> last_class_;
  std::int64_t extra_points_ = 0;
};

}  // namespace loom
