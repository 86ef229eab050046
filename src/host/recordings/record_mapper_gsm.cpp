#include <algorithm>
#include <iterator>

#include "host/recordings/layer3.h"
#include "host/recordings/record_mapper.h"

// GSM messages to records.
namespace loom::recordings {
namespace {

constexpr std::int32_t kRxLevOffset_dbm = -110;
constexpr std::int32_t kMostArea = 0xFFFF;

// 16 bits as signed ones.
std::int16_t Signed(std::int32_t value) { return static_cast<std::int16_t>(static_cast<std::uint16_t>(value)); }

std::vector<std::uint16_t> Union(const std::vector<std::uint16_t>& a, const std::vector<std::uint16_t>& b) {
  const auto order = [](std::uint16_t left, std::uint16_t right) {  // 0 stands last
    return static_cast<std::uint16_t>(left - 1) < static_cast<std::uint16_t>(right - 1);
  };
  std::vector<std::uint16_t> both;
  std::set_union(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(both), order);
  return both;
}

}  // namespace

std::vector<std::uint16_t> HandsetState::NeighbourFrequencies() const {
  if (call_list.empty()) return Union(idle_list, idle_list_bis);
  std::vector<std::uint16_t> all = Union(call_list, call_list_bis);
  all.insert(all.end(), call_list_ter.begin(), call_list_ter.end());
  return all;
}

void RecordMapper::PutGsm(const GsmPacket& packet) {
  const GsmMessage kind = IdentifyGsm(packet.message);
  if (kind.name.empty()) Tell(Finding::kUnknownMessage, "GSM");
  if (packet.channel != kChannelBroadcast || state_->network == Network::kNone) Reach(Network::kGsm);
  FollowGsm(kind, packet.message);

  CTestdataBase record = Start(kRecordHandset);
  record.model_code = kModelRv2230;
  record.network_mode = kNetworkModeGsm;
  FillMessage(record, kind.name, packet.message);
  record.direction = packet.direction;
  record.channel = packet.channel;
  record.message_id = kMessageGsm;

  const CellIdentity& cell = state_->gsm;
  gsm_cell_ = {};
  gsm_serving_ = {};
  if (cell.mcc >= 0) gsm_cell_.ie142 = Signed(cell.mcc);
  if (cell.mnc >= 0) gsm_cell_.ie143 = Signed(cell.mnc);
  if (cell.cell >= 0) gsm_cell_.ie144 = cell.cell;
  if (cell.area >= 0 && cell.area < kMostArea - 1) gsm_cell_.lac = Signed(cell.area);
  if (cell.cell >= 0 && cell.cell < kAbsent16 - 1) gsm_serving_.ie31706 = static_cast<std::uint16_t>(cell.cell);
  if (state_->gsm_arfcn != kNotTold) gsm_serving_.ie31701 = static_cast<std::uint16_t>(state_->gsm_arfcn);
  record.serving_cell = &gsm_cell_;
  record.gsm_serving_cell = &gsm_serving_;
  if (kind.role == GsmRole::kMeasurementReport) FillGsmReport(record, packet.message);
  if (kind.event_id != kNoEvent) events_.push_back(kind.event_id);
  Put(record);
}

void RecordMapper::FollowGsm(const GsmMessage& kind, std::span<const std::byte> message) {
  switch (kind.role) {
    case GsmRole::kCellIdentity:
    case GsmRole::kAreaIdentity: {
      const auto identity = ReadGsmIdentity(kind, message);
      if (!identity) return Tell(Finding::kShortPacket, kind.name);
      const std::int32_t cell = identity->cell < 0 ? state_->gsm.cell : identity->cell;
      const bool is_same_area = state_->gsm.area == identity->area;
      state_->gsm = *identity;
      state_->gsm.cell = identity->cell < 0 && !is_same_area ? -1 : cell;
      return;
    }
    case GsmRole::kNeighbourList:
      return LearnNeighbourList(kind, message);
    default:
      return;
  }
}

void RecordMapper::LearnNeighbourList(const GsmMessage& kind, std::span<const std::byte> message) {
  // By message type.
  struct Target {
    std::uint8_t type;
    std::vector<std::uint16_t> HandsetState::*list;
  };
  constexpr Target kTargets[] = {{0x1A, &HandsetState::idle_list},
                                 {0x02, &HandsetState::idle_list_bis},
                                 {0x1D, &HandsetState::call_list},
                                 {0x05, &HandsetState::call_list_bis},
                                 {0x06, &HandsetState::call_list_ter}};
  auto list = ReadNeighbourList(message);
  if (!list) return Tell(Finding::kShortPacket, kind.name);
  for (const Target& target : kTargets)
    if (target.type == kind.type) state_->*target.list = std::move(*list);
}

void RecordMapper::FillGsmReport(CTestdataBase& record, std::span<const std::byte> message) {
  const auto report = ReadGsmReport(message);
  if (!report) return Tell(Finding::kShortPacket, "MEASUREMENT REPORT");
  gsm_measured_ = {};
  gsm_neighbour_list_ = {};
  if (report->is_valid) {
    gsm_serving_.rx_lev = report->rx_lev;
    gsm_measured_.ie31966 = report->rx_qual_full;
    gsm_measured_.ie32038 = report->rx_qual_sub;
  }
  const std::vector<std::uint16_t> frequencies = state_->NeighbourFrequencies();
  for (std::size_t i = 0; i < report->neighbour_count; ++i) {
    const GsmReportedCell& cell = report->neighbours[i];
    GsmNeighbour& neighbour = gsm_neighbours_[i] = {};
    if (cell.list_index < frequencies.size()) neighbour.bcch = frequencies[cell.list_index];
    neighbour.bsic = cell.bsic;
    neighbour.rx_lev = static_cast<std::int16_t>(cell.rx_lev + kRxLevOffset_dbm);
  }
  gsm_neighbour_list_.count = report->neighbour_count;
  gsm_neighbour_list_.neighbours = std::span(gsm_neighbours_).first(report->neighbour_count);
  record.gsm_dedicated_measurements = &gsm_measured_;
  record.gsm_neighbours = &gsm_neighbour_list_;
}

}  // namespace loom::recordings
