#include <algorithm>
#include <cmath>

#include "host/simulation/measurement.h"

namespace loom::simulation {
namespace {

constexpr double kLteFading_db = 1.5;

// A signed value in a 16-bit field.
std::uint16_t Short(double value) { return static_cast<std::uint16_t>(static_cast<std::int16_t>(std::lround(value))); }

double Rsrp(double level_dbm) { return std::clamp(level_dbm, -140.0, -44.0); }
// A strong cell is heard clearer: -3 dB at the best, -19.5 dB at the worst.
double Rsrq(double level_dbm) { return std::clamp(-3.0 - (-60.0 - level_dbm) * 0.2, -19.5, -3.0); }

std::uint8_t Byte(double value) { return static_cast<std::uint8_t>(std::clamp(std::lround(value), 0L, 250L)); }

}  // namespace

LteServingCell LteMeasurement::ServingCell(const Findings& findings) {
  const Cell& cell = *findings.serving;
  LteServingCell serving;
  serving.identity = {0x46,
                      0x00,
                      0x00,
                      static_cast<std::uint8_t>(cell.lac >> 8),
                      static_cast<std::uint8_t>(cell.lac),
                      0x00,
                      static_cast<std::uint8_t>(cell.ci >> 8),
                      static_cast<std::uint8_t>(cell.ci),
                      0x01};
  serving.ie33355 = 1;
  serving.ie33356 = 2;
  serving.ie33357 = 7;
  serving.ie33359 = 4;
  serving.ie33360 = 1;
  serving.earfcn = static_cast<std::uint16_t>(cell.channel);
  serving.physical_cell_id = static_cast<std::uint16_t>(cell.code);
  serving.ie33366 = 20;
  serving.ie33346 = static_cast<std::uint16_t>(cell.lac);
  serving.ie33354 = 100;
  serving.ie33358 = 2;
  serving.ie33364 = Short(Rsrp(findings.level_dbm));
  serving.ie33365 = Short(Rsrq(findings.level_dbm));
  serving.ie33367 = Short(Rsrp(findings.level_dbm) + 24.0);
  serving.ie33368 = Short(std::clamp(findings.level_dbm + 110.0, 0.0, 30.0));
  serving.ie33345 = cell.ci;
  serving.ie33348 = 3;
  serving.ie33349 = 0;
  serving.ie33415 = static_cast<std::int32_t>(findings.count);
  return serving;
}

void LteMeasurement::FillMeasurements(const Findings& findings, Random& random) {
  LteMeasBlock& block = measurements_ = {};
  block.serving = ServingCell(findings);
  const double level_dbm = Rsrp(findings.level_dbm + random.Spread() * kLteFading_db);
  const double second_dbm = Rsrp(findings.level_dbm + random.Spread() * kLteFading_db);
  block.meas24 = LteMeas24{
      Short(level_dbm),       Short(second_dbm), Short(Rsrq(level_dbm)), Short(Rsrq(second_dbm)), Short(level_dbm + 24),
      Short(second_dbm + 24), Short(10)};
  block.meas32 = LteMeas32{Short(15), Short(14), Short(8 + random.Below(8)),   Short(8 + random.Below(8)),
                           Short(2),  Short(1),  Short(-10 + random.Below(20))};
  block.meas36 = LteMeas36{Short(random.Below(16)), Short(random.Below(16))};
  block.cells = LteCellMeasurements{};
  block.cells->ie33371 = 1;
  block.cells->earfcn_33374 = static_cast<std::uint16_t>(findings.serving->channel);
  block.cells->ie33375 = Short(level_dbm);
  block.cells->ie33376 = Short(Rsrq(level_dbm));

  std::size_t count = 0;
  for (const CellLevel& level : findings.levels) {
    if (level.cell == findings.serving || count == neighbours_.size()) continue;
    const double neighbour_dbm = Rsrp(level.level_dbm + random.Spread() * kLteFading_db);
    neighbours_[count++] = {static_cast<std::uint16_t>(level.cell->channel),
                            static_cast<std::uint16_t>(level.cell->code),
                            Byte(neighbour_dbm + 141),
                            Byte((Rsrq(neighbour_dbm) + 20) * 2),
                            Byte(neighbour_dbm + 24 + 141),
                            Byte(random.Below(30))};
  }
  block.neighbours = LteNeighbourList{static_cast<std::uint8_t>(count + 1), std::span(neighbours_).first(count)};
  if (!findings.in_call) return;
  block.physical = LtePhysicalConfig{};
  block.physical->ie33439 = 100;
  block.physical->ie33440 = 2;
  block.physical->ie33671 = 3;
  block.physical->ie33681 = 1;
  block.statistics = LteChannelStatistics{};
  block.statistics->ie33423 = random.Below(28);
  block.statistics->ie33436 = random.Below(100);
  block.statistics->ie33675 = 1000 + random.Below(9000);
  block.statistics->ie34570 = 20'000 + random.Below(40'000);
  block.statistics->ie34574 = 5'000 + random.Below(9'000);
  block.header_first = LteHeaderFirst{1, 2, 3, 1, 0, 4, 2};
}

void LteMeasurement::FillSignalling(const Findings& findings, Random& random) {
  LteSignalBlock& block = signalling_ = {};
  block.serving = ServingCell(findings);
  LteSignalFields fields;
  const double level_dbm = Rsrp(findings.level_dbm + random.Spread() * kLteFading_db);
  fields.ie33365 = Short(Rsrq(level_dbm));
  fields.ie33366 = 20;
  fields.ie33367 = Short(level_dbm + 24);
  fields.ie33421 = findings.serving->lac;
  fields.ie33422 = findings.serving->ci;
  fields.ie33428 = findings.in_call ? 1 : 0;
  fields.ie33439 = 100;
  fields.ie33650 = Short(level_dbm);
  fields.ie33652 = Short(Rsrq(level_dbm));
  fields.ie33658 = Short(10 + random.Below(6));
  if (findings.in_call) {
    fields.ie33436 = random.Below(100);
    fields.ie33437 = random.Below(100);
    fields.ie34574 = 5'000 + random.Below(9'000);
    fields.ie34575 = 1'000 + random.Below(3'000);
  }
  block.fields = fields;
}

void LteMeasurement::Fill(CTestdataBase& record, const Findings& findings, Random& random) {
  if (record.model_code == kModelH500Lte) {
    FillSignalling(findings, random);
    record.lte_signalling = &signalling_;
  } else {
    FillMeasurements(findings, random);
    record.lte_measurements = &measurements_;
  }
}

}  // namespace loom::simulation
