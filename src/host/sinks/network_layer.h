#pragma once

#include <span>
#include <vector>

#include "host/netdb/network_database.h"
#include "host/sinks/layer.h"

namespace loom {

struct CellDrawing {
  LayerShape shape = LayerShape::kPolygon;
  double radius_m = 150;
};

// The rows of a network-element table with their positions. As polygons a cell is a sector around its azimuth, of its
// beam width or 65 degrees, and without an azimuth a circle.
class NetworkLayer final : public ILayerSource {
 public:
  // `columns` as the table has them, any case; empty: all. Throws Error for a column or a table that is not there.
  NetworkLayer(NetworkDatabase& database, const CString& table, std::span<const CString> columns,
               const CellDrawing& drawing);

  const LayerSchema& Schema() const override { return schema_; }
  LayerSchema& EditSchema() { return schema_; }
  void GoToStart() override { next_row_ = 0; }
  bool Next(RowBlock& block) override;

 private:
  const NetworkValue* ValueOf(const NetworkRow& row, const CString& column) const;
  double NumberOf(const NetworkRow& row, const char* column) const;
  std::vector<CString> AllColumns(const CString& table) const;
  void AddColumn(const CString& name);
  void Take(RowBlock& block, std::size_t at) const;

  std::vector<NetworkRow> rows_;
  std::vector<CString> columns_;  // as in the schema
  LayerSchema schema_;
  CellDrawing drawing_;
  std::size_t next_row_ = 0;
};

// Closed ring around a sector with its corner at the cell; a circle when `azimuth` is NaN. `beam_width` in degrees.
std::vector<GeoPoint> SectorRing(const GeoPoint& cell, double azimuth, double beam_width, double radius_m);

}  // namespace loom
