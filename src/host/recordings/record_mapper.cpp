#include "host/recordings/record_mapper.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "host/recordings/layer3.h"
#include "host/recordings/lte_nas.h"

// Packets to what they hold.
namespace loom::recordings {

// clang-format off
const RecordMapper::Route RecordMapper::kRoutes[] = {
    {kCodeLteRrc,                true,  &RecordMapper::TakeLteRrc},
    {kCodeLteMib,                true,  &RecordMapper::TakeLteMib},
    {kCodeLteServingCell,        true,  &RecordMapper::TakeLteServingCell},
    {kCodeLteCellInfo,           true,  &RecordMapper::TakeLteCellInfo},
    {kCodeLteSessionIn,          true,  &RecordMapper::TakeLteNas},
    {kCodeLteSessionOut,         true,  &RecordMapper::TakeLteNas},
    {kCodeLteMobilityIn,         true,  &RecordMapper::TakeLteNas},
    {kCodeLteMobilityOut,        true,  &RecordMapper::TakeLteNas},
    {kCodeLteServingMeasurement, true,  &RecordMapper::TakeLteServingMeasurement},
    {kCodeLteIntraFrequency,     true,  &RecordMapper::TakeLteIntraFrequency},
    {kCodeLteInterFrequency,     true,  &RecordMapper::TakeLteInterFrequency},
    {kCodeLteNeighbours,         true,  &RecordMapper::TakeLteNeighbours},
    {kCodeLteIdleNeighbours,     true,  &RecordMapper::TakeLteNeighbours},
    {kCodeLteIdleCell,           true,  &RecordMapper::TakeLteIdleCell},
    {kCodeGsmRr,                 false, &RecordMapper::TakeGsmRr},
    {kCodeGsmNas,                false, &RecordMapper::TakeGsmNas},
    // No place.
    {0x412F,                     false, &RecordMapper::TakeWcdmaRrc},   // RRC message
    {0x4127,                     false, &RecordMapper::TakeWcdma},      // cell
    {0x4005,                     false, &RecordMapper::TakeWcdma},      // search
    {0xB821,                     true,  &RecordMapper::TakeNewRadio},   // RRC message
    {0xB0E0,                     true,  &RecordMapper::TakeTwin},       // ciphered NAS messages
    {0xB0E1,                     true,  &RecordMapper::TakeTwin},
    {0xB0EA,                     true,  &RecordMapper::TakeTwin},
    {0xB0EB,                     true,  &RecordMapper::TakeTwin},
    {0x5230,                     false, &RecordMapper::TakeTwin},       // GMM and SM messages
};
// clang-format on

RecordMapper::RecordMapper(RecordingLog& log, Findings& findings)
    : log_(log), findings_(findings), route_of_code_(std::make_unique<std::array<std::uint8_t, 65'536>>()) {
  for (std::size_t i = 0; i < std::size(kRoutes); ++i)
    (*route_of_code_)[kRoutes[i].code] = static_cast<std::uint8_t>(i + 1);
}

void RecordMapper::Take(const RecordedPacket& packet, const CString& file) {
  device_ = static_cast<std::int8_t>(packet.radio);
  state_ = &states_[packet.radio];
  time_ns_ = packet.time_ns;
  place_ = {&file, packet.position_bytes};
  events_.clear();
  packet.kind == PacketKind::kDiag ? TakeDiag(packet) : TakeGsmtap(packet);
}

void RecordMapper::TakeDiag(const RecordedPacket& packet) {
  const std::uint8_t index = (*route_of_code_)[packet.code];
  if (index == 0) return TakeUnknownCode(packet);
  const Route& route = kRoutes[index - 1];
  const bool has_version = route.has_version && !packet.body.empty();
  findings_.AddPacket(packet.code, has_version ? static_cast<std::uint8_t>(packet.body[0]) : kNoVersion);
  (this->*route.take)(packet);
}

void RecordMapper::TakeUnknownCode(const RecordedPacket& packet) {
  if (!findings_.AddPacket(packet.code, kNoVersion)) return findings_.Add(Finding::kUnknownCode);
  char text[16];
  std::snprintf(text, sizeof text, "%04X", packet.code);
  Tell(Finding::kUnknownCode, text);
}

void RecordMapper::Tell(Finding finding, std::string_view what) {
  findings_.Add(finding, *place_.file, place_.position_bytes, what);
}

bool RecordMapper::IsRead(PacketResult result, const RecordedPacket& packet, std::uint8_t version) {
  if (result == PacketResult::kRead) return true;
  if (result == PacketResult::kRequest) {
    findings_.Add(Finding::kRequest);
    return false;
  }
  char text[32];
  std::snprintf(text, sizeof text, "%04X version %u", packet.code, version);
  Tell(result == PacketResult::kUnknownVersion ? Finding::kUnknownVersion : Finding::kShortPacket, text);
  return false;
}

void RecordMapper::TakeLteRrc(const RecordedPacket& packet) {
  LteRrcPacket rrc;
  if (!IsRead(ReadLteRrc(packet.body, rrc), packet, VersionOf(packet))) return;
  if (!rrc.channel) return Tell(Finding::kUnknownVersion, "B0C0 channel " + std::to_string(rrc.channel_code));
  PutLteRrc(*rrc.channel, {rrc.physical_cell_id, rrc.earfcn}, rrc.message);
}

void RecordMapper::TakeLteMib(const RecordedPacket& packet) {
  LteCellInfo info;
  if (!IsRead(ReadLteMib(packet.body, info), packet, VersionOf(packet))) return;
  findings_.Add(Finding::kCellState);
  state_->mib = info;
}

void RecordMapper::TakeLteCellInfo(const RecordedPacket& packet) {
  LteCellInfo info;
  if (!IsRead(ReadLteCellInfo(packet.body, info), packet, VersionOf(packet))) return;
  findings_.Add(Finding::kCellState);
  info.antenna_ports = kNotTold;
  if (const LteCellInfo& mib = state_->mib; mib.physical_cell_id == info.physical_cell_id && mib.earfcn == info.earfcn)
    info.antenna_ports = mib.antenna_ports;
  state_->mib = info;
}

void RecordMapper::TakeLteServingCell(const RecordedPacket& packet) {
  LteCellInfo info;
  if (!IsRead(ReadLteServingCell(packet.body, info), packet, VersionOf(packet))) return;
  findings_.Add(Finding::kCellState);
  const LteCell cell{info.physical_cell_id, info.earfcn};
  const bool is_change = state_->camped.physical_cell_id != kNotTold && state_->camped != cell;
  if (is_change && !state_->is_connected && state_->network == Network::kLte && state_->has_lte_records)
    PutEvent(kEventCellChange, kModelTn300Lte, kNetworkModeKeep);
  state_->camped = cell;
  state_->info = info;
  state_->serving[0] = cell;
}

void RecordMapper::TakeLteNas(const RecordedPacket& packet) {
  std::span<const std::byte> message;
  if (!IsRead(loom::recordings::ReadLteNas(packet.body, message), packet, VersionOf(packet))) return;
  const bool is_in = packet.code == kCodeLteSessionIn || packet.code == kCodeLteMobilityIn;
  PutLteNas(message, is_in ? kDown : kUp);
}

void RecordMapper::TakeGsmRr(const RecordedPacket& packet) {
  const auto message = ReadGsmRr(packet.body);
  if (!message) return Tell(Finding::kShortPacket, "512F");
  if (state_->network != Network::kWcdma) state_->has_gsm_cell = true;
  PutGsm(*message);
}

void RecordMapper::TakeGsmNas(const RecordedPacket& packet) {
  // The first ones come before any message that shows the handset on GSM, but behind the cell's system information.
  if (state_->network != Network::kGsm && !state_->has_gsm_cell) return findings_.Add(Finding::kNasElsewhere);
  const auto message = ReadGsmNas(packet.body);
  if (!message) return Tell(Finding::kShortPacket, "713A");
  PutGsm(*message);
}

void RecordMapper::TakeWcdma(const RecordedPacket&) { findings_.Add(Finding::kWcdma); }

void RecordMapper::TakeWcdmaRrc(const RecordedPacket&) {
  findings_.Add(Finding::kWcdma);
  state_->network = Network::kWcdma;
  state_->has_gsm_cell = false;
}

void RecordMapper::TakeNewRadio(const RecordedPacket&) { findings_.Add(Finding::kNewRadio); }

void RecordMapper::TakeTwin(const RecordedPacket&) { findings_.Add(Finding::kTwin); }

void RecordMapper::TakeGsmtap(const RecordedPacket& packet) {
  findings_.AddGsmtap(packet.gsmtap.type);
  switch (packet.gsmtap.type) {
    case kGsmtapLteRrc:
      return TakeGsmtapLteRrc(packet);
    case kGsmtapLteNas:
      return PutLteNas(packet.body, -1);
    case kGsmtapGsmUm:
    case kGsmtapGsmAbis:
      return TakeGsmtapGsm(packet);
    case kGsmtapUmtsRrc:
      return TakeWcdmaRrc(packet);
    default:
      findings_.Add(Finding::kGsmtapType);
  }
}

// A capture tells no cell, and of the EARFCN at most the lower 14 bits: 0 says nothing.
void RecordMapper::TakeGsmtapLteRrc(const RecordedPacket& packet) {
  const auto channel = LteRrcChannelOfGsmtap(packet.gsmtap.sub_type);
  if (!channel) return findings_.Add(Finding::kGsmtapType);
  LteCell cell;
  cell.physical_cell_id = state_->captured_cell_id;
  if (packet.gsmtap.arfcn != 0) cell.earfcn = packet.gsmtap.arfcn;
  PutLteRrc(*channel, cell, packet.body);
}

void RecordMapper::TakeGsmtapGsm(const RecordedPacket& packet) {
  if (packet.gsmtap.type == kGsmtapGsmAbis)
    return PutGsm({kChannelDedicated, packet.gsmtap.is_uplink ? kUp : kDown, packet.body});
  if (packet.gsmtap.arfcn != 0) state_->gsm_arfcn = packet.gsmtap.arfcn;
  const auto message = ReadGsmUm(packet.gsmtap.sub_type, packet.gsmtap.is_uplink, packet.body);
  if (!message) return findings_.Add(Finding::kGsmtapType);
  PutGsm(*message);
}

// ---- Records ----

CTestdataBase RecordMapper::Start(std::int32_t kind) const {
  CTestdataBase record(false, 0);
  record.kind = kind;
  record.device_number = device_;
  return record;
}

CTestdataBase RecordMapper::StartLte(bool has_block) {
  CTestdataBase record = Start(kRecordHandset);
  record.model_code = kModelTn300Lte;
  if (has_block) {
    lte_ = {};
    neighbour_count_ = 0;
    record.lte_measurements = &lte_;
  }
  return record;
}

void RecordMapper::PutLteRecord(CTestdataBase& record) {
  if (neighbour_count_ > 0 && record.lte_measurements != nullptr)
    lte_.neighbours = LteNeighbourList{static_cast<std::uint8_t>(neighbour_count_ + 1),
                                       std::span(neighbours_).first(neighbour_count_)};
  state_->has_lte_records = true;
  Put(record);
}

void RecordMapper::Put(CTestdataBase& record) {
  log_.Put(record, time_ns_, place_);
  for (const std::int32_t event : events_) PutEvent(event, record.model_code, record.network_mode);
  events_.clear();
}

void RecordMapper::PutEvent(std::int32_t event_id, std::int32_t model_code, std::int32_t network_mode) {
  CTestdataBase event = Start(kRecordEvent);
  event.event_id = event_id;
  event.model_code = model_code;
  event.network_mode = network_mode;
  log_.Put(event, time_ns_, place_);
}

void RecordMapper::Reach(Network network) {
  const Network before = std::exchange(state_->network, network);
  if (before == Network::kLte && network == Network::kGsm) events_.push_back(kEventToGsm);
  if (before == Network::kGsm && network == Network::kLte) events_.push_back(kEventToLte);
  if (before != network && network == Network::kGsm) state_->is_connected = false;
}

void RecordMapper::FillMessage(CTestdataBase& record, std::string_view name, std::span<const std::byte> message) {
  record.layer3_name = name;
  record.raw_message = AUTOTEST::CAutoBuffer(message);
  record.raw_length = static_cast<std::int32_t>(message.size());
}

}  // namespace loom::recordings
