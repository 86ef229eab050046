#pragma once

#include <string>

#include "host/sinks/text_layers/kml_lines.h"
#include "host/sinks/text_layers/kml_tiles.h"

namespace loom {

// The placemarks of one layer, tile by tile.
class KmlLayer {
 public:
  static constexpr std::int64_t kMostPointRows = 20'000;

  KmlLayer(const LayerSchema& schema, bool has_tiles);
  KmlLayer(const KmlLayer&) = delete;
  KmlLayer& operator=(const KmlLayer&) = delete;

  void Add(const RowBlock& block);
  void End();

  const LayerSchema& Schema() const { return schema_; }
  const KmlTiles& Tiles() const { return tiles_; }
  // Styles of the classes, which every document repeats.
  std::string Styles() const;
  // A tile's placemarks, in folders.
  static std::string FoldersOf(const KmlTile& tile);
  // Positions in the document beside one for every row with a place.
  std::int64_t ExtraPositions() const { return extra_ + lines_.ExtraPoints(); }
  std::int64_t RowsWithPlace() const { return placed_; }
  // Of the rows, and with the points where lines are cut.
  const GeoBox& Extent() const { return extent_; }
  const GeoBox& DrawnExtent() const { return drawn_extent_; }

 private:
  void AddRow(const RowBlock& block, std::size_t row);
  void AddLine(const KmlLine& line);
  void AddPoint(const RowBlock& block, std::size_t row, std::optional<std::size_t> value_class);
  void AddPolygon(const RowBlock& block, std::size_t row, std::optional<std::size_t> value_class);
  void AppendValues(std::string& out, const RowBlock& block, std::size_t row) const;
  bool HasTimes() const { return !schema_.columns.empty() && schema_.columns.front().type == ColumnType::kTime; }

  LayerSchema schema_;
  KmlTiles tiles_;
  KmlLines lines_;
  bool has_points_;
  std::int64_t extra_ = 0;
  std::int64_t placed_ = 0;
  GeoBox extent_;
  GeoBox drawn_extent_;
};

}  // namespace loom
