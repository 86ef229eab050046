#include "host/sinks/geopackage/packed_index.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <span>

namespace loom {
namespace {

// As the module has them in two dimensions for pages of 4096 bytes: a head of depth and count, then cells of an id and
// four floats, all big-endian.
constexpr std::size_t kCellsANode = 51;
constexpr std::size_t kNodeBytes = 4 + kCellsANode * 24;
constexpr std::uint32_t kRoot = 1;

float Below(double value) {
  const auto near = static_cast<float>(value);
  return near > value ? std::nextafter(near, -std::numeric_limits<float>::infinity()) : near;
}

float Above(double value) {
  const auto near = static_cast<float>(value);
  return near < value ? std::nextafter(near, std::numeric_limits<float>::infinity()) : near;
}

template <class Number>
void PutBigEndian(Number number, std::string& out) {
  for (std::size_t byte = sizeof number; byte-- > 0;) out += static_cast<char>(number >> (8 * byte) & 0xFF);
}

void PutBigEndian(float number, std::string& out) { PutBigEndian(std::bit_cast<std::uint32_t>(number), out); }

std::size_t NodesFor(std::size_t cells) { return (cells + kCellsANode - 1) / kCellsANode; }

}  // namespace

void PackedIndex::Add(std::uint32_t id, const GeoBox& box) {
  cells_.push_back({id, Below(box.west), Above(box.east), Below(box.south), Above(box.north)});
}

// Slices from west to east, each of them sorted from south to north.
void PackedIndex::SortIntoTiles(std::vector<Cell>& cells) {
  const std::size_t nodes = NodesFor(cells.size());
  const auto slices = static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(nodes))));
  const std::size_t a_slice = (nodes + slices - 1) / slices * kCellsANode;
  std::ranges::sort(cells, {}, &Cell::west);
  for (std::size_t first = 0; first < cells.size(); first += a_slice) {
    const std::size_t count = std::min(a_slice, cells.size() - first);
    std::ranges::sort(std::span(cells).subspan(first, count), {}, &Cell::south);
  }
}

// Writes the nodes of one level after the other, from the leaves up.
class PackedIndex::Writer {
 public:
  Writer(SqliteFile& file, const std::string& name)
      : node_(file.Prepare("INSERT INTO " + SqlName(name + "_node") + " VALUES(?,?)")),
        parent_(file.Prepare("INSERT INTO " + SqlName(name + "_parent") + " VALUES(?,?)")),
        rowid_(file.Prepare("INSERT INTO " + SqlName(name + "_rowid") + " VALUES(?,?)")) {}

  void WriteAll(std::vector<Cell> cells) {
    leaf_of_.reserve(cells.size());
    while (cells.size() > kCellsANode) cells = WriteLevel(std::move(cells), depth_ == 0);
    WriteNode(cells, kRoot, depth_, depth_ == 0);
    WritePairs(rowid_, leaf_of_);
    WritePairs(parent_, parents_);
  }

 private:
  struct Pair {
    std::uint32_t id;
    std::uint32_t node;
  };

  std::vector<Cell> WriteLevel(std::vector<Cell> cells, bool is_leaf) {
    SortIntoTiles(cells);
    std::vector<Cell> above;
    above.reserve(NodesFor(cells.size()));
    for (std::size_t first = 0; first < cells.size(); first += kCellsANode) {
      const std::span node(cells.data() + first, std::min(kCellsANode, cells.size() - first));
      WriteNode(node, next_, 0, is_leaf);
      above.push_back(BoundsOf(node, next_++));
    }
    ++depth_;
    return above;
  }

  static Cell BoundsOf(std::span<const Cell> cells, std::uint32_t id) {
    Cell bounds = cells.front();
    bounds.id = id;
    for (const Cell& cell : cells) {
      bounds.west = std::min(bounds.west, cell.west);
      bounds.east = std::max(bounds.east, cell.east);
      bounds.south = std::min(bounds.south, cell.south);
      bounds.north = std::max(bounds.north, cell.north);
    }
    return bounds;
  }

  void WriteNode(std::span<const Cell> cells, std::uint32_t id, std::uint16_t depth, bool is_leaf) {
    bytes_.clear();
    PutBigEndian(depth, bytes_);
    PutBigEndian(static_cast<std::uint16_t>(cells.size()), bytes_);
    for (const Cell& cell : cells) {
      PutBigEndian(std::uint64_t{cell.id}, bytes_);
      for (const float bound : {cell.west, cell.east, cell.south, cell.north}) PutBigEndian(bound, bytes_);
      (is_leaf ? leaf_of_ : parents_).push_back({cell.id, id});
    }
    bytes_.resize(kNodeBytes, '\0');
    node_.BindInt(1, id);
    node_.BindBlob(2, bytes_);
    node_.Run();
  }

  static void WritePairs(SqliteStatement& statement, std::vector<Pair>& pairs) {
    std::ranges::sort(pairs, {}, &Pair::id);
    for (const Pair& pair : pairs) {
      statement.BindInt(1, pair.id);
      statement.BindInt(2, pair.node);
      statement.Run();
    }
  }

  SqliteStatement node_;
  SqliteStatement parent_;
  SqliteStatement rowid_;
  std::vector<Pair> leaf_of_;  // of rows
  std::vector<Pair> parents_;  // of nodes
  std::uint32_t next_ = kRoot + 1;
  std::uint16_t depth_ = 0;
  std::string bytes_;
};

void PackedIndex::Write(SqliteFile& file, const std::string& name) {
  file.Execute("CREATE VIRTUAL TABLE " + SqlName(name) + " USING rtree(id, minx, maxx, miny, maxy)");
  file.Execute("DELETE FROM " + SqlName(name + "_node"));
  Writer(file, name).WriteAll(std::move(cells_));
}

}  // namespace loom
