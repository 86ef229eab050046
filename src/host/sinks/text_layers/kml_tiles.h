#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "host/sinks/layer.h"

namespace loom {

// What of a layer lies in one square of the map.
struct KmlTile {
  std::string lines;   // placemarks
  std::string points;  // likewise
  GeoBox box;
};

// Squares of a layer. Where they become too many, four are put together.
class KmlTiles {
 public:
  static constexpr double kTileDegrees = 0.05;
  static constexpr std::size_t kMostTiles = 1000;

  explicit KmlTiles(bool is_one) : is_one_(is_one) {}
  double TileDegrees() const { return is_one_ ? 0 : kTileDegrees; }
  KmlTile& TileAt(const GeoPoint& point);

  using Place = std::pair<std::int32_t, std::int32_t>;
  const std::map<Place, KmlTile>& Tiles() const { return tiles_; }

 private:
  void PutTogether();

  bool is_one_;
  int halvings_ = 0;
  std::map<Place, KmlTile> tiles_;
};

}  // namespace loom
