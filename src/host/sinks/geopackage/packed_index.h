#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/sinks/geopackage/sqlite_file.h"
#include "host/sinks/layer.h"

namespace loom {

// An R-tree as SQLite's module of that name keeps it, built from all boxes at once: sorted into tiles, every node full,
// the tables of its nodes written directly.
class PackedIndex {
 public:
  // Rows in ascending order of their ids, which have 32 bits.
  void Add(std::uint32_t id, const GeoBox& box);
  bool IsEmpty() const { return cells_.empty(); }
  // Makes the table `name` and its node tables.
  void Write(SqliteFile& file, const std::string& name);

 private:
  // Bounds outside of the exact ones, as the module rounds.
  struct Cell {
    std::uint32_t id;
    float west, east, south, north;
  };
  class Writer;

  static void SortIntoTiles(std::vector<Cell>& cells);

  std::vector<Cell> cells_;
};

}  // namespace loom
