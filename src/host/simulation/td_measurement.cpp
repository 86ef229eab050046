#include <algorithm>
#include <cmath>

#include "host/simulation/measurement.h"

namespace loom::simulation {
namespace {

constexpr double kTdFading_db = 1.5;
constexpr int kUplinkTimeslots = 3;  // 1 to 3 up, the others down

std::int8_t SignedByte(double value) { return static_cast<std::int8_t>(std::clamp(std::lround(value), 0L, 126L)); }

}  // namespace

std::int8_t ReportedRscp(double level_dbm) {
  return static_cast<std::int8_t>(std::clamp(std::lround(level_dbm) + 116L, 0L, 91L));
}

void TdMeasurement::FillServing(const Findings& findings, Random& random) {
  const Cell& cell = *findings.serving;
  serving_ = {};
  serving_.ie142 = 460;
  serving_.ie143 = 0;
  serving_.ie144 = 4;
  serving_.lac = static_cast<std::int16_t>(cell.lac);
  serving_.cell_key = cell.Key();
  serving_.cell_parameter_id = static_cast<std::int8_t>(cell.code);
  serving_.uarfcn = cell.channel;
  serving_.ura_identities[0] = cell.lac + 100;
  serving_.ura_identity_count = 1;
  serving_.ie149 = static_cast<std::int8_t>(findings.in_call ? 1 : 0);
  serving_.ie150 = 4;
  serving_.ie151 = 2;
  serving_.ie152 = 1;
  serving_.ie153 = 8;
  serving_.ie154 = cell.ci;
  serving_.ie155 = static_cast<std::int8_t>(cell.code / 4);  // SYNC-DL of the code group
  serving_.ie156 = static_cast<std::int16_t>(random.Below(1024));
  serving_.ie157 = 33;
  serving_.ie158 = 6;
}

void TdMeasurement::FillTimeslots(const Findings& findings, Random& random) {
  timeslots_ = {};
  timeslots_.pccpch_rscp = ReportedRscp(findings.level_dbm + random.Spread() * kTdFading_db);
  timeslots_.ie498 = static_cast<std::uint8_t>(std::clamp(33.0 - findings.level_dbm, 46.0, 158.0));
  timeslots_.ie508 = static_cast<std::int32_t>(random.Below(64));
  timeslots_.ie510 = static_cast<std::int32_t>(findings.count % 4096);  // system frame number
  for (std::size_t t = 0; t < iscp_.size(); ++t)
    iscp_[t] = {static_cast<std::int8_t>(t), ReportedRscp(-105.0 + random.Spread() * 4.0)};
  timeslots_.timeslot_iscp = iscp_;
  timeslots_.timeslot_iscp_count = static_cast<std::int8_t>(iscp_.size());
  if (!findings.in_call) return;
  for (std::size_t i = 0; i < 2; ++i)
    rscp_[i] = {static_cast<std::int8_t>(4 + i),
                ReportedRscp(findings.level_dbm - 3.0 + random.Spread() * kTdFading_db)};
  timeslots_.timeslot_rscp = std::span(rscp_).first(2);
  timeslots_.timeslot_rscp_count = 2;
  timeslots_.ie501 = static_cast<std::int16_t>(100 + random.Below(60));
  timeslots_.timeslot = 2;
  timeslots_.ie502 = SignedByte(71.0 + std::clamp(-findings.level_dbm - 85.0, -30.0, 24.0));  // transmitted power
  timeslots_.ie503 = SignedByte(46.0 + random.Spread() * 6.0);
}

void TdMeasurement::FillNeighbours(const Findings& findings, Random& random) {
  std::size_t count = 0;
  for (const CellLevel& level : findings.levels) {
    if (level.cell == findings.serving || count == neighbours_.size()) continue;
    TdNeighbour& neighbour = neighbours_[count++] = {};
    const double level_dbm = level.level_dbm + random.Spread() * kTdFading_db;
    neighbour.cell_parameter_id = static_cast<std::int8_t>(level.cell->code);
    neighbour.uarfcn = level.cell->channel;
    neighbour.pccpch_rscp = ReportedRscp(level_dbm);
    neighbour.ie1237 = static_cast<std::uint8_t>(std::clamp(33.0 - level_dbm, 46.0, 158.0));
    neighbour.ie1109 = SignedByte(level_dbm + 3.0 + 101.0);
    neighbour.timeslot_count = 2;
    neighbour.timeslot_iscp.entries[0] = {0, ReportedRscp(-104.0 + random.Spread() * 3.0)};
    neighbour.timeslot_iscp.entries[1] = {4, ReportedRscp(-106.0 + random.Spread() * 3.0)};
    neighbour.timeslot_iscp.size = 2;
  }
  neighbour_block_ = {};
  neighbour_block_.count = static_cast<std::int8_t>(count);
  neighbour_block_.neighbours = std::span(neighbours_).first(count);
}

void TdMeasurement::FillCall(CTestdataBase& record, Random& random) {
  channels_ = {};
  for (std::size_t i = 0; i < code_channels_.size(); ++i) {
    const auto timeslot = static_cast<std::int8_t>(i == 0 ? 2 : 3 + i);
    code_channels_[i] = {.number = static_cast<std::int8_t>(i),
                         .timeslot = timeslot,
                         .ie297 = timeslot,
                         .ie393 = static_cast<std::int32_t>(i + 1),
                         .direction = timeslot > kUplinkTimeslots ? 1 : 0,
                         .midamble_configuration = 8,
                         .midamble_shift = static_cast<std::int32_t>(i)};
  }
  for (std::size_t i = 0; i < numbered_bytes_.size(); ++i)
    numbered_bytes_[i] = {static_cast<std::int8_t>(i + 1), static_cast<std::int8_t>(i)};
  constexpr std::array<std::int8_t, 3> kTransportChannels{1, 5, 24};
  for (std::size_t i = 0; i < transport_channels_.size(); ++i) {
    const std::int32_t blocks = 40 + random.Below(20);
    const std::int32_t errors = random.Chance(0.2) ? random.Below(4) : 0;
    transport_channels_[i] = {kTransportChannels[i], errors, blocks, static_cast<float>(100.0 * errors / blocks)};
  }
  channels_.code_channels = code_channels_;
  channels_.code_channel_count = 3;
  channels_.numbered_bytes = numbered_bytes_;
  channels_.numbered_byte_count = 2;
  channels_.transport_channels = transport_channels_;
  channels_.transport_channel_count = 3;
  record.channels = &channels_;

  codes_ = {};
  for (std::size_t i = 0; i < entries_d_.size(); ++i)
    entries_d_[i] = {.number = static_cast<std::int8_t>(i + 1),
                     .ie1588 = 100 + random.Below(500),
                     .ie1622 = 500 + random.Below(3000),
                     .ie1656 = random.Below(5),
                     .ie1818 = 1,
                     .ie1850 = 2};
  entries_e_[0] = {5, 1, 1, 100 + random.Below(500), 500 + random.Below(3000)};
  codes_.entries_d = entries_d_;
  codes_.count_d = static_cast<std::int8_t>(entries_d_.size());
  codes_.entries_e = entries_e_;
  codes_.count_e = 1;
  codes_.scale_word = 140;
  record.codes = &codes_;
}

void TdMeasurement::Fill(CTestdataBase& record, const Findings& findings, Random& random) {
  FillServing(findings, random);
  FillTimeslots(findings, random);
  FillNeighbours(findings, random);
  record.serving_cell = &serving_;
  record.timeslot_measurements = &timeslots_;
  record.neighbours = &neighbour_block_;
  if (findings.in_call) FillCall(record, random);
  block252_.ie5403 = random.Below(100);
  block304_ = {60, 61, 62, 63};
  record.block252 = &block252_;
  record.block304 = &block304_;
  if (findings.count % 10 == 0) {
    identities_ = {findings.serving->lac, findings.serving->ci, findings.serving->channel, findings.serving->code};
    record.cell_identities = &identities_;
  }
  if (findings.count % 40 == 39) {
    for (TdSample& sample : sample_list_)
      sample = {1, 2, static_cast<std::uint8_t>(random.Below(60)), static_cast<std::uint8_t>(random.Below(60))};
    samples_.count = static_cast<std::int32_t>(sample_list_.size());
    samples_.samples = sample_list_;
    record.samples = &samples_;
  }
}

}  // namespace loom::simulation
