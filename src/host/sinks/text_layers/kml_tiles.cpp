#include "host/sinks/text_layers/kml_tiles.h"

#include <cmath>

namespace loom {

KmlTile& KmlTiles::TileAt(const GeoPoint& point) {
  if (is_one_) return tiles_[{0, 0}];
  const auto place = [&](double degrees) {
    return static_cast<std::int32_t>(std::floor(degrees / kTileDegrees)) >> halvings_;
  };
  if (tiles_.size() > kMostTiles) PutTogether();
  return tiles_[{place(point.longitude), place(point.latitude)}];
}

void KmlTiles::PutTogether() {
  std::map<Place, KmlTile> fewer;
  for (auto& [place, tile] : tiles_) {
    KmlTile& into = fewer[{place.first >> 1, place.second >> 1}];
    into.lines += tile.lines;
    into.points += tile.points;
    into.box.Add({tile.box.west, tile.box.south});
    into.box.Add({tile.box.east, tile.box.north});
  }
  tiles_ = std::move(fewer);
  ++halvings_;
}

}  // namespace loom
