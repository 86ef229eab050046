#include "host/simulation/scanner.h"

#include <algorithm>
#include <cmath>

#include "host/simulation/measurement.h"

namespace loom::simulation {
namespace {

constexpr std::int8_t kScanType = 2;
constexpr std::uint64_t kSpectrumEvery = 10;
constexpr double kScannerFading_db = 1.0;
constexpr std::uint32_t kCarrierRaster_hz = 200'000;

std::uint32_t Hertz(const Cell& cell) { return static_cast<std::uint32_t>(cell.channel) * kCarrierRaster_hz; }

}  // namespace

void Scanner::PutCarriers(const Moment& moment, std::span<const CellLevel> td, RecordSink& sink) {
  ScanBlock scan;
  scan.scan_type = kScanType;
  const std::size_t pccpch_count = std::min(pccpch_.size(), td.size());
  const std::size_t dwpch_count = std::min(dwpch_.size(), td.size());
  for (std::size_t i = 0; i < pccpch_count; ++i) {
    const Cell& cell = *td[i].cell;
    const auto rscp = static_cast<float>(td[i].level_dbm + random_.Spread() * kScannerFading_db);
    pccpch_[i] = {Hertz(cell),  static_cast<std::uint8_t>(cell.code),
                  rscp + 55.0f, static_cast<std::uint32_t>(20 - i),
                  rscp + 95.0f, -98.0f,
                  rscp,         random_.Below(6400)};
    if (i < dwpch_count)
      dwpch_[i] = {Hertz(cell),
                   static_cast<std::uint8_t>(cell.code),
                   static_cast<std::uint8_t>(cell.code / 4),
                   rscp + 3.0f,
                   rscp + 97.0f,
                   -99.0f,
                   rscp + 57.0f,
                   random_.Below(6400)};
  }
  scan.carriers = ScanCarriers{static_cast<std::uint8_t>(pccpch_count), std::span(pccpch_).first(pccpch_count),
                               static_cast<std::uint8_t>(dwpch_count), std::span(dwpch_).first(dwpch_count)};
  for (std::size_t i = 0; i < rssi_.size(); ++i) {
    const std::int32_t frame = -70 - random_.Below(25);
    rssi_[i] = {(10055 + 8 * static_cast<std::uint32_t>(i)) * kCarrierRaster_hz,
                frame + 2,
                frame + 3,
                frame - 6,
                frame - 7,
                frame - 5,
                frame,
                frame + 1,
                frame - 1,
                frame};
  }
  scan.rssi = ScanRssiList{static_cast<std::int32_t>(rssi_.size()), rssi_};
  if (count_ % kSpectrumEvery == 0) {
    for (float& sample : spectrum_) sample = static_cast<float>(std::round(-100.0 + random_.Spread() * 5.0));
    spectrum_carriers_[0] = Hertz(*td[0].cell);
    scan.spectrum = ScanSpectrum{static_cast<std::int32_t>(spectrum_.size()), spectrum_};
    scan.spectrum_header = ScanSpectrumHeader{-60.0f, spectrum_carriers_};
  }
  CTestdataBase record = sink.Start(kRecordScanner, 0, moment);
  record.scan = &scan;
  sink.Put(record);
}

void Scanner::PutCells(const Moment& moment, std::span<const CellLevel> td, RecordSink& sink) {
  ScanBlock scan;
  scan.scan_type = kScanType;
  const std::size_t count = std::min(cells_.size(), td.size());
  for (std::size_t i = 0; i < count; ++i)
    cells_[i] = {static_cast<std::uint16_t>(td[i].cell->channel), static_cast<std::uint8_t>(td[i].cell->code),
                 static_cast<std::int8_t>(std::clamp(td[i].level_dbm, -116.0, -25.0))};
  for (std::size_t i = 0; i < cell_rssi_.size(); ++i)
    cell_rssi_[i] = {static_cast<std::uint16_t>(10055 + 8 * i), static_cast<std::int16_t>(-70 - random_.Below(25))};
  scan.cell_count = static_cast<std::int16_t>(count);
  scan.cells = std::span(cells_).first(count);
  scan.cell_rssi_count = static_cast<std::int32_t>(cell_rssi_.size());
  scan.cell_rssi = cell_rssi_;
  CTestdataBase record = sink.Start(kRecordScannerCells, 0, moment);
  record.scan = &scan;
  sink.Put(record);
}

void Scanner::PutLte(const Moment& moment, std::span<const CellLevel> lte, RecordSink& sink) {
  const std::size_t count = std::min(lte_.size(), lte.size());
  for (std::size_t i = 0; i < count; ++i) {
    const auto level = static_cast<float>(lte[i].level_dbm + random_.Spread() * kScannerFading_db);
    lte_[i] = {lte[i].cell->channel,
               static_cast<std::uint16_t>(lte[i].cell->code),
               level,
               level + 85.0f,
               level + 24.0f,
               level + 100.0f,
               level + 2.0f};
  }
  LteScanResult result;
  result.first = LteScanList{static_cast<std::int32_t>(count), std::span(lte_).first(count)};
  CTestdataBase record = sink.Start(kRecordHandset, 0, moment);
  record.model_code = kModelOstrelLteScanner;
  record.lte_scan = &result;
  sink.Put(record);
}

void Scanner::Step(const Moment& moment, std::span<const CellLevel> td, std::span<const CellLevel> lte,
                   RecordSink& sink) {
  if (count_ % 2 == 0)
    PutCarriers(moment, td, sink);
  else
    PutCells(moment, td, sink);
  if (!lte.empty() && count_ % 2 == 0) PutLte(moment, lte, sink);
  ++count_;
}

}  // namespace loom::simulation
