#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory_resource>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/cstring.h"

// Rows on their way out of the program: what a layer is, and its rows block by block. Texts are UTF-8.
namespace loom {

inline constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

enum class ColumnType { kBool, kShort, kInt, kLong, kReal, kText, kTime };

// What the rows hold of a column, for formats whose fields have a width.
struct ColumnFacts {
  double minimum = kNoNumber;
  double maximum = kNoNumber;
  int decimals = 0;            // most digits behind the point
  std::size_t text_bytes = 0;  // of the longest text
};

struct LayerColumn {
  std::string name;
  std::string unit;
  ColumnType type = ColumnType::kText;
  bool has_range = false;  // that the catalogue gives
  double minimum = kNoNumber;
  double maximum = kNoNumber;
  ColumnFacts facts = {};

  bool IsText() const { return type == ColumnType::kText; }
};

// How the rows of a layer are coloured: by classes of the values of a column of numbers.
struct LayerStyle {
  std::size_t column = 0;
  std::vector<double> limits;        // ascending; a value on a limit belongs to the class above it
  std::vector<std::string> colours;  // "#rrggbb", one more than limits

  // Nothing for a value that is missing.
  std::optional<std::size_t> ClassOf(double value) const {
    if (value != value) return std::nullopt;
    return static_cast<std::size_t>(std::ranges::upper_bound(limits, value) - limits.begin());
  }
};

enum class LayerShape { kPoint, kPolygon };

struct LayerSchema {
  std::string name;
  std::string description;
  CString source;  // names the rows in notes
  LayerShape shape = LayerShape::kPoint;
  bool is_track = false;  // rows follow a way
  std::vector<LayerColumn> columns;
  std::optional<LayerStyle> style;
  std::int64_t rows = 0;
};

// Degrees, WGS 84.
struct GeoPoint {
  double longitude = kNoNumber;
  double latitude = kNoNumber;

  bool IsThere() const { return longitude == longitude; }
  friend bool operator==(const GeoPoint&, const GeoPoint&) = default;
};

struct GeoBox {
  double west = std::numeric_limits<double>::infinity();
  double south = std::numeric_limits<double>::infinity();
  double east = -std::numeric_limits<double>::infinity();
  double north = -std::numeric_limits<double>::infinity();

  friend bool operator==(const GeoBox&, const GeoBox&) = default;
  bool IsEmpty() const { return west > east; }
  void Add(const GeoPoint& point) {
    west = std::min(west, point.longitude);
    south = std::min(south, point.latitude);
    east = std::max(east, point.longitude);
    north = std::max(north, point.latitude);
  }
};

// Rows of a layer, column by column. Texts live until the block is begun anew.
class RowBlock {
 public:
  static constexpr std::size_t kMostRows = 512;

  // One value a row; texts in columns of texts, elsewhere numbers. A time is in seconds since 1970. What is missing is
  // NaN, or an empty text.
  struct Column {
    std::vector<double> numbers;
    std::vector<std::string_view> texts;
  };

  void Start(const LayerSchema& schema, std::int64_t first_row);
  std::string_view Keep(std::string_view text);

  std::int64_t first_row = 1;  // in the layer
  std::size_t rows = 0;
  std::vector<GeoPoint> points;              // of layers of points
  std::vector<std::vector<GeoPoint>> rings;  // of layers of polygons: closed, empty where there is none
  std::vector<Column> columns;

 private:
  std::pmr::monotonic_buffer_resource texts_;
};

// Where rows come from.
class ILayerSource {
 public:
  virtual ~ILayerSource() = default;
  virtual const LayerSchema& Schema() const = 0;
  virtual void GoToStart() = 0;
  // False behind the last row.
  virtual bool Next(RowBlock& block) = 0;
};

// Calls visit(point) for every point of a row.
template <class Visit>
void ForEachPoint(const RowBlock& block, std::size_t row, Visit visit) {
  if (block.points[row].IsThere()) visit(block.points[row]);
  for (const GeoPoint& point : block.rings[row]) visit(point);
}

}  // namespace loom
