#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/analysis/series.h"

namespace loom::analysis {

// By what a serving cell is told from others.
enum class CellKey {
  kLacCi,      // two numbers
  kTdKey,      // LAC in the high, cell id in the low 16 bits, or a cell identity of 28 bits
  kUarfcnCpi,  // two numbers
  kBcchBsic,   // two numbers
  kLteKey,     // physical cell id in the high, MHz in the low 16 bits
  kEci,        // E-UTRAN cell identity, 28 bits
  kPciEarfcn,  // two numbers
  kCi,
  kPci,
};

struct CellIdentity {
  CellKey key = CellKey::kCi;
  std::int64_t first = 0;
  std::int64_t second = 0;
  friend auto operator<=>(const CellIdentity&, const CellIdentity&) = default;
};

// As engineers read it: "4660-10181", "PCI 460, 2330 MHz".
std::string LabelOf(const CellIdentity& cell);

struct ServedCell {
  CellIdentity identity;
  std::uint64_t samples = 0;  // of the level, valid ones
  double level_sum = 0.0;
  double time_s = 0.0;
  double longitude_sum = 0.0;  // of the rows that name the cell and have a position
  double latitude_sum = 0.0;
  std::uint64_t positions = 0;

  double MeanLevel() const { return samples > 0 ? level_sum / static_cast<double>(samples) : kNoValue; }
};

// Two rows one after the other that name different cells.
struct Handover {
  std::uint32_t at = 0;  // place of the second row
  std::uint32_t from = 0;
  std::uint32_t to = 0;
};

struct ServedCells {
  static constexpr std::int32_t kNone = -1;

  std::vector<ServedCell> cells = {};  // in the order of their first row
  std::vector<Handover> handovers = {};
  std::vector<std::int32_t> of_row = {};  // the cell that a row names, or that was named before it
  std::int32_t level_element = 0;         // 0 when no cell is named
};

// What a row says of a cell holds until another row says more, but no longer than this.
inline constexpr double kLongestHold_s = 10.0;

// The elements that a stream of the protocol names its serving cell by, and its level.
std::vector<std::int32_t> CellElements(std::string_view protocol);

// `samples` hold the elements that CellElements gave; those that name a cell best are used.
ServedCells FindServedCells(const Samples& samples, std::string_view protocol);

}  // namespace loom::analysis
