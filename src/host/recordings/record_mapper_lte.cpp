#include <algorithm>

#include "host/recordings/layer3.h"
#include "host/recordings/lte_nas.h"
#include "host/recordings/record_mapper.h"

// LTE messages and measurements to records.
namespace loom::recordings {
namespace {

constexpr std::int32_t kSixteenths = 16;  // units of a dB
constexpr std::int32_t kTenths = 10;
constexpr std::int32_t kHalves = 8;  // sixteenths in half a dB
constexpr std::int32_t kMostEarfcn = 65'534;
constexpr std::int32_t kMostCellId = 503;

// To the nearest, halves away from 0.
std::int32_t Rounded(std::int32_t value, std::int32_t unit) {
  return value >= 0 ? (value + unit / 2) / unit : -((-value + unit / 2) / unit);
}

// A neighbour's byte: a value from `lowest` on.
std::uint8_t NeighbourByte(std::int32_t value, std::int32_t lowest) {
  return static_cast<std::uint8_t>(std::clamp(value, lowest, 254));
}

bool IsCell(const LteCellInfo& info, const LteCell& cell) {
  return info.physical_cell_id != kNotTold && info.physical_cell_id == cell.physical_cell_id &&
         info.earfcn == cell.earfcn;
}

CellIdentity IdentityOf(const LteCellInfo& info) {
  return {info.mcc, info.mnc, info.mnc_digits, info.tac, info.cell_identity};
}

std::uint8_t Nibbles(std::int32_t high, std::int32_t low) {
  return static_cast<std::uint8_t>((high & 0xF) << 4 | (low & 0xF));
}

// 460-00 is 46 00 0F, 310-410 is 31 04 10; behind it TAC (2) and cell identity (4), big-endian.
std::array<std::uint8_t, 9> IdentityBytes(const CellIdentity& identity) {
  std::array<std::uint8_t, 9> bytes{};
  if (identity.mcc >= 0 && identity.mnc >= 0) {
    const std::int32_t mcc = identity.mcc;
    const bool has_three = identity.mnc_digits == 3;
    const std::int32_t mnc = has_three ? identity.mnc : identity.mnc * 10;
    bytes[0] = Nibbles(mcc / 100 % 10, mcc / 10 % 10);
    bytes[1] = Nibbles(mcc % 10, mnc / 100 % 10);
    bytes[2] = Nibbles(mnc / 10 % 10, has_three ? mnc % 10 : 0xF);
  }
  const auto area = static_cast<std::uint32_t>(std::max(identity.area, 0));
  const auto cell = static_cast<std::uint32_t>(std::max(identity.cell, 0));
  bytes[3] = static_cast<std::uint8_t>(area >> 8);
  bytes[4] = static_cast<std::uint8_t>(area);
  for (unsigned i = 0; i < 4; ++i) bytes[5 + i] = static_cast<std::uint8_t>(cell >> (24 - 8 * i));
  return bytes;
}

// Where the levels of a serving cell go.
struct LevelTarget {
  std::int32_t LteCellLevels::*value;
  std::int32_t unit;
  std::uint16_t LteServingCell::*serving = nullptr;
  std::uint16_t LteMeas24::*meas24 = nullptr;
  std::uint16_t LteMeas32::*meas32 = nullptr;
};
constexpr LevelTarget kLevelTargets[] = {
    {&LteCellLevels::rsrp, kSixteenths, &LteServingCell::ie33364},
    {&LteCellLevels::rsrq, kSixteenths, &LteServingCell::ie33365},
    {&LteCellLevels::rssi, kSixteenths, &LteServingCell::ie33367},
    {&LteCellLevels::rsrp_0, kSixteenths, nullptr, &LteMeas24::ie33650},
    {&LteCellLevels::rsrp_1, kSixteenths, nullptr, &LteMeas24::ie33652},
    {&LteCellLevels::rsrq_0, kSixteenths, nullptr, &LteMeas24::ie33653},
    {&LteCellLevels::rsrq_1, kSixteenths, nullptr, &LteMeas24::ie33654},
    {&LteCellLevels::rssi_0, kSixteenths, nullptr, &LteMeas24::ie33655},
    {&LteCellLevels::rssi_1, kSixteenths, nullptr, &LteMeas24::ie33656},
    {&LteCellLevels::snr_0, kTenths, nullptr, nullptr, &LteMeas32::ie33658},
    {&LteCellLevels::snr_1, kTenths, nullptr, nullptr, &LteMeas32::ie33659},
};

}  // namespace

// 16 bits, two's complement. -1 and -2 are markers of such fields.
std::uint16_t RecordMapper::Level(std::int32_t value, std::int32_t unit) {
  if (value == kNotTold) return kAbsent16;
  std::int32_t level = Rounded(value, unit);
  if (level == -1 || level == -2) {
    findings_.Add(Finding::kMarkerLevel);
    level = -3;
  }
  return static_cast<std::uint16_t>(level);
}

std::uint16_t RecordMapper::Earfcn(std::int32_t earfcn) {
  if (earfcn == kNotTold) return kAbsent16;
  if (earfcn <= kMostEarfcn) return static_cast<std::uint16_t>(earfcn);
  Tell(Finding::kLargeEarfcn, std::to_string(earfcn));
  return kAbsent16;
}

void RecordMapper::FillIdentity(const CellIdentity& identity) {
  LteServingCell& serving = *lte_.serving;
  if (identity != coded_identity_) {
    coded_identity_ = identity;
    identity_bytes_ = IdentityBytes(identity);
  }
  serving.identity = identity_bytes_;
  if (identity.area >= 0 && identity.area < kAbsent16 - 1) serving.ie33346 = static_cast<std::uint16_t>(identity.area);
  if (identity.cell >= 0) serving.ie33345 = identity.cell;
}

// The cell with what its network told of it.
void RecordMapper::FillServing(const LteCell& cell) {
  LteServingCell& serving = lte_.serving.emplace();
  if (cell.physical_cell_id >= 0 && cell.physical_cell_id <= kMostCellId)
    serving.physical_cell_id = static_cast<std::uint16_t>(cell.physical_cell_id);
  serving.earfcn = Earfcn(cell.earfcn);
  const bool is_info = IsCell(state_->info, cell);
  const bool is_mib = IsCell(state_->mib, cell);
  if (is_info)
    FillIdentity(IdentityOf(state_->info));
  else if (state_->captured_identity.cell >= 0)
    FillIdentity(state_->captured_identity);
  const std::int32_t told_prb = is_info ? state_->info.bandwidth_prb : kNotTold;
  const std::int32_t bandwidth_prb = told_prb == kNotTold && is_mib ? state_->mib.bandwidth_prb : told_prb;
  if (bandwidth_prb != kNotTold) serving.ie33354 = static_cast<std::uint16_t>(bandwidth_prb);
  if (is_mib && state_->mib.antenna_ports != kNotTold)
    serving.ie33358 = static_cast<std::uint16_t>(state_->mib.antenna_ports);
}

void RecordMapper::FillLevels(const LteCellLevels& levels) {
  for (const LevelTarget& target : kLevelTargets) {
    const std::uint16_t level = Level(levels.*target.value, target.unit);
    if (target.serving != nullptr) (*lte_.serving).*target.serving = level;
    if (target.meas24 != nullptr && lte_.meas24) (*lte_.meas24).*target.meas24 = level;
    if (target.meas32 != nullptr && lte_.meas32) (*lte_.meas32).*target.meas32 = level;
  }
  // The better antenna: a receiver that combines both hears the cell at least that well.
  lte_.serving->ie33368 = Level(std::max(levels.snr_0, levels.snr_1), kTenths);
}

void RecordMapper::AddNeighbour(const LteCellLevels& levels) {
  if (neighbour_count_ == neighbours_.size())
    return Tell(Finding::kMoreNeighbours, "PCI " + std::to_string(levels.physical_cell_id));
  LteNeighbour& neighbour = neighbours_[neighbour_count_++] = {};
  neighbour.earfcn = Earfcn(levels.earfcn);
  neighbour.physical_cell_id = static_cast<std::uint16_t>(levels.physical_cell_id);
  if (levels.rsrp != kNotTold) neighbour.ie33899 = NeighbourByte(Rounded(levels.rsrp, kSixteenths) + 141, 1);
  if (levels.rsrq != kNotTold) neighbour.ie33963 = NeighbourByte(Rounded(levels.rsrq, kHalves) + 40, 0);
  if (levels.rssi != kNotTold) neighbour.ie34027 = NeighbourByte(Rounded(levels.rssi, kSixteenths) + 141, 0);
}

void RecordMapper::TakeLteServingMeasurement(const RecordedPacket& packet) {
  const PacketResult result = ReadLteServingMeasurement(packet.body, measurements_);
  IsRead(result, packet, measurements_.part_version);
  const LteCellLevels* primary = nullptr;
  bool has_neighbour = false;
  for (const LteCellLevels& cell : measurements_.cells) {
    const auto carrier = static_cast<std::size_t>(cell.carrier);
    if (cell.is_serving == 0) {
      has_neighbour = true;
      continue;
    }
    state_->serving[carrier] = {cell.physical_cell_id, cell.earfcn};
    if (carrier == 0 && primary == nullptr)
      primary = &cell;
    else
      findings_.Add(Finding::kSecondaryCarrier);
  }
  if (primary == nullptr && !has_neighbour) return;
  Reach(Network::kLte);
  CTestdataBase record = StartLte(true);
  if (primary != nullptr) {
    lte_.meas24.emplace();
    lte_.meas32.emplace();
    FillServing({primary->physical_cell_id, primary->earfcn});
    FillLevels(*primary);
  } else {
    FillServing(state_->serving[0]);
  }
  for (const LteCellLevels& cell : measurements_.cells)
    if (cell.is_serving == 0) AddNeighbour(cell);
  PutLteRecord(record);
}

void RecordMapper::TakeLteIntraFrequency(const RecordedPacket& packet) {
  if (!IsRead(ReadLteIntraFrequency(packet.body, measurements_), packet, VersionOf(packet))) return;
  if (measurements_.carrier != 0) return findings_.Add(Finding::kSecondaryCarrier);
  PutNeighbourMeasurement();
}

void RecordMapper::TakeLteInterFrequency(const RecordedPacket& packet) {
  if (!IsRead(ReadLteInterFrequency(packet.body, measurements_), packet, VersionOf(packet))) return;
  PutNeighbourMeasurement();
}

void RecordMapper::TakeLteIdleCell(const RecordedPacket& packet) {
  if (!IsRead(ReadLteIdleCell(packet.body, measurements_), packet, VersionOf(packet))) return;
  state_->serving[0] = {measurements_.serving.physical_cell_id, measurements_.serving.earfcn};
  PutNeighbourMeasurement();
}

void RecordMapper::TakeLteNeighbours(const RecordedPacket& packet) {
  if (!IsRead(ReadLteNeighbours(packet.body, measurements_), packet, measurements_.part_version)) return;
  const LteCell& cell = state_->serving[static_cast<std::size_t>(measurements_.carrier)];
  measurements_.serving.physical_cell_id = cell.physical_cell_id;
  measurements_.serving.earfcn = cell.earfcn;
  PutNeighbourMeasurement();
}

void RecordMapper::PutNeighbourMeasurement() {
  Reach(Network::kLte);
  CTestdataBase record = StartLte(true);
  FillServing({measurements_.serving.physical_cell_id, measurements_.serving.earfcn});
  FillLevels(measurements_.serving);
  for (const LteCellLevels& cell : measurements_.neighbours) AddNeighbour(cell);
  PutLteRecord(record);
}

// ---- Messages ----

void RecordMapper::PutLteRrc(LteRrcChannel channel, const LteCell& cell, std::span<const std::byte> message) {
  const RrcMessage kind = IdentifyLteRrc(channel, message);
  if (kind.name.empty()) Tell(Finding::kUnknownMessage, "LTE RRC");
  const LteRrcChannelKind& form = KindOf(channel);
  if (form.channel != kChannelBroadcast) Reach(Network::kLte);
  if (kind.role == RrcRole::kSystemInformation1) LearnSystemInformation1(cell, message);
  CTestdataBase record = StartLte(true);
  FillMessage(record, kind.name, message);
  record.direction = form.direction;
  record.channel = form.channel;
  record.message_id = form.message_id;
  FillServing(cell);
  if (kind.role == RrcRole::kMeasurementReport) FillReport(message);
  FollowLteRrc(kind, channel, cell, message);
  PutLteRecord(record);
}

void RecordMapper::FollowLteRrc(const RrcMessage& kind, LteRrcChannel channel, const LteCell& cell,
                                std::span<const std::byte> message) {
  HandsetState& state = *state_;
  const bool is_dedicated = KindOf(channel).channel == kChannelDedicated;
  if (is_dedicated || channel == LteRrcChannel::kUlCcch) state.serving[0] = cell;
  if (is_dedicated) state.is_connected = true;
  if (kind.event_id != kNoEvent) events_.push_back(kind.event_id);
  if (kind.event_id == kEventRrcReestablishment || kind.event_id == kEventRrcRequest) state.is_handed_over = false;
  switch (kind.role) {
    case RrcRole::kConnect:
      state.is_connected = true;
      break;
    case RrcRole::kRelease:
      state.is_connected = state.is_handed_over = false;
      break;
    case RrcRole::kReconfigure: {
      const Mobility mobility = ReadMobility(message);
      if (!mobility.is_handover) break;
      events_.push_back(kEventHandover);
      state.is_handed_over = true;
      state.ordered_cell_id = mobility.target_cell_id ? *mobility.target_cell_id : kNotTold;
      break;
    }
    case RrcRole::kReconfigured:
      if (!std::exchange(state.is_handed_over, false)) break;
      events_.push_back(kEventHandoverDone);
      state.captured_identity = {};
      state.captured_cell_id = state.ordered_cell_id;
      break;
    default:
      break;
  }
}

// A capture does not say whose system information it is; the serving cell's is what a handset reads.
void RecordMapper::LearnSystemInformation1(const LteCell& cell, std::span<const std::byte> message) {
  const auto identity = ReadSystemInformation1(message);
  if (!identity) return Tell(Finding::kShortPacket, "SystemInformationBlockType1");
  if (cell.physical_cell_id == kNotTold || cell.physical_cell_id == state_->captured_cell_id) {
    if (state_->captured_identity.cell >= 0 && state_->captured_identity != *identity)
      state_->captured_cell_id = kNotTold;
    state_->captured_identity = *identity;
    return;
  }
  if (IsCell(state_->info, cell)) return;
  state_->info = {};
  state_->info.physical_cell_id = cell.physical_cell_id;
  state_->info.earfcn = cell.earfcn;
  state_->info.mcc = identity->mcc;
  state_->info.mnc = identity->mnc;
  state_->info.mnc_digits = identity->mnc_digits;
  state_->info.tac = identity->area;
  state_->info.cell_identity = identity->cell;
}

// Reported numbers stand for the lower edges of their ranges.
void RecordMapper::FillReport(std::span<const std::byte> message) {
  const auto report = ReadMeasurementReport(message);
  if (!report) return Tell(Finding::kShortPacket, "MeasurementReport");
  if (report->is_read_in_part) Tell(Finding::kUnreadReport, "MeasurementReport");
  lte_.serving->ie33364 = Level((report->rsrp - 141) * kSixteenths, kSixteenths);
  lte_.serving->ie33365 = Level((report->rsrq / 2 - 20) * kSixteenths, kSixteenths);
  for (const LteReportedCell& cell : report->neighbours) {
    LteNeighbour& neighbour = neighbours_[neighbour_count_++] = {};
    neighbour.physical_cell_id = cell.physical_cell_id;
    if (cell.rsrp) neighbour.ie33899 = std::max<std::uint8_t>(*cell.rsrp, 1);
    if (cell.rsrq) neighbour.ie33963 = *cell.rsrq;
  }
}

void RecordMapper::PutLteNas(std::span<const std::byte> message, std::int8_t direction) {
  const NasMessage kind = IdentifyLteNas(message);
  if (kind.is_ciphered) return findings_.Add(Finding::kCipheredMessage);
  if (kind.name.empty()) Tell(Finding::kUnknownMessage, "NAS");
  if (direction < 0) direction = kind.direction;
  Reach(Network::kLte);
  CTestdataBase record = StartLte(false);
  FillMessage(record, kind.name, message);
  record.direction = direction;
  record.channel = kChannelDedicated;
  record.message_id = direction == kUp ? kMessageNasUp : kMessageNasDown;
  if (kind.event_id != kNoEvent) events_.push_back(kind.event_id);
  PutLteRecord(record);
}

}  // namespace loom::recordings
