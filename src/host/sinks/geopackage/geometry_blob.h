#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>

#include "host/sinks/layer.h"

namespace loom {

static_assert(std::endian::native == std::endian::little);

// Geometries as a GeoPackage holds them (2.1.3): head, for polygons their bounds, then well-known binary;
// little-endian, WGS 84. What is given out is valid until the next one is made.
class GeometryBlob {
 public:
  std::string_view Point(const GeoPoint& point) {
    bytes_.clear();
    PutHead(0);
    PutWkbHead(1);
    Put(point);
    return bytes_;
  }
  std::string_view Polygon(std::span<const GeoPoint> ring, const GeoBox& box) {
    bytes_.clear();
    PutHead(1);
    for (const double bound : {box.west, box.east, box.south, box.north}) PutRaw(bound);
    PutWkbHead(3);
    PutRaw(std::uint32_t{1});
    PutRaw(static_cast<std::uint32_t>(ring.size()));
    for (const GeoPoint& point : ring) Put(point);
    return bytes_;
  }
  // The first point of what was made like this; none where the bytes are too few.
  static GeoPoint FirstPoint(std::string_view blob) {
    const bool has_bounds = blob.size() > 3 && (blob[3] & 0x0E) != 0;
    const std::size_t at = has_bounds ? 8 + 32 + 5 + 8 : 8 + 5;
    GeoPoint point;
    if (blob.size() < at + sizeof point) return point;
    std::memcpy(&point.longitude, blob.data() + at, sizeof(double));
    std::memcpy(&point.latitude, blob.data() + at + sizeof(double), sizeof(double));
    return point;
  }

 private:
  template <class Value>
  void PutRaw(Value value) {
    char raw[sizeof value];
    std::memcpy(raw, &value, sizeof value);
    bytes_.append(raw, sizeof raw);
  }
  void PutHead(int bounds) {
    bytes_ += {'G', 'P', 0, static_cast<char>(1 | bounds << 1)};
    PutRaw(std::int32_t{4326});
  }
  void PutWkbHead(std::uint32_t type) {
    bytes_ += '\1';
    PutRaw(type);
  }
  void Put(const GeoPoint& point) {
    PutRaw(point.longitude);
    PutRaw(point.latitude);
  }

  std::string bytes_;
};

}  // namespace loom
