#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "host/analysis/served_cells.h"
#include "platform/cstring.h"

namespace loom {
class NetworkDatabase;
}

namespace loom::analysis {

// A cell of the project that has a position.
struct NetworkCell {
  std::string_view protocol;  // lives as long as the program
  CString name = {};          // the site's where the cell has none
  double longitude = 0.0;
  double latitude = 0.0;
  std::optional<double> azimuth = {};     // degrees from north
  std::optional<double> beam_width = {};  // degrees
  std::optional<std::int64_t> lac = {}, ci = {}, rnc = {}, uarfcn = {}, cell_parameter_id = {}, bcch = {}, bsic = {},
                              pci = {}, earfcn = {}, frequency_mhz = {};
};

std::vector<NetworkCell> ReadNetworkCells(NetworkDatabase& network);

// The cells by what served cells are known by.
class CellFinder {
 public:
  explicit CellFinder(const std::vector<NetworkCell>& cells) : cells_(cells) {}
  // Place of the cell that a served cell is; of several, the one next to where it served. Nothing where none fits, or
  // several do and no position tells which.
  std::optional<std::size_t> Find(const ServedCell& served, std::string_view protocol) const;

 private:
  const std::vector<NetworkCell>& cells_;
};

}  // namespace loom::analysis
