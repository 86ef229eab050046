#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "components/records/blocks.h"
#include "host/simulation/radio.h"
#include "host/simulation/random.h"
#include "host/simulation/record_sink.h"

namespace loom::simulation {

// A TD-SCDMA scanner that tells carriers and cells in turns, and an LTE scanner where there is LTE.
class Scanner {
 public:
  explicit Scanner(std::uint64_t seed) : random_(seed) {}

  // Levels strongest first; no LTE levels, no LTE scanner.
  void Step(const Moment& moment, std::span<const CellLevel> td, std::span<const CellLevel> lte, RecordSink& sink);

 private:
  void PutCarriers(const Moment& moment, std::span<const CellLevel> td, RecordSink& sink);
  void PutCells(const Moment& moment, std::span<const CellLevel> td, RecordSink& sink);
  void PutLte(const Moment& moment, std::span<const CellLevel> lte, RecordSink& sink);

  Random random_;
  std::uint64_t count_ = 0;
  std::array<ScanPccpch, 8> pccpch_;
  std::array<ScanDwPch, 4> dwpch_;
  std::array<ScanRssi, 6> rssi_;
  std::array<float, 64> spectrum_;
  std::array<std::uint32_t, 1> spectrum_carriers_;
  std::array<ScanCell, 8> cells_;
  std::array<ScanCellRssi, 4> cell_rssi_;
  std::array<LteScanEntry, 6> lte_;
};

}  // namespace loom::simulation
