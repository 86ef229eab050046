#include <algorithm>
#include <cmath>

#include "host/simulation/measurement.h"

namespace loom::simulation {
namespace {

constexpr double kGsmFading_db = 2.0;

// RXLEV of 3GPP TS 45.008: 0 to 63 over -110 dBm.
std::uint8_t RxLev(double level_dbm) {
  return static_cast<std::uint8_t>(std::clamp(std::lround(level_dbm) + 110L, 0L, 63L));
}

}  // namespace

void GsmMeasurement::FillServing(const Findings& findings, Random& random) {
  const Cell& cell = *findings.serving;
  const double level_dbm = findings.level_dbm + random.Spread() * kGsmFading_db;
  cell_ = {};
  cell_.ie142 = 460;
  cell_.ie143 = 0;
  cell_.ie144 = cell.ci;
  cell_.lac = static_cast<std::int16_t>(cell.lac);
  cell_.cell_key = cell.Key();
  cell_.ie158 = 2;
  cell_.ie149 = static_cast<std::int8_t>(findings.in_call ? 1 : 0);
  serving_ = {};
  serving_.ie31706 = static_cast<std::uint16_t>(cell.ci);
  serving_.ie31701 = static_cast<std::uint16_t>(cell.channel);
  serving_.ie31705 = static_cast<std::uint8_t>(cell.code);
  serving_.rx_lev = RxLev(level_dbm);
  serving_.ie31719 = 8;
  serving_.ie31712 = static_cast<std::uint16_t>(random.Below(64));
  serving_.ie32265 = 5;
  reselection_.ie31717 = 6;
  radio_ = {};
  radio_.form = 1;
  radio_.ie32078 = static_cast<std::int16_t>(std::lround(level_dbm + 105.0));  // C1
  radio_.ie31707 = 5;
  radio_.ie32074 = 0;
  radio_.ie32075 = static_cast<std::int16_t>(radio_.ie32078 + 4);  // C2
  dsc_.ie31736 = static_cast<std::uint16_t>(18 - random.Below(3));
}

void GsmMeasurement::FillNeighbours(const Findings& findings, Random& random) {
  std::size_t count = 0;
  for (const CellLevel& level : findings.levels) {
    if (level.cell == findings.serving || count == neighbours_.size()) continue;
    GsmNeighbour& neighbour = neighbours_[count++] = {};
    const double level_dbm = std::max(level.level_dbm + random.Spread() * kGsmFading_db, -110.0);
    neighbour.bcch = static_cast<std::uint16_t>(level.cell->channel);
    neighbour.bsic = static_cast<std::uint8_t>(level.cell->code);
    neighbour.ci = static_cast<std::uint16_t>(level.cell->ci);
    neighbour.lac = static_cast<std::uint16_t>(level.cell->lac);
    neighbour.rx_lev_access_min = 8;
    neighbour.rx_lev = static_cast<std::int16_t>(std::lround(level_dbm));
    neighbour.form = 1;
    neighbour.c1 = static_cast<std::int16_t>(std::lround(level_dbm + 105.0));
    neighbour.c2 = static_cast<std::int16_t>(neighbour.c1 + 4);
  }
  neighbour_block_ = {};
  neighbour_block_.count = static_cast<std::uint8_t>(count);
  neighbour_block_.neighbours = std::span(neighbours_).first(count);
  neighbour_block_.ie31721 = 6;
  neighbour_block_.ie31722 = 1;
}

void GsmMeasurement::FillCall(CTestdataBase& record, Random& random) {
  channel_ = {};
  channel_.channel_bits = 1;
  channel_.ie31724 = random.Below(8);  // timeslot
  channel_.ie31730 = 0;
  channel_.ie31731 = random.Below(64);
  for (std::size_t i = 0; i < hopping_.size(); ++i) hopping_[i] = static_cast<std::uint8_t>(5 + 7 * i);
  channel_.frequencies = GsmDedicatedFrequencies{1, -1, hopping_};
  dedicated_ = {};
  dedicated_.ie31966 = static_cast<std::uint8_t>(random.Chance(0.8) ? 0 : random.Below(8));  // RXQUAL
  dedicated_.ie32038 = dedicated_.ie31966;
  dedicated_.ie31715 = static_cast<std::uint8_t>(random.Below(4));  // timing advance
  dedicated_.ie32076 = static_cast<std::uint8_t>(5 + random.Below(10));
  dedicated_.ie31930 = serving_.rx_lev;
  dedicated_.ie32002 = serving_.rx_lev;
  dedicated_.ie32077 = 0;
  dedicated_.ie32201 = static_cast<float>(random.Below(200)) / 100.0f;
  counter_.ie31713 = static_cast<std::uint16_t>(20 - random.Below(4));
  counter_.ie31735 = 20;
  llc_ = {12'000 + random.Below(20'000), 30'000 + random.Below(80'000), random.Below(10)};
  rlc_.ie32193 = static_cast<std::uint32_t>(14'000 + random.Below(20'000));
  rlc_.ie32194 = static_cast<std::uint32_t>(34'000 + random.Below(80'000));
  rlc_.ie32189 = static_cast<std::uint8_t>(random.Below(4));
  record.gsm_dedicated_channel = &channel_;
  record.gsm_dedicated_measurements = &dedicated_;
  record.gsm_radio_link_counter = &counter_;
  record.gsm_llc_qos = &llc_;
  record.gsm_rlc_qos = &rlc_;
}

void GsmMeasurement::Fill(CTestdataBase& record, const Findings& findings, Random& random) {
  FillServing(findings, random);
  FillNeighbours(findings, random);
  multislot_.ie32202 = 12;
  rat_.rat = 1;
  record.serving_cell = &cell_;
  record.gsm_serving_cell = &serving_;
  record.gsm_reselection = &reselection_;
  record.gsm_radio = &radio_;
  record.gsm_dsc = &dsc_;
  record.gsm_neighbours = &neighbour_block_;
  record.gsm_multislot_class = &multislot_;
  record.gsm_rat = &rat_;
  if (findings.in_call) FillCall(record, random);
}

}  // namespace loom::simulation
